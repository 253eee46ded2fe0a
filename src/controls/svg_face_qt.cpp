#include "controls/svg_face_qt.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

namespace kv {

QPixmap RenderFace(const QString& file, const QColor& ink, QSize size, double scale, bool stretch) {
  QFile source(file);
  if (size.isEmpty() || !source.open(QIODevice::ReadOnly)) return {};
  QByteArray drawing = source.readAll();
  if (ink.isValid()) drawing.replace("#D8DEE9", ink.name().toLatin1());
  QSvgRenderer renderer;
  if (!renderer.load(drawing)) return {};
  renderer.setAspectRatioMode(stretch ? Qt::IgnoreAspectRatio : Qt::KeepAspectRatio);
  QPixmap picture(QSize(qRound(size.width() * scale), qRound(size.height() * scale)));
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  renderer.render(&painter, QRectF(QPointF(), QSizeF(picture.size())));
  painter.end();
  picture.setDevicePixelRatio(scale);
  return picture;
}

}  // namespace kv
