// The bars: the whole sound on the left, its thirds of an octave beside it, each with a peak mark
// that stands for a while and then falls.
#include "controls/color_qt.h"
#include "visual/vu_styles_qt.h"

#include <QFontMetricsF>
#include <QLocale>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace kv {
namespace {

constexpr double kLowestShown = -48.0;  // decibels; what 8 bits can tell
constexpr double kSegment = 2.0;        // decibels of one segment
constexpr int kGridStep = 10;           // decibels between the lines
constexpr double kLeastCell = 4.0;      // desktop pixels of a bar and its gap
constexpr double kWholeCells = 2.2;     // cells of the bar of the whole sound, its gap included

struct Bar {
  int left = 0;
  int width = 0;
  std::size_t first = 0;  // of the levels that it shows the highest of
  std::size_t last = 0;
  int level = 0;  // pixels from the bottom
  int peak = 0;
};

QString FrequencyText(double hertz) {
  const QLocale locale = QLocale::system();
  if (hertz < 1000.0) return locale.toString(hertz);
  return locale.toString(hertz / 1000.0) + QLatin1Char('k');
}

class VuBarsPainter : public VuStylePainter {
 public:
  void SetLook(const VuLook& look) override {
    look_ = look;
    bars_.clear();
  }

  bool Update(const VuMeter& meter) override {
    const std::vector<BarLevel>& levels = meter.Bars().Levels();
    if (bars_.empty() || bands_ != levels.size() - 1) LayOut(levels);
    bool changed = false;
    for (Bar& bar : bars_) {
      double level = kLowestLevel;
      double peak = kLowestLevel;
      for (std::size_t i = bar.first; i <= bar.last; ++i) {
        level = std::max(level, levels[i].level);
        peak = std::max(peak, levels[i].peak);
      }
      const int level_pixels = Height(level);
      const int peak_pixels = Height(peak);
      changed = changed || level_pixels != bar.level || peak_pixels != bar.peak;
      bar.level = level_pixels;
      bar.peak = peak_pixels;
    }
    return changed;
  }

  void Paint(QPainter& painter) override {
    painter.drawImage(0, 0, still_);
    const int thickness = std::max(1, qRound(1.5 * look_.scale));
    for (const Bar& bar : bars_) {
      const int top = area_.bottom() + 1 - bar.level;
      painter.drawImage(QRect(bar.left, top, bar.width, bar.level), lit_,
                        QRect(0, area_.height() - bar.level, bar.width, bar.level));
      if (bar.peak <= 0) continue;
      const int peak_top = std::max(area_.top(), area_.bottom() + 1 - bar.peak - thickness / 2);
      painter.fillRect(bar.left, peak_top, bar.width, thickness, look_.peak);
    }
  }

 private:
  int Height(double decibels) const {
    const double share = std::clamp(1.0 - decibels / kLowestShown, 0.0, 1.0);
    return qRound(share * area_.height());
  }

  // Numbers and frequencies come with the room for them.
  void LayOut(const std::vector<BarLevel>& levels) {
    bands_ = levels.size() - 1;
    const double u = look_.scale;
    const double width = look_.size.width() / u;
    const double height = look_.size.height() / u;
    const double text = std::clamp(height * 0.042, 8.5, 15.0) * u;
    font_ = FontOfPixels(look_.numbers_font, text);
    const QFontMetricsF metrics(font_);
    const bool numbers = width >= 180 && height >= 80;
    const bool frequencies = width >= 260 && height >= 120;
    const int margin = std::max(qRound(u), qRound(std::min(width, height) * 0.045 * u));
    const int left =
        numbers ? margin + qRound(metrics.horizontalAdvance(QStringLiteral("-40")) + 0.6 * text)
                : margin;
    const int below = frequencies ? qRound(1.7 * text) : 0;
    area_ = QRect(left, margin, look_.size.width() - left - margin,
                  look_.size.height() - 2 * margin - below);
    if (area_.width() < 1 || area_.height() < 1) area_ = QRect(QPoint(0, 0), look_.size);
    PlaceBars();
    DrawBars();
    DrawStill(levels, numbers, frequencies);
  }

  // Where there is no room for thirds the bars show octaves; where not even for those, one shows
  // the whole sound.
  void PlaceBars() {
    bars_.clear();
    for (const std::size_t together : {std::size_t{1}, std::size_t{3}}) {
      const std::size_t count = (bands_ + together - 1) / together;
      const double cell = area_.width() / (static_cast<double>(count) + kWholeCells);
      if (cell < kLeastCell * look_.scale) continue;
      const int gap = std::max(1, qRound(cell * 0.18));
      const double begin = cell * kWholeCells;
      bars_.push_back({.left = area_.left(), .width = qRound(begin - cell * 0.7)});
      for (std::size_t i = 0; i < count; ++i) {
        const int left = qRound(begin + cell * static_cast<double>(i));
        const int right = qRound(begin + cell * static_cast<double>(i + 1));
        bars_.push_back({.left = area_.left() + left,
                         .width = std::max(1, right - left - gap),
                         .first = 1 + i * together,
                         .last = std::min(bands_, (i + 1) * together)});
      }
      return;
    }
    bars_.push_back({.left = area_.left(), .width = area_.width()});
  }

  // One bar in full, dim and lit; each bar is cut from them.
  void DrawBars() {
    int widest = 1;
    for (const Bar& bar : bars_) widest = std::max(widest, bar.width);
    lit_ = QImage(widest, area_.height(), QImage::Format_RGB32);
    dim_ = lit_.copy();
    const double rows = area_.height();
    const double segment = rows * kSegment / -kLowestShown;
    const int gap = segment < 3.0 * look_.scale ? 0 : std::max(1, qRound(0.8 * look_.scale));
    QPainter lit(&lit_);
    QPainter dim(&dim_);
    const QColor low = Blend(look_.back, look_.fore, 0.62);
    const QColor unlit = Blend(look_.back, look_.fore, 0.09);
    for (int y = 0; y < area_.height(); ++y) {
      const double from_below = rows - y - 0.5;
      const double share = from_below / rows;
      const bool between = std::fmod(rows - y - 1.0, segment) < gap && from_below > segment * 0.5;
      const QColor color = share < 0.75 ? Blend(low, look_.fore, share / 0.75)
                                        : Blend(look_.fore, look_.peak, (share - 0.75) / 0.25);
      lit.fillRect(0, y, widest, 1, between ? look_.back : color);
      dim.fillRect(0, y, widest, 1, between ? look_.back : unlit);
    }
  }

  void DrawStill(const std::vector<BarLevel>& levels, bool numbers, bool frequencies) {
    still_ = BlankPicture(look_);
    QPainter painter(&still_);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setFont(font_);
    const QFontMetricsF metrics(font_);
    const int line = std::max(1, qRound(look_.scale * 0.6));
    const QColor line_color = Blend(look_.back, look_.lines, 0.22);
    const QColor text_color = Blend(look_.back, look_.numbers, 0.85);
    if (numbers) {
      for (int decibels = 0; decibels > kLowestShown; decibels -= kGridStep) {
        const int y = area_.bottom() + 1 - Height(decibels);
        painter.fillRect(area_.left(), y, area_.width(), line, line_color);
        painter.setPen(decibels == 0 ? look_.peak : text_color);
        const QRectF box(0, y - metrics.height() / 2, area_.left() - metrics.height() * 0.35,
                         metrics.height());
        painter.drawText(box, Qt::AlignRight | Qt::AlignVCenter, QString::number(decibels));
      }
    }
    for (const Bar& bar : bars_)
      painter.drawImage(bar.left, area_.top(), dim_, 0, 0, bar.width, area_.height());
    if (!frequencies) return;
    painter.setPen(text_color);
    double free_from = 0.0;
    for (const Bar& bar : bars_) {
      // The octaves, which are the middle ones of three thirds.
      const std::size_t middle = (bar.first + bar.last) / 2;
      const bool octave = middle % 3 == 2;
      if (middle != 0 && !octave) continue;
      const QString text = middle == 0 ? QStringLiteral("dB") : FrequencyText(levels[middle].hertz);
      const double text_width = metrics.horizontalAdvance(text);
      const double center = bar.left + bar.width / 2.0;
      if (center - text_width / 2 < free_from) continue;
      painter.drawText(QPointF(center - text_width / 2,
                               area_.bottom() + 1 + metrics.ascent() + metrics.height() * 0.2),
                       text);
      free_from = center + text_width / 2 + metrics.height() * 0.3;
    }
  }

  VuLook look_;
  QFont font_;
  QRect area_;
  std::size_t bands_ = 0;
  std::vector<Bar> bars_;
  QImage still_;
  QImage lit_;
  QImage dim_;
};

}  // namespace

std::unique_ptr<VuStylePainter> MakeVuBarsPainter() {
  return std::make_unique<VuBarsPainter>();
}

}  // namespace kv
