// The strip chart's rules: how samples, trace, grid, timer and size follow from what it is told.
#include "controls/trend_chart.h"

#include "support/virtual_time.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <utility>
#include <vector>

namespace kv {
namespace {

struct Surface : TrendChartSurface {
  void Resize(int /*width*/, int /*height*/) override {}
  void Moved() override { ++moves; }
  int moves = 0;
};

class TrendChartTest : public testing::Test {
 protected:
  TrendChartTest() {
    chart.SetDrawWidth(2);
    chart.SetSize(100, 54);  // half a pixel for each unit
  }
  std::vector<int> Newest(int count) const {
    std::vector<int> trace(static_cast<std::size_t>(count));
    std::generate(trace.begin(), trace.end(),
                  [this, i = 0]() mutable { return chart.TraceY(i++); });
    return trace;
  }

  VirtualTime time;
  Surface surface;
  TrendChartModel chart{surface, time};
};

TEST_F(TrendChartTest, TraceKeepsItsMarginsAndRunsOverTheEdges) {
  const std::pair<double, int> rows[] = {
      {0, 52},  {100, 2},  {50, 27},           {-1, 52},
      {-8, 56}, {120, -8}, {std::nan(""), 52}, {HUGE_VAL, -30000}};
  for (const auto& [value, y] : rows) {
    chart.SetValue(value);
    EXPECT_EQ(chart.TraceY(0), y) << value;
  }
  chart.SetMin(100);  // no range at all
  EXPECT_EQ(Newest(4), (std::vector<int>{52, 52, 52, 52}));
}

TEST_F(TrendChartTest, TimerPullsOneColumnForEachTick) {
  std::int32_t next = 0;
  chart.Update = [&next](std::int32_t& value) {
    EXPECT_EQ(value, 0);
    value = next += 20;
  };
  chart.SetAutoupdateInterval(100);
  time.Advance(1000);
  EXPECT_EQ(surface.moves, 0);
  chart.SetAutomove(true);
  time.Advance(300);
  EXPECT_EQ(surface.moves, 3);
  // The newest value stands twice: it has replaced the one before, and then moved.
  EXPECT_EQ(Newest(4), (std::vector<int>{22, 22, 32, 42}));
  chart.SetValue(100);  // replaces, and does not move
  EXPECT_EQ(surface.moves, 3);
  EXPECT_EQ(chart.TraceY(0), 2);
  chart.SetAutoupdateInterval(-5);  // nothing to wait for
  time.Advance(1000);
  chart.SetAutoupdateInterval(100);
  chart.SetAutomove(false);
  time.Advance(1000);
  EXPECT_EQ(surface.moves, 3);
}

}  // namespace
}  // namespace kv
