// From the arguments of the process, or of another start, to the one path that is opened; and what
// else stands before the window.
#include "shell/command_line.h"
#include "shell/hand_over.h"
#include "shell/main_timers.h"
#include "shell/run_once.h"
#include "shell/shell_test.h"
#include "shell/start_up.h"

namespace kv {
namespace {

TEST(CommandLine, IsOnePathWithoutTheSwitchesAsItLiesOnTheDisk) {
  const TempFolder temp;
  const std::string song = temp.Write("debug/-debug/my /debug song.mp3", "x");
  const std::string folder = temp.Path("debug");
  const std::string plain = temp.Write("debug/a.mp3", "x");
  const std::string bytes = temp.Write("debug/\xFFname.mp3", "x");
  const std::string words = temp.Write("debug/my old song.mp3", "x");
  const struct {
    std::vector<std::string> arguments;
    bool debug;
    std::string file;
  } rows[] = {
      {{}, false, ""},
      {{"/debug"}, true, ""},
      {{"/DEBUG"}, true, "/DEBUG"},  // turns the mode on and stays
      {{"/x/a.mp3", "/debug"}, true, "/x/a.mp3"},
      {{"/debug", "/x/a.mp3"}, true, " /x/a.mp3"},  // nothing of that name is there
      {{"/x/a.mp3", "/DDE", "-debug"}, true, "/x/a.mp3"},
      {{"\"/x/my song.mp3\""}, false, "/x/my song.mp3"},
      {{"http://h/a.mp3"}, false, "http://h/a.mp3"},
      {{"--debugdebug"}, true, "-debug"},  // removed once, not again
      {{song}, false, song},
      {{"-debug/my /debug song.mp3"}, false, folder + "/-debug/my /debug song.mp3"},
      {{"-debug/my", "/debug", "song.mp3"}, true, "/my song.mp3"},  // a word of its own is a switch
      {{"-debug", "my", "old", "song.mp3"}, true, words},           // nobody quoted the name
      {{"a.mp3", "-debug", "/dde"}, true, plain},
      {{"../debug/a.mp3"}, false, folder + "/../debug/a.mp3"},
      {{"\xFFname.mp3"}, false, bytes},
      {{"a.mp3", "\xFFname.mp3"}, false, "a.mp3 \xFFname.mp3"},  // two files are one bad path
      {{"FILE://LocalHost" + temp.Path() + "debug/%61.mp%33"}, false, plain},
      {{"file://elsewhere" + plain}, true, "file://elsewhere" + temp.Path() + "a.mp3"},
      {{"file:///x%00y.mp3"}, false, "file:///x%00y.mp3"},
      {{"file:///x/100%.mp3"}, false, "/x/100%.mp3"},
  };
  for (const auto& row : rows) {
    const ParsedCommandLine parsed = ParseDebugSwitch(JoinArguments(row.arguments, folder));
    EXPECT_EQ(CommandFileOf(parsed.CommandLine), row.file);
    EXPECT_EQ(parsed.DebugMode, row.debug) << row.file;
  }
}

struct HandOverTest : testing::Test, HandOverHost {
  void OpenCommandFile(const std::string& path) override { opened.push_back(path); }
  void AbandonOpen() override {}

  TempFolder temp;
  VirtualTime time;
  ScriptedDialogs dialogs;
  MainTimers timers{time, [this](MainTimer timer) {
                      if (timer == MainTimer::LinkExeTimer) hand_over.OnLinkExeTimer();
                      if (timer == MainTimer::OpeningCMDDelay) hand_over.OnOpeningCMDDelay();
                    }};
  HandOver hand_over{*this, dialogs, timers[MainTimer::LinkExeTimer],
                     timers[MainTimer::OpeningCMDDelay]};
  std::vector<std::string> opened;
};

TEST_F(HandOverTest, ReadsTheCommandLine) {
  const std::string song = temp.Write("debug/my song.mp3", "x");
  const std::string good = temp.Write("good.KVR", "[RESUME_FILE]\nPath=" + song + "\n");
  const std::string gone = temp.Write("gone.kvr", "[RESUME_FILE]\nPath=/gone.mp3\n");
  const std::string empty = temp.Write("empty.kvr", "");
  const auto missing = [](const std::string& file) {
    return "File \"" + file + "\" does not exist!";
  };
  const auto target = [](const std::string& file) {
    return "The opened resume file points to \"" + file + "\" which doesn't exist!";
  };
  const std::string url = "http://h/a.mp3";
  const struct {
    std::string command_line, file;  // waiting to be opened
    bool have;
    std::string message;
  } rows[] = {{"", "", false, ""},
              {song, song, true, ""},
              {temp.Path(), temp.Path(), false, missing(temp.Path())},
              {url, url, false, missing(url)},
              {good, good, true, ""},
              {gone, "", false, target("/gone.mp3")},
              {empty, "", false, target("")}};
  for (const auto& row : rows) {
    ScriptedDialogs boxes;
    HandOver fresh(*this, boxes, timers[MainTimer::LinkExeTimer],
                   timers[MainTimer::OpeningCMDDelay]);
    fresh.ReadCommandLine(row.command_line);
    EXPECT_EQ(fresh.CommandFile(), row.file) << row.command_line;
    EXPECT_EQ(boxes.LastText(), row.message);
    EXPECT_EQ(fresh.FinishLoading(), row.have);
    EXPECT_EQ(timers.Enabled(MainTimer::LinkExeTimer), row.have);
    timers.StopAllTimers();
  }
}

TEST_F(HandOverTest, RefusesForThreeSecondsAfterAStartWithAFile) {
  const std::string song = temp.Write("a.mp3", "x");
  hand_over.ReadCommandLine(song);
  ASSERT_TRUE(hand_over.FinishLoading());
  time.Advance(49);
  EXPECT_THAT(opened, IsEmpty());
  time.Advance(1);
  EXPECT_THAT(opened, ElementsAre(song));
  EXPECT_FALSE(hand_over.HaveCommandFile());
  time.Advance(2949);
  EXPECT_FALSE(hand_over.Form_LinkExecute("\"/m/b.mp3\""));
  time.Advance(1);
  EXPECT_TRUE(hand_over.Form_LinkExecute("\"/m/b.mp3\""));
  time.Advance(50);
  EXPECT_THAT(opened, ElementsAre(song, "/m/b.mp3"));
}

TEST_F(HandOverTest, KeepsARequestThatComesWhileTheFormLoads) {
  const std::string song = temp.Write("a.mp3", "x");
  hand_over.ReadCommandLine(song);
  EXPECT_TRUE(hand_over.Form_LinkExecute("\"" + song + "\""));  // the shell's own repetition
  time.Advance(500);
  EXPECT_THAT(opened, IsEmpty());
  EXPECT_TRUE(hand_over.FinishLoading());
  time.Advance(1000);
  EXPECT_THAT(opened, ElementsAre(song));

  // Without a command line it is a start with a medium all the same, not refused afterwards.
  HandOver other(*this, dialogs, timers[MainTimer::LinkExeTimer],
                 timers[MainTimer::OpeningCMDDelay]);
  timers.StopAllTimers();
  EXPECT_TRUE(other.Form_LinkExecute("/m/b.mp3"));
  EXPECT_TRUE(other.FinishLoading());
  EXPECT_FALSE(timers.Enabled(MainTimer::OpeningCMDDelay));
  EXPECT_TRUE(other.Form_LinkExecute("/m/c.mp3"));
}

constexpr auto kUser = RegistryRoot::kCurrentUser;
constexpr const char* kProcessKey = "Software\\Kestrelview\\Process";

TEST(StartUp, AppliesThePriorityAndRecordsTheOneInForce) {
  const struct {
    const char* stored;
    int asked, in_force;
    const char* recorded;
  } rows[] = {
      {nullptr, 32, 32, "Normal"},
      {"ABOVENORMAL", 32768, 32, "Normal"},  // not every user may
      {"belownormal", 16384, 16384, "Below Normal"},
      {"", 32, 7, "Unknown:7"},
  };
  for (const auto& row : rows) {
    const TempFolder temp;
    Registry registry(temp.Path("registry.ini"));
    if (row.stored != nullptr) {
      registry.RegWriteValue(kUser, kProcessKey, "Priority", kRegistryText, row.stored);
    }
    StartUp start(registry, [&](int priority) {
      EXPECT_EQ(priority, row.asked);
      return row.in_force;
    });
    start.Main(JoinArguments({"-debug"}, ""));
    EXPECT_EQ(registry.RegReadValue(kUser, kProcessKey, "Priority_Cur"), row.recorded);
    EXPECT_TRUE(start.IsDebugMode());
    EXPECT_EQ(start.CommandLine(), "");
  }
}

TEST(RunOnce, WritesAnEntryThatNamesTheProgramAndTakesItAway) {
  const TempFolder temp;
  const RunOnce once(temp.Path("autostart/"));
  constexpr const char* kEntry = "autostart/KestrelviewAutoRestart.desktop";
  once.Clear();
  ASSERT_TRUE(once.Register("/my apps/k"));
  EXPECT_EQ(temp.Read(kEntry),
            "[Desktop Entry]\nType=Application\nName=Kestrelview\nExec=\"/my apps/k\"\n"
            "X-GNOME-Autostart-enabled=true\n");
  once.Clear();
  EXPECT_EQ(temp.Read(kEntry), "");
  EXPECT_FALSE(once.Register("/a\nHidden=true"));
  EXPECT_FALSE(RunOnce("").Register("/a"));
  EXPECT_EQ(temp.Read(kEntry), "");
}

}  // namespace
}  // namespace kv
