// What stands before the window: the priority, the table of timers, and the entry that has the
// desktop start the program once more.
#include "shell/start_up.h"

#include "shell/main_timers.h"
#include "shell/run_once.h"
#include "support/temp_folder.h"
#include "support/virtual_time.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <vector>

namespace kv {
namespace {

constexpr auto kUser = RegistryRoot::kCurrentUser;
constexpr const char* kProcessKey = "Software\\Kestrelview\\Process";

TEST(StartUp, AppliesThePriorityAndRecordsTheOneInForce) {
  const struct {
    const char* stored;
    int asked;
    int in_force;
    const char* recorded;
  } rows[] = {
      {nullptr, 32, 32, "Normal"},
      {"ABOVENORMAL", 32768, 32, "Normal"},  // not every user may
      {"Above Normal", 32, 32, "Normal"},
      {"belownormal", 16384, 16384, "Below Normal"},
      {"Low", 64, 64, "Idle"},
      {"high", 128, 128, "High"},
      {"realtime", 256, 256, "Realtime"},
      {"abovenormal", 32768, 32768, "Above Normal"},
      {"", 32, 7, "Unknown:7"},
  };
  for (const auto& row : rows) {
    const TempFolder temp;
    Registry registry(temp.Path("registry.ini"));
    if (row.stored != nullptr) {
      registry.RegWriteValue(kUser, kProcessKey, "Priority", kRegistryText, row.stored);
    }
    std::vector<int> asked;
    StartUp start(registry, [&](int priority) {
      asked.push_back(priority);
      return row.in_force;
    });
    start.Main(JoinArguments({"-debug"}, ""));
    EXPECT_EQ(asked, std::vector<int>{row.asked});
    EXPECT_EQ(registry.RegReadValue(kUser, kProcessKey, "Priority_Cur"), row.recorded);
    EXPECT_TRUE(start.IsDebugMode());
    EXPECT_EQ(start.CommandLine(), "");
  }
}

TEST(StartUp, GoesOnWithoutAStore) {
  const TempFolder temp;
  Registry registry(temp.MakeFolder("a folder"));
  int asked = 0;
  StartUp start(registry, [&](int priority) { return asked = priority; });
  start.Main(JoinArguments({"/x/a.mp3"}, ""));
  EXPECT_EQ(asked, 32);
  EXPECT_EQ(start.CommandLine(), "/x/a.mp3");
  EXPECT_FALSE(start.IsDebugMode());
}

TEST(MainTimers, AreMadeDisabledTellWhoFiresAndStopTogether) {
  VirtualTime time;
  std::vector<MainTimer> fired;
  MainTimers timers(time, [&](MainTimer timer) { fired.push_back(timer); });
  EXPECT_EQ(time.ActiveTimers(), 0);
  for (const MainTimerRow& row : kMainTimers) {
    EXPECT_EQ(timers[row.id].Interval(), row.interval);
    timers[row.id].SetEnabled(true);
    time.Advance(row.interval);
    EXPECT_EQ(fired, std::vector<MainTimer>{row.id}) << row.name;
    timers[row.id].SetEnabled(false);
    fired.clear();
  }
  for (const MainTimerRow& row : kMainTimers) timers[row.id].SetEnabled(true);
  EXPECT_EQ(time.ActiveTimers(), 21);
  timers.StopAllTimers();
  EXPECT_EQ(time.ActiveTimers(), 0);
}

TEST(RunOnce, WritesAnEntryThatNamesTheProgramAndTakesItAway) {
  const struct {
    const char* program;
    const char* exec;
  } rows[] = {
      {"/opt/kestrelview", "Exec=\"/opt/kestrelview\"\n"},
      {"/my apps/100%/k", "Exec=\"/my apps/100%%/k\"\n"},
      // The value is a string with escapes of its own, in which an argument is quoted.
      {"/a\\b", "Exec=\"/a\\\\\\\\b\"\n"},
      {"/a\"b`c$d", "Exec=\"/a\\\\\"b\\\\`c\\\\$d\"\n"},
  };
  const TempFolder temp;
  const RunOnce once(temp.Path("autostart/"));
  constexpr const char* kEntry = "autostart/KestrelviewAutoRestart.desktop";
  once.Clear();
  for (const auto& row : rows) {
    ASSERT_TRUE(once.Register(row.program));
    const std::string entry = temp.Read(kEntry);
    EXPECT_TRUE(entry.starts_with("[Desktop Entry]\nType=Application\n")) << entry;
    EXPECT_NE(entry.find(row.exec), std::string::npos) << entry;
  }
  once.Clear();
  EXPECT_EQ(temp.Read(kEntry), "");
  EXPECT_FALSE(once.Register("/a\nHidden=true"));
  EXPECT_FALSE(RunOnce("").Register("/a"));
  EXPECT_EQ(temp.Read(kEntry), "");
}

}  // namespace
}  // namespace kv
