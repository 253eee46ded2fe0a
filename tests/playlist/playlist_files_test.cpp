// Loading, saving and opening of playlists: what the disk, the list and the boxes show, also when
// something comes in between.
#include "playlist/playlist_files.h"

#include "playlist/playlist_test.h"
#include "support/list_host.h"
#include "system/files.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sys/resource.h>
#include <sys/stat.h>

namespace kv {
namespace {

struct PlaylistFilesTest : testing::Test, ListHost, Download {
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

  // Saves under the name that is picked, with the answers to what is asked then.
  void SaveAs(const std::string& path, const std::vector<BoxAnswer>& answers) {
    dialogs.WillPickFile(path);
    for (const BoxAnswer answer : answers) dialogs.WillAnswer(answer);
    files.SavePlaylistAs();
  }

  // The items, the file they stand for, and whether they have changed since.
  std::string Stands() const {
    std::string text;
    for (const std::string& item : Items()) text += item + ' ';
    return text + "in " + settings.PlaylistFile + (session.PlaylistDirty ? ", changed" : "");
  }

  Registry registry{temp.Path("registry.ini")};
  PlaylistFiles files{*this,
                      {list, adding, settings, session, dialogs, pump, *this, registry, platform,
                       "/app/", "fr_FR.UTF-8"}};
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
  EXPECT_EQ(Stands(), temp.Path("a.mp3 ") + temp.Path("sub/here.mp3 ") + "/m/gone.mp3 http://h/s " +
                          temp.Path("  c.mp3 in ") + file);
  EXPECT_EQ(settings.PlaylistIndex, 7);
  EXPECT_FALSE(session.ScanAbort);

  session.ScanWindowOpen = true;
  Meanwhile([this] { session.ScanAbort = true; });
  files.LoadPlaylist(file);
  EXPECT_EQ(list.Count(), 5);  // a load is not cancelled
  progress.resize(4);
  EXPECT_THAT(progress, ElementsAre(temp.Path("a.mp3"), "2", temp.Path("sub/here.mp3"), "4"));
}

TEST_F(PlaylistFilesTest, WhatCannotBeLoaded) {
  list.add("old");
  settings.PlaylistFile = "/old.m3u";
  temp.Write("large.m3u", "");  // larger than any playlist, without taking the disk's space
  std::filesystem::resize_file(temp.Path("large.m3u"), kMaxTextFileBytes + 1);
  for (const std::string& path :
       {temp.Path("gone.m3u"), temp.MakeFolder("f"), temp.Path("large.m3u")}) {
    const bool stays = path.ends_with("large.m3u");
    settings.PlaylistIndex = 3;
    settings.PlayingFromPlaylist = FromBool(true);
    session.PlaylistDirty = true;
    files.LoadPlaylist(path);
    EXPECT_EQ(Stands(), std::string("old in /old.m3u") + (stays ? ", changed" : ""));
    EXPECT_EQ(settings.PlaylistIndex, stays ? 3 : 0) << path;
    EXPECT_EQ(IsOn(settings.PlayingFromPlaylist), stays);
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
  EXPECT_EQ(Stands(),
            "http://h/l/a.mp3 HTTP://H/L/b.mp3 http://h/l/http://g/c.mp3 in http://h/l/x.m3u");
  EXPECT_FALSE(busy_pointer);

  server_text.clear();
  files.LoadPlaylist("http://h/y.m3u");
  EXPECT_EQ(dialogs.LastText(), "Error downloading file!");
  EXPECT_EQ(Stands(), "in http://h/y.m3u");
  EXPECT_TRUE(std::filesystem::is_empty(temp.Path("tmp")));
}

TEST_F(PlaylistFilesTest, TheNewestLoadWins) {
  const std::string first = temp.Write("first.m3u", "1.mp3\r\n2.mp3\r\n3.mp3\r\n");
  const std::string second = temp.Write("second.m3u", "/4.mp3\r\n");
  while_fetching = [&] { files.LoadPlaylist(second); };
  files.LoadPlaylist("http://h/x.m3u");
  EXPECT_THAT(dialogs.Boxes(), IsEmpty());
  EXPECT_EQ(Stands(), "/4.mp3 in " + second);
  session.ScanWindowOpen = true;
  Meanwhile([&] { files.OpenPlaylist(second); });
  files.OpenPlaylist(first);
  EXPECT_EQ(Stands(), "/4.mp3 in " + second);
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
  const std::string relative = "sub/A.mp3\r\n/m/b.mp3\r\n", full = temp.Path() + relative;
  session.PlaylistDirty = true;
  files.SavePlaylist("http://h/x.m3u");
  files.SavePlaylist(temp.Write("plain", "") + "/x.m3u");
  EXPECT_TRUE(Stands().ends_with("in , changed"));
  const struct {
    bool absolute;
    std::string name_before, text;
  } saves[] = {{false, "", relative},
               {true, file, full},
               // The name before this save tells whether the list came from a server.
               {false, "http://h/x.m3u", full},
               {false, file, relative}};
  for (const auto& save : saves) {
    settings.SaveAbsolutePaths = FromBool(save.absolute);
    settings.PlaylistFile = save.name_before;
    files.SavePlaylist(file);
    EXPECT_EQ(temp.Read("x.m3u"), save.text);
    EXPECT_TRUE(Stands().ends_with("in " + file));
  }
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

  SaveAs(temp.Path("new.txt"), {BoxAnswer::kNo});
  EXPECT_EQ(temp.Read("new.txt.m3u"), "/m/a.mp3\r\n");
  EXPECT_EQ(settings.PlaylistFile, "/old.m3u");
  EXPECT_EQ(dialogs.LastText(), "Point to new file?");

  const std::string existing = temp.Write("there.M3U", "x");
  SaveAs(existing, {BoxAnswer::kCancel});
  EXPECT_EQ(dialogs.LastText(), "File \"" + existing + "\" already exists!\nOverwrite ?");
  EXPECT_EQ(temp.Read("there.M3U"), "x");
  SaveAs(existing, {BoxAnswer::kOk, BoxAnswer::kYes});
  SaveAs(existing + "/x", {});  // cannot be written: nothing to point to
  EXPECT_EQ(settings.PlaylistFile, existing);

  // A list that is loaded while the last question stands keeps its own name.
  const std::string newer = temp.Write("newer.m3u", "/b.mp3\r\n");
  dialogs.WhileOpen([&] {
    if (settings.PlaylistFile == temp.Path("copy.m3u")) files.LoadPlaylist(newer);
  });
  SaveAs(temp.Path("copy.m3u"), {BoxAnswer::kNo});
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
  running = true;
  files.OpenPlaylist(file);
  EXPECT_EQ(std::count(told.begin(), told.end(), "play"), 1);
  told.clear();
  files.OpenPlaylist("/other/x.pls");
  EXPECT_EQ(dialogs.LastText(), "Invalid file error!");
  EXPECT_THAT(told, IsEmpty());
}

TEST_F(PlaylistFilesTest, AListOfAnotherProgramIsReadAsTheUserSays) {
  const std::string bytes = "#EXTM3U\ncaf\xE9.mp3\nb.mp3\n";
  const std::string file = temp.Write("x.m3u", bytes);
  list.add("/old.mp3");
  const auto open = [&](BoxAnswer answer) {
    dialogs.WillAnswer(answer);
    files.OpenPlaylist(file);
    return Stands();
  };
  EXPECT_EQ(open(BoxAnswer::kCancel), "/old.mp3 in ");
  EXPECT_EQ(told.back(), "disp");  // the title that the open had taken
  for (const char* part : {"\"x.m3u\"", "Unix", "Windows-1252", "caf\xC3\xA9.mp3"}) {
    EXPECT_THAT(dialogs.LastText(), HasSubstr(part));
  }

  // Not read in full: nothing may take its place.
  files.OpenPlaylist(file, false);  // nobody is there to ask
  open(BoxAnswer::kNo);
  EXPECT_FALSE(session.PlaylistDirty);
  files.SavePlaylist(file);
  EXPECT_EQ(temp.Read("x.m3u"), bytes);

  EXPECT_EQ(open(BoxAnswer::kYes),
            temp.Path("caf\xC3\xA9.mp3 ") + temp.Path("b.mp3 in ") + file + ", changed");
  files.SavePlaylistToggle();
  EXPECT_EQ(temp.Read("x.m3u"), "caf\xC3\xA9.mp3\r\nb.mp3\r\n");
  files.OpenPlaylist(file);  // nothing to ask now
  EXPECT_EQ(list.Count(), 2);

  // A newer list wins over the question.
  const std::string newer = temp.Write("y.m3u", "/new.mp3\r\n");
  temp.Write("x.m3u", bytes);
  dialogs.WhileOpen([&] { files.OpenPlaylist(newer); });
  EXPECT_EQ(open(BoxAnswer::kYes), "/new.mp3 in " + newer);
}

TEST_F(PlaylistFilesTest, AsksBeforeChangesAreLost) {
  const std::string file = temp.Write("x.m3u", "/new.mp3\r\n");
  temp.Write("old.m3u", "");
  list.add("/old.mp3");
  const std::string old = temp.Path("old.m3u");
  const struct {
    std::string name;
    BoxAnswer answer;
    std::string stands;
  } rows[] = {{old, BoxAnswer::kCancel, "/old.mp3 in " + old + ", changed"},
              // no name is picked for it, so still not saved
              {"/gone.m3u", BoxAnswer::kYes, "/old.mp3 in /gone.m3u, changed"},
              {old, BoxAnswer::kYes, "/new.mp3 in " + file},
              {file, BoxAnswer::kNo, "/new.mp3 in " + file}};
  dialogs.WillPickFile("");
  for (const auto& row : rows) {
    settings.PlaylistFile = row.name;
    session.PlaylistDirty = true;
    dialogs.WillAnswer(row.answer);
    files.OpenPlaylist(file);
    EXPECT_EQ(Stands(), row.stands);
    EXPECT_EQ(dialogs.LastText(),
              "Current playlist has not been saved!\n\nDo you want to save it first?");
  }
  EXPECT_EQ(temp.Read("old.m3u"), "/old.mp3\r\n");
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
