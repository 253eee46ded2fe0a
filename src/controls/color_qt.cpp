#include "controls/color_qt.h"

#include <algorithm>
#include <cmath>

namespace kv {

namespace {

QPalette::ColorRole SystemColorRole(std::uint32_t index) {
  switch (index) {
    case 5:  // window
      return QPalette::Base;
    case 8:  // window text
      return QPalette::Text;
    case 13:  // highlight
      return QPalette::Highlight;
    case 14:  // highlight text
      return QPalette::HighlightedText;
    case 16:  // button shadow
      return QPalette::Dark;
    case 18:  // button text
      return QPalette::ButtonText;
    case 20:  // button highlight
      return QPalette::Light;
    default:
      return QPalette::Button;
  }
}

double Linear(double channel) {
  return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor& color) {
  return 0.2126 * Linear(color.redF()) + 0.7152 * Linear(color.greenF()) +
         0.0722 * Linear(color.blueF());
}

}  // namespace

QColor ToQColor(std::int32_t color, const QPalette& palette) {
  const auto bits = static_cast<std::uint32_t>(color);
  if ((bits & 0x80000000U) != 0) return palette.color(SystemColorRole(bits & 0xFFU));
  return QColor::fromRgb(static_cast<int>(bits & 0xFFU), static_cast<int>(bits >> 8 & 0xFFU),
                         static_cast<int>(bits >> 16 & 0xFFU));
}

double ContrastRatio(const QColor& first, const QColor& second) {
  const double a = Luminance(first);
  const double b = Luminance(second);
  return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

QColor Blend(const QColor& from, const QColor& to, double share) {
  const auto mix = [share](double a, double b) {
    return static_cast<float>(std::clamp(a + (b - a) * share, 0.0, 1.0));
  };
  return QColor::fromRgbF(mix(from.redF(), to.redF()), mix(from.greenF(), to.greenF()),
                          mix(from.blueF(), to.blueF()));
}

}  // namespace kv
