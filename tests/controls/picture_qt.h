// What a widget paints, at the scale of a screen.
#pragma once

#include <QImage>
#include <QWidget>

namespace kv {

inline QImage PictureOf(QWidget& widget, double scale) {
  QImage image((QSizeF(widget.size()) * scale).toSize(), QImage::Format_RGB32);
  image.setDevicePixelRatio(scale);
  image.fill(Qt::magenta);
  widget.render(&image);
  return image;
}

}  // namespace kv
