// A playlist of another program, from the request of a second start to the file that is saved.
#include "opener_player.h"
#include "playlist/playlist_files.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

namespace kv {
namespace {

struct ForeignListOpenTest : testing::Test,
                             OpenerPlayer,
                             PlaylistFilesHost,
                             ListAddingHost,
                             Download {
  ListWindow* LoadedListWindow() override { return nullptr; }
  ScanWindow* OpenScanWindow() override { return nullptr; }
  void OpenFile(const std::string& /*path*/) override {}
  void OpenFile(const std::string& /*path*/, bool /*list*/, bool /*plays*/) override {}
  bool EngineRunning() const override { return true; }
  void PressPlay() override {}
  void UpdateFileDisp(const std::string& text) override { OpenerPlayer::UpdateFileDisp(text); }
  void SetBusyPointer(bool /*busy*/) override {}
  bool Get_File(const std::string& /*url*/, const std::string& /*name*/) override { return false; }
  void OpenPlaylist(const std::string& Path, bool ByHand) override {
    files.OpenPlaylist(Path, ByHand);
  }

  TempFolder temp;
  Registry registry{temp.Path("registry.ini")};
  OSTList list{platform};
  ListAdding adding{*this, list, session, dialogs, pump};
  PlaylistFiles files{*this,
                      {list, adding, settings, session, dialogs, pump, *this, registry, platform,
                       "/app/", "fr_FR.UTF-8"}};
};

TEST_F(ForeignListOpenTest, IsReadAsTheUserSays) {
  const std::string bytes = "#EXTM3U\ncaf\xE9.mp3\nb.mp3\n";
  const std::string file = temp.Write("x.m3u", bytes);
  list.add("/old.mp3");

  dialogs.WillAnswer(BoxAnswer::kCancel);
  OpenCommandFile(file);
  EXPECT_EQ(list.Count(), 1);
  EXPECT_EQ(list.Item(1), "/old.mp3");
  EXPECT_EQ(settings.PlaylistFile, "");
  EXPECT_EQ(log.back(), "title ");
  for (const char* part : {"\"x.m3u\"", "Unix", "Windows-1252", "caf\xC3\xA9.mp3"}) {
    EXPECT_NE(dialogs.LastText().find(part), std::string::npos) << part;
  }

  // Not read in full: nothing may take its place.
  opener.OpenFile(file, {.Unattended = true});
  dialogs.WillAnswer(BoxAnswer::kNo);
  OpenCommandFile(file);
  EXPECT_FALSE(session.PlaylistDirty);
  files.SavePlaylist(file);
  EXPECT_EQ(temp.Read("x.m3u"), bytes);

  dialogs.WillAnswer(BoxAnswer::kYes);
  OpenCommandFile(file);
  EXPECT_EQ(list.Count(), 2);
  EXPECT_TRUE(session.PlaylistDirty);
  files.SavePlaylistToggle();
  EXPECT_EQ(temp.Read("x.m3u"), "caf\xC3\xA9.mp3\r\nb.mp3\r\n");
  OpenCommandFile(file);  // nothing to ask now
  EXPECT_EQ(list.Count(), 2);
}

TEST_F(ForeignListOpenTest, ANewerListWinsOverTheQuestion) {
  const std::string file = temp.Write("x.m3u", "a.mp3\nb.mp3\n");
  const std::string newer = temp.Write("y.m3u", "/new.mp3\r\n");
  dialogs.WhileOpen([&] { opener.OpenFile(newer, {}); });
  dialogs.WillAnswer(BoxAnswer::kYes);
  OpenCommandFile(file);
  EXPECT_EQ(settings.PlaylistFile, newer);
  EXPECT_EQ(list.Item(1), "/new.mp3");
  EXPECT_FALSE(session.PlaylistDirty);
}

}  // namespace
}  // namespace kv
