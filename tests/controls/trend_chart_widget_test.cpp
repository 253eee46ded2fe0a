// The drawn chart as its host sees it.
#include "controls/trend_chart_widget.h"

#include "controls/picture_qt.h"
#include "support/virtual_time.h"

#include <gtest/gtest.h>

namespace kv {
namespace {

// A chart that shifts its picture must look like one that draws all of it.
TEST(TrendChartWidget, ShiftedTraceIsTheDrawnTrace) {
  for (const double scale : {1.0, 1.25, 2.0}) {
    for (const bool motion : {false, true}) {
      VirtualTime time;
      TrendChart shifted(time);
      TrendChart drawn(time);
      for (TrendChart* chart : {&shifted, &drawn}) {
        chart->resize(60, 40);
        chart->show();
        chart->Model().SetGridMotion(motion);
      }
      QImage last;
      for (int i = 0; i < 26; ++i) {
        const double value = i * 37 % 101;
        shifted.Model().SetValue(value);
        drawn.Model().SetValue(value);
        if (i % 3 == 0) last = PictureOf(shifted, scale);  // sometimes several steps in one
      }
      ASSERT_EQ(PictureOf(shifted, scale), PictureOf(drawn, scale)) << scale << motion;
      ASSERT_NE(PictureOf(shifted, scale), last);
    }
  }
}

}  // namespace
}  // namespace kv
