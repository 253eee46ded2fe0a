// The processor load from counters of all sizes and shapes.
#include "system/cpu_usage.h"

#include "support/temp_folder.h"

#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <vector>

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
  struct Case {
    int processors, busy, idle, iowait;
    int percent;
  };
  const Case cases[] = {
      {1, 100, 0, 0, 100},  {1, 0, 100, 0, 0},     {2, 100, 100, 0, 50},  // one of two is busy
      {2, 100, 40, 60, 50},                                               // waiting is idle
      {1, 1, 199, 0, 1},    {1, 1, 201, 0, 1},                            // half a percent goes up,
      {1, 1, 202, 0, 0},                            // of a share that has four decimals
      {4, 335, 665, 0, 34}, {3, 150, -50, 0, 150},  // counters may go back; nothing is clamped
  };
  for (const Case& c : cases) {
    Count(c.processors, 1000, 1000, 1000);
    probe.Initialize();
    Count(c.processors, 1000 + c.busy, 1000 + c.idle, 1000 + c.iowait);
    EXPECT_EQ(probe.Query(), c.percent) << c.busy << " busy, " << c.idle << " idle";
  }
}

TEST_F(CpuUsageTest, WithinOneTickNothingFails) {
  Count(2, 10, 20, 0);
  probe.Initialize();
  EXPECT_EQ(probe.Query(), 100);
  Count(2, 30, 0, 0);  // no tick in all, yet another idle count
  EXPECT_EQ(probe.Query(), 1100);
}

TEST_F(CpuUsageTest, UnreadableCountersKeepTheInterval) {
  EXPECT_EQ(probe.Query(), kCpuUsageUnknown);
  Count(1, 0, 0, 0);
  probe.Initialize();
  for (const char* const bad :
       {"", "cpu", "cpu 1 2 3\ncpu0 1 2 3\n", "cpu a b c d\ncpu0 1\n", "cpu  1 2 3 4\nintr 5\n",
        "intr 1\ncpu 1 2 3 4\ncpu0 1 2 3 4\n", "cpu 99999999999999999999 1 1 1\ncpu0 1\n"}) {
    Write(bad);
    EXPECT_EQ(probe.Query(), kCpuUsageUnknown) << bad;
  }
  Count(1, 25, 75, 0);
  EXPECT_EQ(probe.Query(), 25);
}

TEST_F(CpuUsageTest, EachReadingIsDrawnTwice) {
  CpuGraphFeed feed(probe);
  std::vector<std::int32_t> drawn;
  for (int busy = 0; busy < 5; ++busy) {
    Count(1, busy * 100, 0, 0);
    if (busy == 0) probe.Initialize();
    if (busy > 0) drawn.push_back(feed.Next());
    if (busy == 2) Count(1, 0, 0, 0);  // nobody looks
  }
  EXPECT_EQ(drawn, (std::vector<std::int32_t>{100, 100, 100, 100}));
  Write("");
  EXPECT_EQ(feed.Next(), kCpuUsageUnknown);
  Count(1, 1000, 0, 0);
  EXPECT_EQ(feed.Next(), kCpuUsageUnknown);
  EXPECT_EQ(feed.Next(), 100);
}

}  // namespace
}  // namespace kv
