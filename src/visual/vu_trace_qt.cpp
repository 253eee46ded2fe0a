// The oscilloscope: twenty milliseconds on a screen of ten by eight divisions, with two marks where
// the sound swung highest lately.
#include "controls/color_qt.h"
#include "visual/vu_styles_qt.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <span>
#include <utility>
#include <vector>

namespace kv {
namespace {

constexpr int kColumns = 10;
constexpr int kRows = 8;
constexpr int kTicks = 5;             // in one division
constexpr double kMarkShare = 0.045;  // of the width: the bright ends of a mark
constexpr double kGlow = 3.0;         // how far the line glows, in its own widths
constexpr float kGlowAlpha = 0.28F;

// From where to where the line goes in one column of pixels; nowhere when `top` is below `bottom`.
struct Span {
  float top = std::numeric_limits<float>::max();
  float bottom = std::numeric_limits<float>::lowest();
  void Include(double y) {
    top = std::min(top, static_cast<float>(y));
    bottom = std::max(bottom, static_cast<float>(y));
  }
  friend bool operator==(const Span&, const Span&) = default;
};

QRgb Mix(QRgb under, QRgb over, float alpha) {
  const int share = static_cast<int>(alpha * 256.0F);
  const auto mix = [share](int from, int to) { return from + ((to - from) * share >> 8); };
  return qRgb(mix(qRed(under), qRed(over)), mix(qGreen(under), qGreen(over)),
              mix(qBlue(under), qBlue(over)));
}

class VuTracePainter : public VuStylePainter {
 public:
  void SetLook(const VuLook& look) override {
    look_ = look;
    const int margin = std::max(1, qRound(std::min(look.size.width(), look.size.height()) * 0.04));
    screen_ = QRect(QPoint(0, 0), look.size).adjusted(margin, margin, -margin, -margin);
    if (screen_.width() < 1 || screen_.height() < 1) screen_ = QRect(QPoint(0, 0), look.size);
    DrawStill();
    columns_.clear();
  }

  bool Update(const VuMeter& meter) override {
    const VuTrace& trace = meter.Trace();
    std::vector<Span> columns = Columns(trace);
    const int highest = Row(trace.Highest());
    const int lowest = Row(trace.Lowest());
    if (columns == columns_ && highest == highest_ && lowest == lowest_) return false;
    columns_ = std::move(columns);
    highest_ = highest;
    lowest_ = lowest;
    return true;
  }

  void Paint(QPainter& painter) override {
    QImage picture = still_.copy();
    DrawMarks(picture);
    DrawLine(picture);
    painter.drawImage(0, 0, picture);
  }

 private:
  double LineWidth() const { return std::max(1.3 * look_.scale, screen_.height() / 160.0); }

  double Y(double amplitude) const {
    const double reach = (screen_.height() - LineWidth()) / 2.0;
    return screen_.top() + screen_.height() / 2.0 - amplitude * reach;
  }
  int Row(double amplitude) const { return qRound(Y(amplitude)); }

  // The toolkit's smooth lines would take most of the meter's processor time; a trace goes from
  // left to right only, so that each column of pixels can be told by where the line enters and
  // leaves.
  std::vector<Span> Columns(const VuTrace& trace) const {
    const std::span<const float> points = trace.Points();
    const double step = static_cast<double>(screen_.width()) / static_cast<double>(trace.Length());
    const double beside = std::max(0.0, (LineWidth() - 1.0) / 2.0);
    std::vector<Span> columns(static_cast<std::size_t>(screen_.width()));
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
      const double x = (static_cast<double>(i) - trace.Shift()) * step;
      const double y = Y(points[i]);
      const double slope = (Y(points[i + 1]) - y) / step;
      const int first = std::max(0, static_cast<int>(std::floor(x - beside)));
      const int last =
          std::min(screen_.width() - 1, static_cast<int>(std::floor(x + step + beside)));
      for (int column = first; column <= last; ++column) {
        Span& span = columns[static_cast<std::size_t>(column)];
        span.Include(y + slope * std::clamp(column - beside - x, 0.0, step));
        span.Include(y + slope * std::clamp(column + 1 + beside - x, 0.0, step));
      }
    }
    return columns;
  }

  void DrawMarks(QImage& picture) const {
    QPainter painter(&picture);
    const int thickness = std::max(1, qRound(look_.scale));
    const QColor faint = Blend(look_.back, look_.peak, 0.3);
    const int end = qRound(screen_.width() * kMarkShare);
    for (const int y : {highest_, lowest_}) {
      if (y == Row(0.0)) continue;
      const int top = y - thickness / 2;
      painter.fillRect(screen_.left(), top, screen_.width(), thickness, faint);
      painter.fillRect(screen_.left(), top, end, thickness, look_.peak);
      painter.fillRect(screen_.right() + 1 - end, top, end, thickness, look_.peak);
    }
  }

  void DrawLine(QImage& picture) const {
    const auto half = static_cast<float>(LineWidth() / 2.0);
    const float glow = static_cast<float>(kGlow * LineWidth());
    const QRgb color = look_.fore.rgb();
    const qsizetype stride = picture.bytesPerLine() / static_cast<qsizetype>(sizeof(QRgb));
    auto* const corner = reinterpret_cast<QRgb*>(picture.bits());
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      const float top = columns_[i].top - half;
      const float bottom = columns_[i].bottom + half;
      if (bottom <= top) continue;
      const int first = std::max(screen_.top(), static_cast<int>(std::floor(top - glow)));
      const int last = std::min(screen_.bottom(), static_cast<int>(std::ceil(bottom + glow)));
      QRgb* pixel = corner + first * stride + screen_.left() + static_cast<qsizetype>(i);
      for (int y = first; y <= last; ++y, pixel += stride) {
        const auto row = static_cast<float>(y);
        const float covered =
            std::clamp(std::min(row + 1.0F, bottom) - std::max(row, top), 0.0F, 1.0F);
        const float away = std::max({0.0F, top - row - 0.5F, row + 0.5F - bottom});
        const float near = std::max(0.0F, 1.0F - away / glow);
        *pixel = Mix(*pixel, color, std::max(covered, kGlowAlpha * near * near));
      }
    }
  }

  void DrawStill() {
    still_ = BlankPicture(look_);
    QPainter painter(&still_);
    const double u = look_.scale;
    painter.fillRect(screen_, Blend(look_.back, look_.fore, 0.035));
    const int line = std::max(1, qRound(u * 0.6));
    const QColor fine = Blend(look_.back, look_.lines, 0.15);
    const QColor axis = Blend(look_.back, look_.marks, 0.38);
    const double column = screen_.width() / static_cast<double>(kColumns);
    const double row = screen_.height() / static_cast<double>(kRows);
    const bool grid = column >= 8 * u && row >= 6 * u;
    const int middle_x = qRound(screen_.left() + screen_.width() / 2.0);
    const int middle_y = Row(0.0);
    for (int i = 0; grid && i <= kColumns; ++i) {
      painter.fillRect(screen_.left() + qRound(i * column) - (i == kColumns ? line : 0),
                       screen_.top(), line, screen_.height(), fine);
    }
    for (int i = 0; grid && i <= kRows; ++i) {
      painter.fillRect(screen_.left(), screen_.top() + qRound(i * row) - (i == kRows ? line : 0),
                       screen_.width(), line, fine);
    }
    painter.fillRect(screen_.left(), middle_y, screen_.width(), line, axis);
    if (grid) {
      painter.fillRect(middle_x, screen_.top(), line, screen_.height(), axis);
      const int tick = qRound(2.5 * u);
      for (int i = 1; column >= 20 * u && i < kColumns * kTicks; ++i) {
        painter.fillRect(screen_.left() + qRound(i * column / kTicks), middle_y - tick, line,
                         2 * tick + line, axis);
      }
      for (int i = 1; row >= 20 * u && i < kRows * kTicks; ++i) {
        painter.fillRect(middle_x - tick, screen_.top() + qRound(i * row / kTicks), 2 * tick + line,
                         line, axis);
      }
    }
    if (screen_.width() < 220 * u || screen_.height() < 120 * u) return;
    const double text = std::clamp(screen_.height() / u * 0.042, 8.5, 15.0) * u;
    painter.setFont(FontOfPixels(look_.numbers_font, text));
    painter.setPen(Blend(look_.back, look_.numbers, 0.7));
    const int below = qRound(text * 0.5);
    const int beside = below + qRound(screen_.width() * kMarkShare);
    painter.drawText(screen_.adjusted(beside, below, -beside, -below),
                     Qt::AlignRight | Qt::AlignBottom, QStringLiteral("2 ms"));
  }

  VuLook look_;
  QRect screen_;
  QImage still_;
  std::vector<Span> columns_;
  int highest_ = 0;
  int lowest_ = 0;
};

}  // namespace

std::unique_ptr<VuStylePainter> MakeVuTracePainter() {
  return std::make_unique<VuTracePainter>();
}

}  // namespace kv
