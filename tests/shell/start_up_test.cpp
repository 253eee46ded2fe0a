// What stands before the window: the priority, and the entry that has the desktop start the program
// once more.
#include "shell/start_up.h"

#include "shell/run_once.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>
#include <string>
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
      {"belownormal", 16384, 16384, "Below Normal"},
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

TEST(RunOnce, WritesAnEntryThatNamesTheProgramAndTakesItAway) {
  const struct {
    const char* program;
    const char* exec;
  } rows[] = {
      {"/my apps/100%/k", "Exec=\"/my apps/100%%/k\"\n"},
      // The value is a string with escapes of its own, in which an argument is quoted.
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
