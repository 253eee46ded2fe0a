// The drawn chart as its host sees it.
#include "controls/trend_chart_widget.h"

#include "support/virtual_time.h"

#include <QImage>

#include <gtest/gtest.h>

namespace kv {
namespace {

QImage Picture(QWidget& widget, double scale) {
  QImage image((QSizeF(widget.size()) * scale).toSize(), QImage::Format_RGB32);
  image.setDevicePixelRatio(scale);
  image.fill(Qt::magenta);
  widget.render(&image);
  return image;
}

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
        if (i % 3 == 0) last = Picture(shifted, scale);  // sometimes several steps in one
      }
      ASSERT_EQ(Picture(shifted, scale), Picture(drawn, scale)) << scale << motion;
      ASSERT_NE(Picture(shifted, scale), last);
    }
  }
}

}  // namespace
}  // namespace kv
