#include "my_visual.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

int MyVisual::GetVuMeter(QByteArray& samples, int& count, int surface1, int surface2, float width,
                         float height, int& foreground, int& /*background*/, int& /*peak*/) {
  // 1. Listen: the loudest of the last samples; up at once, down within half a second.
  history_.Add(samples, count);
  float loudest = 0.0F;
  for (std::size_t index = 0; index < history_.Size(); ++index) {
    loudest = std::max(loudest, std::abs(history_[index]));
  }
  level_ = std::max(loudest, level_ - clock_.Step() * 2.0F);

  // 2. Paint, on the background that the player has filled. QPainter is comfortable; for speed
  // write to the pixels: kestrelview::LineOf(surface, y)[x] = 0xFFRRGGBB.
  const kestrelview::VisualSurface& surface = *kestrelview::SurfaceOf(surface1, surface2);
  QImage image = kestrelview::ImageOf(surface);
  Paint(image, QSizeF(width, height) / surface.scale, kestrelview::ColorOf(foreground, Qt::white),
        level_);
  return 0;
}

void MyVisual::Paint(QImage& image, QSizeF size, const QColor& color, double level) {
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
  const double radius = (0.1 + 0.35 * level) * std::min(size.width(), size.height());
  painter.drawEllipse(QPointF(size.width() / 2, size.height() / 2), radius, radius);
}

QImage MyVisual::Preview() const {
  QImage image(320, 180, QImage::Format_RGB32);
  image.fill(QColor(0x0B, 0x12, 0x1A));
  Paint(image, QSizeF(image.size()), QColor(0xC0, 0xFF, 0xFF), 0.7);
  return image;
}
