// How the last medium comes back, and how the program goes down, on a fake medium.
#include "shell/form_life.h"

#include "shell/shell_test.h"

#include <stdexcept>

namespace kv {
namespace {

struct FormLifeTest : testing::Test, MovieWorld, FormLifeHost {
  FormLifeTest() {
    factory.media["/m/a.avi"] = {.duration = 100, .width = 64, .height = 48};
    factory.media["/m/b.mp3"] = {.duration = 100};
    settings.LastPosition = 40;
  }

  void OpenFile(const std::string& File, OpenArguments arguments) override {
    log.push_back("open " + File + (arguments.FromPlaylist ? " list" : "") +
                  (arguments.StartPlaying ? " play" : "") +
                  (arguments.KeepWindowSize ? " keep" : ""));
    if (File.ends_with(".txt")) return;  // refused
    movie.DS_OpenFile(File, 0, 0, 0, 0, 0);
    settings.CurrentFile = File;
    if (while_opening) std::exchange(while_opening, nullptr)();
  }
  void BUtton_Click(int Index) override {
    log.push_back("button " + std::to_string(Index));
    movie.DS_Play();
  }
  void UpdateFileDisp(const std::string& text) override { log.push_back("title" + text); }
  void UpdateFileDataDisplay() override { log.emplace_back("data"); }
  int PlaylistCount() const override { return static_cast<int>(list.size()); }
  std::string PlaylistItem(int index) const override {
    const auto at = static_cast<std::size_t>(index - 1);
    return at < list.size() ? list[at] : "";
  }
  void SavePlaylist(const std::string& file) override {
    if (file == "/throws") throw std::runtime_error("No space left");
    log.push_back("save " + file);
    if (file != "/m/kept.m3u") session.PlaylistDirty = false;
  }
  void SavePlaylistToggle() override {
    log.emplace_back("save as");
    session.PlaylistDirty = !saved;
  }
  void HideForm() override { log.emplace_back("hide"); }
  void StopAllTimers() override { log.emplace_back("stop timers"); }
  void AbandonOpen() override { log.emplace_back("abandon"); }
  void UnloadOtherForms() override { log.emplace_back("forms"); }
  void RegisterRestart() override { log.emplace_back("run once"); }
  void SaveSettings() override {
    log.emplace_back(IsOn(settings.RestartPlaying) ? "settings, restart" : "settings");
    EXPECT_FALSE(movie.DS_IsOpen());
  }
  void StopWheelHook() override { log.emplace_back("wheel"); }

  // The first end of a player that has just come up.
  bool Ends(UnloadMode mode) {
    FormLife fresh(*this, movie, settings, session, dialogs, pump);
    return fresh.Form_QueryUnload(mode);
  }

  ScriptedDialogs dialogs;
  std::vector<std::string> list;
  std::vector<std::string> log;
  std::function<void()> while_opening;
  bool saved = false;
  FormLife life{*this, movie, settings, session, dialogs, pump};
};

TEST_F(FormLifeTest, OpensTheLastMediumOrNothing) {
  const std::vector<std::string> none, one = {"/m/b.mp3"};
  const struct {
    int index;
    std::vector<std::string> list;
    std::string file, file_after;
    std::vector<std::string> log;
  } rows[] = {
      {0, one, "/m/a.avi", "/m/a.avi", {"open /m/a.avi keep", "title"}},
      {1, one, "/m/a.avi", "/m/b.mp3", {"open /m/b.mp3 list keep", "data", "title"}},
      {5, one, "/m/a.avi", "", {"data", "title"}},
      {5, none, "/m/a.avi", "", {"data", "title"}},
      {0, none, "/m/x.txt", "", {"open /m/x.txt keep", "title"}},
  };
  for (const auto& row : rows) {
    movie.DS_Remove();
    log.clear();
    list = row.list;
    settings.PlaylistIndex = row.index;
    settings.PreviousItemPosition = 3;
    settings.PlayingFromPlaylist = FromBool(!row.list.empty() || row.index == 5);
    settings.CurrentFile = row.file;
    life.OnLoadLast(false);
    EXPECT_EQ(log, row.log);
    EXPECT_EQ(settings.CurrentFile, row.file_after);
    EXPECT_EQ(settings.PlaylistIndex, row.list.empty() ? 0 : row.index);
    EXPECT_EQ(settings.PreviousItemPosition, row.index == 5 && row.list.empty() ? -1 : 3);
  }
}

TEST_F(FormLifeTest, ReturnsToTheLastPosition) {
  enum { kHalted, kPlays, kPaused };
  const struct {
    bool store_pos;
    double resume;
    bool init_last_frame, auto_start, restart_playing;
    std::string file;
    double position;
    int state;
  } rows[] = {
      {false, -1, false, false, false, "/m/a.avi", 0, kHalted},
      {false, 5, false, false, false, "/m/a.avi", 40, kHalted},
      {true, -1, true, false, false, "/m/a.avi", 40, kPaused},
      {true, -1, true, false, false, "/m/b.mp3", 40, kHalted},  // no picture, no frame
      {true, -1, false, true, false, "/m/b.mp3", 40, kPlays},
      {true, -1, true, false, true, "/m/a.avi", 40, kPlays},
      {true, -1, true, true, true, "/gone.mp3", 0, kPlays},
  };
  for (const auto& row : rows) {
    movie.DS_Remove();
    settings.CurrentFile = row.file;
    settings.StorePos = FromBool(row.store_pos);
    settings.InitLastFrame = FromBool(row.init_last_frame);
    settings.AutoStart = FromBool(row.auto_start);
    settings.RestartPlaying = FromBool(row.restart_playing);
    session.ResumePosition = row.resume;
    life.OnLoadLast(false);
    EXPECT_EQ(movie.DS_GetPosition(), row.position) << row.file;
    EXPECT_EQ(movie.State(), row.state) << row.file;
    EXPECT_TRUE(movie.DS_IsOpen());
    EXPECT_FALSE(IsOn(settings.RestartPlaying));
  }
}

TEST_F(FormLifeTest, LeavesAloneWhatWasOpenedByOtherMeans) {
  settings.StorePos = settings.AutoStart = settings.RestartPlaying = FromBool(true);
  settings.CurrentFile = "/m/b.mp3";
  life.OnLoadLast(true);
  EXPECT_THAT(log, IsEmpty());
  EXPECT_FALSE(IsOn(settings.RestartPlaying));

  // While the last medium was waited for, another start has brought its own, which plays.
  while_opening = [this] {
    OpenFile("/m/a.avi", {});
    movie.DS_Play();
    time.Advance(3000);
  };
  life.OnLoadLast(false);
  EXPECT_EQ(settings.CurrentFile, "/m/a.avi");
  EXPECT_EQ(movie.DS_GetPosition(), 3);
  EXPECT_THAT(log, Not(Contains("button 0")));
  EXPECT_EQ(log.back(), "title");

  // The medium of a resume file has another name and is the one that was wanted.
  movie.DS_Remove();
  settings.CurrentFile = "/m/later.kvr";
  while_opening = [this] {
    session.ResumePosition = 7;
    settings.CurrentFile = "/m/a.avi";
  };
  life.OnLoadLast(false);
  EXPECT_THAT(log, Contains("button 0"));
}

TEST_F(FormLifeTest, StopsLoadingWhenTheProgramIsClosedMeanwhile) {
  settings.CurrentFile = "/m/a.avi";
  settings.AutoStart = settings.AutoRestart = FromBool(true);
  while_opening = [this] {
    movie.DS_Play();
    EXPECT_TRUE(life.Form_QueryUnload(UnloadMode::kSessionEnd));
  };
  life.OnLoadLast(false);
  EXPECT_EQ(log.back(), "wheel");
  EXPECT_EQ(settings.CurrentFile, "/m/a.avi");
  EXPECT_TRUE(IsOn(settings.RestartPlaying));  // as it was stored
}

TEST_F(FormLifeTest, GoesDownInOrderAndOnce) {
  movie.DS_OpenFile("/m/a.avi", 0, 0, 0, 0, 0);
  settings.RestartPlaying = settings.AutoRestart = FromBool(true);
  session.FormLoaded = true;
  EXPECT_TRUE(life.Form_QueryUnload(UnloadMode::kUser));
  EXPECT_THAT(log, ElementsAre("hide", "stop timers", "abandon", "forms", "settings", "wheel"));
  EXPECT_TRUE(session.Unloading && !session.FormLoaded && !movie.DS_IsOpen());
  log.clear();
  settings.SavePlaylist = FromBool(true);
  session.PlaylistDirty = true;
  EXPECT_TRUE(life.Form_QueryUnload(UnloadMode::kSessionEnd));  // too late for anything
  EXPECT_THAT(log, IsEmpty());
}

TEST_F(FormLifeTest, AsksForAnUnsavedPlaylistUnlessItIsSavedWithoutAsking) {
  const std::string ours = "/m/list.m3u", kept = "/m/kept.m3u";  // that cannot be written
  const struct {
    bool save_playlist, dirty, saved;
    std::string file;
    std::vector<BoxAnswer> answer;
    bool closes;
    std::string first;
  } rows[] = {
      {true, true, false, ours, {}, true, "save /m/list.m3u"},
      {true, true, false, kept, {BoxAnswer::kCancel}, false, "save /m/kept.m3u"},
      {false, false, false, ours, {}, true, "hide"},
      {false, true, false, ours, {BoxAnswer::kCancel}, false, ""},
      {false, true, false, ours, {BoxAnswer::kNo}, true, "hide"},
      {false, true, true, ours, {BoxAnswer::kYes}, true, "save as"},
      {false, true, false, ours, {BoxAnswer::kYes}, false, "save as"},  // no place was chosen
  };
  for (const auto& row : rows) {
    log.clear();
    session = Session{};
    session.PlaylistDirty = row.dirty;
    settings.SavePlaylist = FromBool(row.save_playlist);
    settings.PlaylistFile = row.file;
    saved = row.saved;
    movie.DS_OpenFile("/m/a.avi", 0, 0, 0, 0, 0);
    movie.DS_Play();
    for (const BoxAnswer answer : row.answer) dialogs.WillAnswer(answer);
    EXPECT_EQ(Ends(UnloadMode::kUser), row.closes);
    EXPECT_EQ(log.empty() ? "" : log.front(), row.first);
    EXPECT_EQ(session.Unloading, row.closes);
    EXPECT_EQ(movie.DS_IsOpen() && movie.DS_IsRunning(), !row.closes);
    EXPECT_EQ(std::count(log.begin(), log.end(), "stop timers"), row.closes);
  }
  EXPECT_EQ(dialogs.LastText(),
            "Current playlist is not saved!\n\nDo you want to save it before you quit ?");
  EXPECT_EQ(dialogs.Boxes().size(), 5U);
  settings.SavePlaylist = FromBool(true);
  settings.PlaylistFile = kept;
  EXPECT_TRUE(Ends(UnloadMode::kSessionEnd)) << "nobody is there to ask";

  session = Session{};
  settings.PlaylistFile = "/throws";
  EXPECT_TRUE(Ends(UnloadMode::kUser));
  EXPECT_EQ(dialogs.LastText(), "Error terminating Kestrelview:\n\nNo space left\nCode:0");
}

TEST_F(FormLifeTest, RemembersAtTheEndOfTheSessionWhetherItPlayed) {
  const struct {
    const char* what;
    bool auto_restart, play, pause, restart;
  } rows[] = {{"playing", true, true, false, true},
              {"paused", true, true, true, false},
              {"playing, not wanted", false, true, false, false}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    log.clear();
    session = Session{};
    settings.AutoRestart = FromBool(row.auto_restart);
    movie.DS_OpenFile("/m/a.avi", 0, 0, 0, 0, 0);
    if (row.play) movie.DS_Play();
    if (row.pause) movie.DS_Pause();
    EXPECT_TRUE(Ends(UnloadMode::kSessionEnd));
    EXPECT_EQ(std::count(log.begin(), log.end(), "run once"), row.auto_restart);
    EXPECT_THAT(log, Contains(row.restart ? "settings, restart" : "settings"));
  }
}

}  // namespace
}  // namespace kv
