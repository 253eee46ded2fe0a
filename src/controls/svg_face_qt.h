// The player's drawn faces (buttons, indicators, pictures) as pixmaps of any size and ink.
//
// A face is an SVG file whose ink is written "#D8DEE9"; it is replaced by the colour asked for, so
// that one drawing serves every colour scheme. Interface thread only.
#pragma once

#include <QColor>
#include <QPixmap>
#include <QSize>
#include <QString>

namespace kv {

// The face drawn into `size` device-independent pixels at `scale` device pixels for each, its
// aspect kept unless `stretch`. With an invalid `ink` the drawing keeps its own. Null when the file
// cannot be read or drawn.
QPixmap RenderFace(const QString& file, const QColor& ink, QSize size, double scale,
                   bool stretch = false);

}  // namespace kv
