// The strip chart's rules: how samples, trace, grid, timer and size follow from what it is told.
#include "controls/trend_chart.h"

#include "support/virtual_time.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

namespace kv {
namespace {

class Surface : public TrendChartSurface {
 public:
  void Resize(int width, int /*height*/) override { resized_to = width; }
  void Moved() override { ++moves; }
  int resized_to = 0;
  int moves = 0;
};

class TrendChartTest : public testing::Test {
 protected:
  TrendChartTest() {
    chart.SetDrawWidth(2);
    chart.SetSize(100, 54);  // half a pixel for each unit
  }
  std::vector<int> Newest(int count) const {
    std::vector<int> trace;
    for (int i = 0; i < count; ++i) trace.push_back(chart.TraceY(i));
    return trace;
  }

  VirtualTime time;
  Surface surface;
  TrendChartModel chart{surface, time};
};

TEST_F(TrendChartTest, TraceKeepsItsMarginsAndRunsOverTheEdges) {
  struct Case {
    double value;
    int y;
  };
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const Case& c : {Case{0, 52}, Case{100, 2}, Case{50, 27}, Case{-1, 52}, Case{-8, 56},
                        Case{120, -8}, Case{std::nan(""), 52}, Case{kInfinity, -30000}}) {
    chart.SetValue(c.value);
    EXPECT_EQ(chart.TraceY(0), c.y) << c.value;
  }
  chart.SetMin(100);  // no range at all
  EXPECT_EQ(Newest(4), (std::vector<int>{52, 52, 52, 52}));
}

TEST_F(TrendChartTest, OldestSampleIsTheOneBehindTheLastColumn) {
  chart.SetValue(100);
  for (int i = 0; i < kTrendChartColumns; ++i) chart.SetValue(0);
  EXPECT_EQ(chart.TraceY(kTrendChartColumns), 2);
  chart.SetValue(0);
  EXPECT_EQ(chart.TraceY(kTrendChartColumns), 52);
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

TEST_F(TrendChartTest, VerticalLinesTravelWithTheTrace) {
  chart.SetGridSize(3);
  std::vector<int> offsets;
  for (int i = 0; i < 4; ++i) {
    chart.MoveGraph();
    offsets.push_back(chart.GridOffset());
  }
  EXPECT_EQ(offsets, (std::vector<int>{1, 2, 0, 1}));
  chart.SetGridMotion(false);
  EXPECT_EQ(chart.GridOffset(), 0);
  chart.SetGridMotion(true);
  chart.MoveGraph();
  chart.SetGridSize(0);
  EXPECT_EQ(chart.Properties().GridSize, 1);
  chart.MoveGraph();
  EXPECT_EQ(chart.GridOffset(), 0);  // the phase was past the new pitch
}

TEST_F(TrendChartTest, NoMoreColumnsThanThereAreSamples) {
  chart.SetSize(kTrendChartColumns, 54);
  EXPECT_EQ(surface.resized_to, 0);
  chart.SetSize(kTrendChartColumns + 1, 54);
  EXPECT_EQ(surface.resized_to, kTrendChartColumns);
  EXPECT_EQ(chart.ScaleWidth(), kTrendChartColumns);
}

}  // namespace
}  // namespace kv
