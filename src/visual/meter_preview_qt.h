// A picture of the built-in meter, for the plug-in manager: the display itself, with a chord in it.
// Interface thread.
#pragma once

#include "state/settings.h"

#include <QImage>
#include <QPalette>
#include <QSize>

namespace kv {

// `size` in pixels of the desktop, `scale` pixels of the screen in one of them. In the style and
// the colours of the settings.
QImage MeterPreview(const Settings& settings, const QPalette& palette, QSize size, double scale);

}  // namespace kv
