// What enters the list from files, folders and drops, and that a walk can be watched and ended.
#include "playlist/list_adding.h"

#include "support/fake_pump.h"
#include "support/fake_text_platform.h"
#include "support/scripted_dialogs.h"
#include "support/temp_folder.h"

#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace kv {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class ListAddingTest : public testing::Test,
                       protected ListAddingHost,
                       protected ListWindow,
                       protected ScanWindow {
 protected:
  ListAddingTest() { session.SupportedExtensions = "*.mp3;*.ogg;*.m3u"; }

  ListWindow* LoadedListWindow() override { return session.PlaylistWindowLoaded ? this : nullptr; }
  ScanWindow* OpenScanWindow() override { return session.ScanWindowOpen ? this : nullptr; }
  void OpenFile(const std::string& path) override { told.push_back("open " + path); }
  void UpdateFileDisp(const std::string& text) override { told.push_back("disp" + text); }
  void SetBusyPointer(bool busy) override { told.emplace_back(busy ? "busy" : "idle"); }
  void FillPlaylist(const std::string& path) override { rows.push_back(path); }
  int RowCount() const override { return static_cast<int>(rows.size()); }
  void ShowPath(const std::string& path) override { shown.push_back(path); }
  void ShowCount(const std::string& text) override {
    shown.push_back(text);
    if (on_progress) pump.Post(on_progress);
  }

  void OpenWindows() { session.PlaylistWindowLoaded = session.ScanWindowOpen = true; }
  void FillUp() {
    while (list.Count() < kPlaylistLimit) list.add("x");
  }
  std::vector<std::string> Items() const {
    std::vector<std::string> items;
    for (int i = 1; i <= list.Count(); ++i) items.push_back(list.Item(i));
    return items;
  }

  TempFolder temp;
  FakeTextPlatform platform;
  OSTList list{platform};
  Session session;
  ScriptedDialogs dialogs;
  FakePump pump;
  ListAdding adding{*this, list, session, dialogs, pump};
  std::vector<std::string> told;
  std::vector<std::string> rows;
  std::vector<std::string> shown;
  std::function<void()> on_progress;
};

TEST_F(ListAddingTest, FilesThatMayEnter) {
  for (const char* path : {"/gone/a.MP3", "mms://h", "/a/plain", "a.txt", "plain", "x.m3u",
                           "http://h/x.M3U", "/a/b.mp", "/a/b.mp3"}) {
    adding.AddFileToList(path);
  }
  EXPECT_THAT(Items(), ElementsAre("/gone/a.MP3", "mms://h", "/a/plain", "/a/b.mp", "/a/b.mp3"));
  EXPECT_FALSE(session.PlaylistDirty);
  EXPECT_EQ(pump.Pumps(), 0);
}

TEST_F(ListAddingTest, RowsAndProgressFollow) {
  session.PlaylistWindowLoaded = true;
  adding.AddFileToList("/a/1.mp3");
  EXPECT_THAT(shown, IsEmpty());
  session.ScanWindowOpen = true;
  on_progress = [this] { EXPECT_EQ(rows.size(), static_cast<std::size_t>(list.Count())); };
  adding.AddFileToList("/a/2.mp3");
  EXPECT_THAT(rows, ElementsAre("/a/1.mp3", "/a/2.mp3"));
  EXPECT_THAT(shown, ElementsAre("/a/2.mp3", "1 files in list."));
  EXPECT_EQ(pump.Pumps(), 1);
}

TEST_F(ListAddingTest, WalksSubfoldersFirst) {
  temp.Write("a.mp3", "");
  temp.Write("note.txt", "");
  temp.Write("list.m3u", "");
  temp.Write("sub/deep/\xFF\xFE.ogg", "");
  temp.Write("sub/b.mp3", "");
  temp.MakeFolder("empty");
  ASSERT_EQ(mkfifo(temp.Path("pipe.mp3").c_str(), 0600), 0);
  std::filesystem::create_directory_symlink("..", temp.Path("sub/up"));
  std::filesystem::create_directory_symlink(".", temp.Path("sub/deep/self"));
  adding.AddFolderToList(temp.Path("."));
  const std::string top = temp.Path("./");
  EXPECT_THAT(Items(),
              ElementsAre(top + "sub/deep/\xFF\xFE.ogg", top + "sub/b.mp3", top + "a.mp3"));
  EXPECT_TRUE(session.PlaylistDirty);
  EXPECT_GE(pump.Pumps(), 4);
  adding.AddFolderToList(temp.Path("gone"));
  adding.AddFolderToList(temp.Path("pipe.mp3"));
  EXPECT_EQ(list.Count(), 3);
}

TEST_F(ListAddingTest, EndsWhereItIsTold) {
  for (const char* name : {"1.mp3", "2.mp3", "sub/3.mp3", "sub/4.mp3"}) temp.Write(name, "");
  OpenWindows();
  on_progress = [this] { session.ScanAbort = list.Count() == 2; };
  adding.AddFolderToList(temp.Path());
  EXPECT_EQ(list.Count(), 2);
  adding.AddFolderToList(temp.Path());
  EXPECT_EQ(list.Count(), 2);

  session.ScanAbort = false;
  on_progress = [this] { session.Unloading = true; };
  adding.AddFilesOrFolders({temp.Path(), temp.Path("1.mp3")});
  EXPECT_EQ(list.Count(), 3);
  EXPECT_THAT(told, ElementsAre("busy", "idle"));

  // Nothing to add, no window to watch, yet the end is heard at once.
  session.Unloading = session.PlaylistWindowLoaded = session.ScanWindowOpen = false;
  const int pumps = pump.Pumps();
  pump.Post([this] { session.Unloading = true; });
  temp.MakeFolder("empty/a/b");
  adding.AddFolderToList(temp.Path("empty"));
  EXPECT_EQ(pump.Pumps(), pumps + 1);
}

TEST_F(ListAddingTest, TheLimitIsTold) {
  temp.Write("1.mp3", "");
  temp.Write("sub/2.mp3", "");
  FillUp();
  adding.AddFolderToList(temp.Path());
  EXPECT_THAT(dialogs.Boxes(), IsEmpty());
  EXPECT_FALSE(session.PlaylistDirty);

  const std::string full =
      "Can't have more than 9999 files in a playlist. Save and make several playlist files!";
  adding.AddFilesOrFolders({temp.Path("1.mp3")});
  EXPECT_EQ(dialogs.LastText(), full);
  EXPECT_EQ(dialogs.Boxes().back().icon, BoxIcon::kExclamation);
  EXPECT_THAT(told, IsEmpty());

  list.Remove(1);
  adding.AddFilesOrFolders({temp.Path("1.mp3")});  // exactly the last place
  EXPECT_EQ(dialogs.Boxes().size(), 1U);
  list.Remove(1);
  adding.AddFilesOrFolders({temp.Path()});
  EXPECT_EQ(list.Count(), kPlaylistLimit);
  EXPECT_EQ(list.Item(kPlaylistLimit), temp.Path("sub/2.mp3"));
  ASSERT_EQ(dialogs.Boxes().size(), 2U);
  EXPECT_EQ(dialogs.LastText(), full);

  // The list fills up while a file waits for its turn.
  list.Remove(1);
  session.ScanWindowOpen = true;
  pump.Post([this] { FillUp(); });
  adding.AddFolderToList(temp.Path("1.mp3"));
  EXPECT_EQ(list.Count(), kPlaylistLimit);
  EXPECT_EQ(dialogs.LastText(),
            "Can't add more than 9999 files to the playlist. Save and make several playlists!");
}

TEST_F(ListAddingTest, Drops) {
  const std::string song = temp.Write("1.mp3", "");
  const std::string other = temp.Write("x.m3u", "");
  temp.Write("folder.m3u/2.mp3", "");
  adding.AddFilesOrFolders({});
  EXPECT_THAT(told, IsEmpty());
  adding.AddFilesOrFolders({other});
  EXPECT_THAT(told, ElementsAre("busy", "open " + other, "disp", "idle"));
  EXPECT_EQ(list.Count(), 0);
  adding.AddFilesOrFolders({song, other, "/gone.mp3"});
  EXPECT_THAT(Items(), ElementsAre(song));
  adding.AddFilesOrFolders({temp.Path("folder.m3u")});
  EXPECT_THAT(Items(), ElementsAre(song, temp.Path("folder.m3u/2.mp3")));
}

}  // namespace
}  // namespace kv
