// The processor load from counters of all sizes and shapes.
#include "system/cpu_usage.h"

#include "support/temp_folder.h"

#include <fstream>
#include <gtest/gtest.h>
#include <string>

namespace kv {
namespace {

class CpuUsageTest : public testing::Test {
 protected:
  void Write(const std::string& text) const { std::ofstream(file) << text; }
  // The sums of `processors`, which had so many ticks of each kind.
  void Count(int processors, int busy, int idle, int iowait) const {
    std::string text = "cpu  " + std::to_string(busy) + " 0 0 " + std::to_string(idle) + " " +
                       std::to_string(iowait) + " 0 0 0 999 999\n";  // guests count elsewhere
    for (int i = 0; i < processors; ++i) text += "cpu" + std::to_string(i) + " 1 2 3 4\n";
    Write(text + "intr 5 6\ncpuless 7\n");
  }

  TempFolder folder;
  std::string file = folder.Path("stat");
  clsCPUUsageNT probe{file};
};

TEST_F(CpuUsageTest, PercentOfAllProcessorsRounded) {
  const struct {
    int processors, busy, idle, iowait;
    int percent;
  } cases[] = {
      {2, 100, 40, 60, 50},   // waiting is idle
      {1, 1, 201, 0, 1},      // half a percent goes up,
      {1, 1, 202, 0, 0},      // of a share that has four decimals
      {3, 150, -50, 0, 150},  // counters may go back; nothing is clamped
      {2, 0, 0, 0, 100},      // no tick at all
  };
  for (const auto& c : cases) {
    Count(c.processors, 1000, 1000, 1000);
    probe.Initialize();
    Count(c.processors, 1000 + c.busy, 1000 + c.idle, 1000 + c.iowait);
    EXPECT_EQ(probe.Query(), c.percent) << c.busy << " busy, " << c.idle << " idle";
  }
}

TEST_F(CpuUsageTest, UnreadableCountersKeepTheInterval) {
  EXPECT_EQ(probe.Query(), kCpuUsageUnknown);
  Count(1, 0, 0, 0);
  probe.Initialize();
  for (const char* const bad : {"", "cpu 1 2 3\ncpu0 1 2 3\n", "cpu a b c d\ncpu0 1\n",
                                "cpu 99999999999999999999 1 1 1\ncpu0 1\n"}) {
    Write(bad);
    EXPECT_EQ(probe.Query(), kCpuUsageUnknown) << bad;
  }
  Count(1, 25, 75, 0);
  EXPECT_EQ(probe.Query(), 25);
}

}  // namespace
}  // namespace kv
