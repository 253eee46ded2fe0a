#include "controls/trend_chart_widget.h"

#include "controls/accessible_qt.h"
#include "controls/color_qt.h"

#include <QPainter>
#include <QPen>
#include <QPolygonF>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace kv {
namespace {

constexpr QSize kSize(160, 32);
constexpr std::int32_t kCoveringMode = 13;
constexpr std::int32_t kSolidStyle = 0;

// By DrawMode, from 1.
constexpr std::array kDrawModes = {
    QPainter::RasterOp_ClearDestination,        QPainter::RasterOp_NotSourceAndNotDestination,
    QPainter::RasterOp_NotSourceAndDestination, QPainter::RasterOp_NotSource,
    QPainter::RasterOp_SourceAndNotDestination, QPainter::RasterOp_NotDestination,
    QPainter::RasterOp_SourceXorDestination,    QPainter::RasterOp_NotSourceOrNotDestination,
    QPainter::RasterOp_SourceAndDestination,    QPainter::RasterOp_NotSourceXorDestination,
    QPainter::CompositionMode_Destination,      QPainter::RasterOp_NotSourceOrDestination,
    QPainter::CompositionMode_SourceOver,       QPainter::RasterOp_SourceOrNotDestination,
    QPainter::RasterOp_SourceOrDestination,     QPainter::RasterOp_SetDestination,
};

// By DrawStyle.
constexpr std::array kDrawStyles = {Qt::SolidLine,   Qt::DashLine,       Qt::DotLine,
                                    Qt::DashDotLine, Qt::DashDotDotLine, Qt::NoPen};

// What a wrong number falls back to is what stands at `fallback`.
template <class Table>
auto Pick(const Table& table, std::int32_t number, std::int32_t fallback) {
  const auto count = static_cast<std::int32_t>(table.size());
  return table[static_cast<std::size_t>(number >= 0 && number < count ? number : fallback)];
}

}  // namespace

TrendChart::TrendChart(TimerSource& time, QWidget* parent) : QWidget(parent), model_(*this, time) {
  InstallControlsAccessibility();
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);
  setMaximumWidth(kTrendChartColumns);
  model_.SetSize(width(), height());
}

QSize TrendChart::sizeHint() const {
  return kSize;
}

void TrendChart::SetPicture(const QPixmap& picture) {
  picture_ = picture;
  update();
}

int TrendChart::Border() const {
  return model_.Properties().BorderStyle != 0 ? 1 : 0;
}

void TrendChart::Resize(int width, int height) {
  resize(width + 2 * Border(), height + 2 * Border());
}

void TrendChart::Moved() {
  ++steps_;
  update();
}

void TrendChart::Redraw() {
  trace_valid_ = false;
  update();
}

void TrendChart::PropertyChanged(std::string_view key) {
  if (!key.empty() && key != "BorderStyle") return;
  setMaximumWidth(kTrendChartColumns + 2 * Border());
  model_.SetSize(width() - 2 * Border(), height() - 2 * Border());
}

void TrendChart::resizeEvent(QResizeEvent* /*event*/) {
  model_.SetSize(width() - 2 * Border(), height() - 2 * Border());
}

// Lines are filled and not stroked: a line of one pixel is one pixel at every scale.
void TrendChart::MakeGrid(QPainter& painter) const {
  const TrendChartProperties& properties = model_.Properties();
  const QColor color = ToQColor(properties.GridColor, palette());
  const int width = model_.ScaleWidth();
  const int height = model_.ScaleHeight();
  for (std::int64_t x = model_.GridOffset(); x <= width; x += properties.GridSize) {
    painter.fillRect(width - static_cast<int>(x), 0, 1, height, color);
  }
  for (std::int64_t y = 0; y <= height; y += properties.GridSize) {
    painter.fillRect(0, static_cast<int>(y), width, 1, color);
  }
}

// The newest `columns` columns.
void TrendChart::DrawTrace(QPainter& painter, int columns) const {
  const TrendChartProperties& properties = model_.Properties();
  QPen pen(ToQColor(properties.ForeColor, palette()), properties.DrawWidth,
           Pick(kDrawStyles, properties.DrawStyle, kSolidStyle), Qt::RoundCap, Qt::RoundJoin);
  painter.setPen(pen);
  painter.setRenderHint(QPainter::Antialiasing);
  const int width = model_.ScaleWidth();
  QPolygonF line;
  line.reserve(columns + 1);
  for (int i = 0; i <= columns; ++i) {
    // The middle of the pixel.
    line.append(QPointF(width - i - 0.5, model_.TraceY(i) + 0.5));
  }
  painter.drawPolyline(line);
}

// A trace that mixes with what is below it, or whose columns are not whole pixels, is drawn anew.
bool TrendChart::KeepsTrace(double scale) const {
  const TrendChartProperties& properties = model_.Properties();
  return properties.DrawMode == kCoveringMode && properties.DrawStyle == kSolidStyle &&
         scale == std::floor(scale);
}

void TrendChart::BringTraceUpToDate(double scale) {
  const int width = model_.ScaleWidth();
  const QSize size = (QSizeF(width, model_.ScaleHeight()) * scale).toSize();
  if (trace_.size() != size || trace_.devicePixelRatio() != scale) {
    trace_ = QImage(size, QImage::Format_ARGB32_Premultiplied);
    trace_.setDevicePixelRatio(scale);
    trace_valid_ = false;
  }
  const int reach = model_.Properties().DrawWidth + 2;  // of one column's ink to the sides
  const int fresh = steps_ + reach;                     // columns that look different now
  const bool shift = trace_valid_ && fresh < width;
  if (trace_valid_ && steps_ == 0) return;
  if (shift) {
    const auto pixels = static_cast<std::size_t>(std::lround(steps_ * scale));
    const std::size_t row = sizeof(QRgb) * (static_cast<std::size_t>(size.width()) - pixels);
    for (int y = 0; y < size.height(); ++y) {
      uchar* const line = trace_.scanLine(y);
      std::memmove(line, line + sizeof(QRgb) * pixels, row);
    }
  }
  QPainter painter(&trace_);
  const QRect part = shift ? QRect(width - fresh, 0, fresh, model_.ScaleHeight())
                           : QRect(0, 0, width, model_.ScaleHeight());
  painter.setClipRect(part);
  painter.setCompositionMode(QPainter::CompositionMode_Source);
  painter.fillRect(part, Qt::transparent);
  painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
  DrawTrace(painter, shift ? fresh + reach : width);
  trace_valid_ = true;
  steps_ = 0;
}

void TrendChart::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const TrendChartProperties& properties = model_.Properties();
  const double scale = painter.deviceTransform().m11();
  const int border = Border();
  if (border != 0) painter.fillRect(rect(), palette().color(QPalette::Dark));
  painter.translate(border, border);
  const QRect chart(0, 0, model_.ScaleWidth(), model_.ScaleHeight());
  if (chart.isEmpty()) return;
  painter.setClipRect(chart);
  painter.fillRect(chart, ToQColor(properties.BackColor, palette()));
  if (!picture_.isNull()) painter.drawPixmap(0, 0, picture_);
  if (properties.Grid) MakeGrid(painter);
  if (KeepsTrace(scale)) {
    BringTraceUpToDate(scale);
    painter.drawImage(0, 0, trace_);
  } else {
    painter.setCompositionMode(Pick(kDrawModes, properties.DrawMode - 1, kCoveringMode - 1));
    DrawTrace(painter, model_.ScaleWidth());
  }
}

void TrendChart::mousePressEvent(QMouseEvent* event) {
  if (!RaiseButton(events_.MouseDown, *event)) event->ignore();
}

void TrendChart::mouseMoveEvent(QMouseEvent* event) {
  if (!RaiseMove(events_.MouseMove, *event)) event->ignore();
}

void TrendChart::mouseReleaseEvent(QMouseEvent* event) {
  if (!RaiseButton(events_.MouseUp, *event)) event->ignore();
}

}  // namespace kv
