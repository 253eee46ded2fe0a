// The colours of the settings and schemes (0x00BBGGRR, or 0x80000000 + the index of a system
// colour) as the toolkit's. Interface thread.
#pragma once

#include <QColor>
#include <QPalette>

#include <cstdint>

namespace kv {

// `color` in the user's theme; a system colour that has no counterpart there is the button face.
QColor ToQColor(std::int32_t color, const QPalette& palette);

// How far `first` and `second` stand apart to the eye: the contrast ratio of WCAG 2, 1.0 to 21.0.
double ContrastRatio(const QColor& first, const QColor& second);

// `from` moved towards `to` by `share`, 0.0 to 1.0.
QColor Blend(const QColor& from, const QColor& to, double share);

}  // namespace kv
