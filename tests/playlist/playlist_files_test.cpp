// Loading, saving and opening of playlists: what the disk, the list and the boxes show, also when
// something comes in between.
#include "playlist/playlist_files.h"

#include "support/list_host.h"
#include "system/files.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace kv {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PlaylistFilesTest : public testing::Test, protected ListHost, protected Download {
 protected:
  PlaylistFilesTest() {
    setenv("TMPDIR", temp.MakeFolder("tmp").c_str(), 1);
    session.SupportedExtensions = "*.mp3;*.m3u";
  }
  ~PlaylistFilesTest() override { unsetenv("TMPDIR"); }

  bool Get_File(const std::string& /*url*/, const std::string& local_name) override {
    EXPECT_TRUE(busy_pointer);
    if (while_fetching) std::exchange(while_fetching, nullptr)();
    if (server_text.empty()) return false;
    std::ofstream(local_name, std::ios::binary) << server_text;
    return true;
  }
  // Comes in between once.
  void Meanwhile(std::function<void()> action) {
    on_progress = [this, action = std::move(action)] {
      on_progress = nullptr;
      action();
    };
  }

  Registry registry{temp.Path("registry.ini")};
  PlaylistFiles files{
      *this, {list, adding, settings, session, dialogs, pump, *this, registry, platform, "/app/"}};
  std::string server_text;
  std::function<void()> while_fetching;
};

TEST_F(PlaylistFilesTest, Loads) {
  temp.Write("sub/here.mp3", "");
  const std::string file =
      temp.Write("x.m3u",
                 "\xEF\xBB\xBF#EXTM3U\r\na.mp3\r\n  \r\nsub\\here.mp3\r\n/m/gone.mp3\r\nx.m3u\r\n"
                 "http://h/s\r\nb.txt\r\n  c.mp3\r\n\r\n");
  list.add("old");
  settings.PlaylistIndex = 7;
  session.PlaylistDirty = session.ScanAbort = true;
  files.LoadPlaylist(file);
  EXPECT_THAT(Items(), ElementsAre(temp.Path("a.mp3"), temp.Path("sub/here.mp3"), "/m/gone.mp3",
                                   "http://h/s", temp.Path("  c.mp3")));
  EXPECT_EQ(settings.PlaylistFile, file);
  EXPECT_EQ(settings.PlaylistIndex, 7);
  EXPECT_FALSE(session.PlaylistDirty);
  EXPECT_FALSE(session.ScanAbort);
  EXPECT_EQ(pump.Pumps(), 0);

  session.ScanWindowOpen = true;
  Meanwhile([this] { session.ScanAbort = true; });
  files.LoadPlaylist(file);
  EXPECT_EQ(list.Count(), 5);  // a load is not cancelled
  ASSERT_GE(progress.size(), 4U);
  EXPECT_THAT(std::vector(progress.begin(), progress.begin() + 4),
              ElementsAre(temp.Path("a.mp3"), "2", temp.Path("sub/here.mp3"), "4"));
}

TEST_F(PlaylistFilesTest, WhatCannotBeLoaded) {
  list.add("old");
  settings.PlaylistFile = "/old.m3u";
  const struct {
    std::string path;
    std::int32_t index;
    bool dirty;
  } cases[] = {
      {temp.Path("missing.m3u"), 0, false},
      {temp.MakeFolder("folder.m3u"), 0, false},
      {temp.Write("large.m3u", ""), 3, true},
  };
  // Larger than any playlist, without taking the disk's space.
  std::filesystem::resize_file(temp.Path("large.m3u"), kMaxTextFileBytes + 1);
  for (const auto& c : cases) {
    settings.PlaylistIndex = 3;
    settings.PlayingFromPlaylist = FromBool(true);
    session.PlaylistDirty = true;
    files.LoadPlaylist(c.path);
    EXPECT_THAT(Items(), ElementsAre("old"));
    EXPECT_EQ(settings.PlaylistFile, "/old.m3u");
    EXPECT_EQ(settings.PlaylistIndex, c.index) << c.path;
    EXPECT_EQ(IsOn(settings.PlayingFromPlaylist), c.dirty);
    EXPECT_EQ(session.PlaylistDirty, c.dirty);
  }
  // What is in that file is not in the list, so the list must not take its place unasked.
  settings.PlaylistFile = temp.Path("large.m3u");
  files.SavePlaylist(settings.PlaylistFile);
  EXPECT_EQ(std::filesystem::file_size(settings.PlaylistFile), kMaxTextFileBytes + 1);
  EXPECT_TRUE(session.PlaylistDirty);
  dialogs.WillPickFile(settings.PlaylistFile);
  dialogs.WillAnswer(BoxAnswer::kOk);
  dialogs.WillAnswer(BoxAnswer::kYes);
  files.SavePlaylistToggle();
  EXPECT_EQ(temp.Read("large.m3u"), "old\r\n");
}

TEST_F(PlaylistFilesTest, LoadsFromAServer) {
  server_text = "a.mp3\r\nHTTP://H/L/b.mp3\r\nhttp://g/c.mp3\r\n";
  files.LoadPlaylist("http://h/l/x.m3u");
  EXPECT_THAT(Items(),
              ElementsAre("http://h/l/a.mp3", "HTTP://H/L/b.mp3", "http://h/l/http://g/c.mp3"));
  EXPECT_EQ(settings.PlaylistFile, "http://h/l/x.m3u");
  EXPECT_FALSE(busy_pointer);

  server_text.clear();
  files.LoadPlaylist("http://h/y.m3u");
  EXPECT_EQ(dialogs.LastText(), "Error downloading file!");
  EXPECT_EQ(dialogs.Boxes().back().icon, BoxIcon::kStop);
  EXPECT_EQ(list.Count(), 0);
  EXPECT_EQ(settings.PlaylistFile, "http://h/y.m3u");
  EXPECT_TRUE(std::filesystem::is_empty(temp.Path("tmp")));
}

TEST_F(PlaylistFilesTest, TheNewestLoadWins) {
  const std::string first = temp.Write("first.m3u", "1.mp3\r\n2.mp3\r\n3.mp3\r\n");
  const std::string second = temp.Write("second.m3u", "/4.mp3\r\n");
  while_fetching = [&] { files.LoadPlaylist(second); };
  files.LoadPlaylist("http://h/x.m3u");
  EXPECT_THAT(dialogs.Boxes(), IsEmpty());
  EXPECT_THAT(Items(), ElementsAre("/4.mp3"));
  EXPECT_EQ(settings.PlaylistFile, second);

  session.ScanWindowOpen = true;
  Meanwhile([&] { files.OpenPlaylist(second); });
  files.OpenPlaylist(first);
  EXPECT_THAT(Items(), ElementsAre("/4.mp3"));
  EXPECT_EQ(settings.PlaylistFile, second);
  EXPECT_THAT(told, ElementsAre("open /4.mp3", "disp"));

  // One that leads nowhere leaves the load that is under way alone.
  Meanwhile([&] { files.LoadPlaylist(temp.Path("missing.m3u")); });
  files.LoadPlaylist(first);
  EXPECT_EQ(list.Count(), 3);
}

TEST_F(PlaylistFilesTest, TheEndOfTheProgramKeepsTheFile) {
  const std::string lines = "1.mp3\r\n2.mp3\r\n3.mp3\r\n";
  const std::string file = temp.Write("x.m3u", lines);
  files.SavePlaylist(file);  // before anything was loaded
  EXPECT_EQ(temp.Read("x.m3u"), lines);
  session.ScanWindowOpen = true;
  Meanwhile([&] {
    files.SavePlaylist(file);
    session.Unloading = true;
  });
  files.LoadPlaylist(file);
  files.SavePlaylist(file);
  EXPECT_EQ(temp.Read("x.m3u"), lines);
  EXPECT_LT(list.Count(), 3);
  while_fetching = [&] { ADD_FAILURE(); };
  files.LoadPlaylist("http://h/x.m3u");
}

TEST_F(PlaylistFilesTest, Saves) {
  const std::string file = temp.Path("x.m3u");
  list.add(temp.Path("sub/A.mp3"));
  list.add("/m/b.mp3");
  const std::string relative = "sub/A.mp3\r\n/m/b.mp3\r\n";
  const std::string full = temp.Path("sub/A.mp3") + "\r\n/m/b.mp3\r\n";
  session.PlaylistDirty = true;
  files.SavePlaylist("http://h/x.m3u");
  files.SavePlaylist(temp.Write("plain", "") + "/x.m3u");
  EXPECT_TRUE(session.PlaylistDirty);
  EXPECT_EQ(settings.PlaylistFile, "");

  files.SavePlaylist(file);
  EXPECT_EQ(temp.Read("x.m3u"), relative);
  EXPECT_FALSE(session.PlaylistDirty);
  EXPECT_EQ(settings.PlaylistFile, file);
  settings.SaveAbsolutePaths = FromBool(true);
  files.SavePlaylist(file);
  EXPECT_EQ(temp.Read("x.m3u"), full);
  // The name before this save tells whether the list came from a server.
  settings.SaveAbsolutePaths = FromBool(false);
  settings.PlaylistFile = "http://h/x.m3u";
  files.SavePlaylist(file);
  EXPECT_EQ(temp.Read("x.m3u"), full);
  files.SavePlaylist(file);
  EXPECT_EQ(temp.Read("x.m3u"), relative);
}

TEST_F(PlaylistFilesTest, WriteProtectionAndFullDisk) {
  const std::string file = temp.Write("x.m3u", "old");
  const auto mode = [&] {
    struct stat status {};
    return stat(file.c_str(), &status) == 0 ? status.st_mode & 0777U : 0U;
  };
  chmod(file.c_str(), 0444);
  list.add("/m/" + std::string(5000, 'a') + ".mp3");
  session.PlaylistDirty = true;
  struct rlimit old_limit {};
  getrlimit(RLIMIT_FSIZE, &old_limit);
  const struct rlimit limit = {1000, old_limit.rlim_max};
  const auto old_handler = std::signal(SIGXFSZ, SIG_IGN);
  setrlimit(RLIMIT_FSIZE, &limit);
  files.SavePlaylist(file);
  setrlimit(RLIMIT_FSIZE, &old_limit);
  std::signal(SIGXFSZ, old_handler);
  EXPECT_EQ(temp.Read("x.m3u"), "old");
  EXPECT_EQ(mode(), 0444U);
  EXPECT_TRUE(session.PlaylistDirty);

  files.SavePlaylist(file);
  EXPECT_EQ(temp.Read("x.m3u"), list.Item(1) + "\r\n");
  EXPECT_EQ(mode(), 0644U);
}

TEST_F(PlaylistFilesTest, SavesUnderANewName) {
  list.add("/m/a.mp3");
  settings.PlaylistFile = "/old.m3u";
  session.PlaylistDirty = true;
  dialogs.WillPickFile("");
  files.SavePlaylistToggle();  // the old file does not exist
  EXPECT_TRUE(session.PlaylistDirty);

  dialogs.WillPickFile(temp.Path("new.txt"));
  dialogs.WillAnswer(BoxAnswer::kNo);
  files.SavePlaylistAs();
  EXPECT_EQ(temp.Read("new.txt.m3u"), "/m/a.mp3\r\n");
  EXPECT_EQ(settings.PlaylistFile, "/old.m3u");
  EXPECT_EQ(dialogs.LastText(), "Point to new file?");

  const std::string existing = temp.Write("there.M3U", "x");
  dialogs.WillPickFile(existing);
  dialogs.WillAnswer(BoxAnswer::kCancel);
  files.SavePlaylistAs();
  EXPECT_EQ(dialogs.LastText(), "File \"" + existing + "\" already exists!\nOverwrite ?");
  EXPECT_EQ(temp.Read("there.M3U"), "x");
  dialogs.WillPickFile(existing);
  dialogs.WillAnswer(BoxAnswer::kOk);
  dialogs.WillAnswer(BoxAnswer::kYes);
  files.SavePlaylistAs();
  EXPECT_EQ(settings.PlaylistFile, existing);
  dialogs.WillPickFile(temp.Path("there.M3U/x"));  // cannot be written: nothing to point to
  files.SavePlaylistAs();
  EXPECT_EQ(settings.PlaylistFile, existing);

  // A list that is loaded while the last question stands keeps its own name.
  const std::string newer = temp.Write("newer.m3u", "/b.mp3\r\n");
  dialogs.WillPickFile(temp.Path("copy.m3u"));
  dialogs.WillAnswer(BoxAnswer::kNo);
  dialogs.WhileOpen([&] {
    if (settings.PlaylistFile == temp.Path("copy.m3u")) files.LoadPlaylist(newer);
  });
  files.SavePlaylistAs();
  EXPECT_EQ(settings.PlaylistFile, newer);
}

TEST_F(PlaylistFilesTest, Opens) {
  const std::string file = temp.Write("x.m3u", "/a.mp3\r\n/b.mp3\r\n");
  session.PlaylistWindowLoaded = true;
  settings.AutoPlayPlaylist = FromBool(true);
  dialogs.WillPickFile(file);
  files.OpenPlaylist("");
  EXPECT_THAT(told, ElementsAre("row /a.mp3", "row /b.mp3", "open /a.mp3", "play", "row ", "disp"));
  EXPECT_EQ(settings.PlaylistIndex, 1);

  told.clear();
  running = true;
  files.OpenPlaylist(file);
  EXPECT_EQ(std::count(told.begin(), told.end(), "play"), 0);
  told.clear();
  files.OpenPlaylist("/other/x.pls");
  EXPECT_EQ(dialogs.LastText(), "Invalid file error!");
  EXPECT_THAT(told, IsEmpty());
}

TEST_F(PlaylistFilesTest, AsksBeforeChangesAreLost) {
  const std::string file = temp.Write("x.m3u", "/new.mp3\r\n");
  settings.PlaylistFile = temp.Write("old.m3u", "");
  list.add("/old.mp3");
  session.PlaylistDirty = true;
  dialogs.WillAnswer(BoxAnswer::kCancel);
  files.OpenPlaylist(file);
  EXPECT_EQ(dialogs.LastText(),
            "Current playlist has not been saved!\n\nDo you want to save it first?");
  settings.PlaylistFile = "/gone.m3u";
  dialogs.WillAnswer(BoxAnswer::kYes);
  dialogs.WillPickFile("");  // no name, so still not saved
  files.OpenPlaylist(file);
  EXPECT_THAT(Items(), ElementsAre("/old.mp3"));
  settings.PlaylistFile = temp.Path("old.m3u");
  dialogs.WillAnswer(BoxAnswer::kYes);
  files.OpenPlaylist(file);
  EXPECT_EQ(temp.Read("old.m3u"), "/old.mp3\r\n");
  EXPECT_THAT(Items(), ElementsAre("/new.mp3"));
  session.PlaylistDirty = true;
  dialogs.WillAnswer(BoxAnswer::kNo);
  files.OpenPlaylist(file);
  EXPECT_FALSE(session.PlaylistDirty);
}

TEST_F(PlaylistFilesTest, SaveOfTheListWindow) {
  list.add("/a.mp3");
  settings.PlaylistFile = "http://h/x.m3u";
  dialogs.WillAnswer(BoxAnswer::kNo);
  EXPECT_FALSE(files.SaveList());
  EXPECT_EQ(dialogs.LastText(),
            "Current playlist is located on a remote server and cannot be saved. Do you want to "
            "save a local copy?");
  dialogs.WillAnswer(BoxAnswer::kYes);
  dialogs.WillPickFile(temp.Path("copy.m3u"));
  dialogs.WillAnswer(BoxAnswer::kYes);
  EXPECT_TRUE(files.SaveList());
  list.add("/b.mp3");
  EXPECT_TRUE(files.SaveList());
  EXPECT_EQ(temp.Read("copy.m3u"), "/a.mp3\r\n/b.mp3\r\n");
  EXPECT_THAT(told, ElementsAre("disp"));
}

}  // namespace
}  // namespace kv
