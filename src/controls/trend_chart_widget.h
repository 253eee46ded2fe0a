// `TrendChart`, the strip chart as a widget.
//
// Properties, values and the Update event are the model's, reached by Model(). The trace is kept as
// a picture: a step shifts it and draws its newest columns alone. Owned by its parent widget.
// Interface thread; lengths are device-independent pixels.
#pragma once

#include "controls/surface_events_qt.h"
#include "controls/trend_chart.h"

#include <QImage>
#include <QPixmap>
#include <QWidget>

namespace kv {

class TrendChart : public QWidget, private TrendChartSurface {
  Q_OBJECT

 public:
  // `time` must outlive the widget.
  explicit TrendChart(TimerSource& time, QWidget* parent = nullptr);

  TrendChartModel& Model() { return model_; }
  const TrendChartModel& Model() const { return model_; }
  SurfaceEvents& Events() { return events_; }

  // Below grid and trace, at the upper left corner; a null pixmap takes it away.
  void SetPicture(const QPixmap& picture);
  const QPixmap& Picture() const { return picture_; }

  // Kept for hosts: the chart covers all of its surface and so needs no mask.
  void SetMaskPicture(const QPixmap& picture) { mask_picture_ = picture; }
  const QPixmap& MaskPicture() const { return mask_picture_; }

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  void Resize(int width, int height) override;
  void Moved() override;
  void Redraw() override;
  void PropertyChanged(std::string_view key) override;

  int Border() const;
  void MakeGrid(QPainter& painter) const;
  void DrawTrace(QPainter& painter, int columns) const;
  bool KeepsTrace(double scale) const;
  void BringTraceUpToDate(double scale);

  SurfaceEvents events_;
  QPixmap picture_;
  QPixmap mask_picture_;
  QImage trace_;              // on nothing, in device pixels
  bool trace_valid_ = false;  // but for the steps since
  int steps_ = 0;
  TrendChartModel model_;
};

}  // namespace kv
