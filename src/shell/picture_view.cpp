#include "shell/picture_view.h"

#include "controls/svg_face_qt.h"

#include <QPainter>

namespace kv {

PictureView::PictureView(const QString& file, QWidget* parent) : QWidget(parent), file_(file) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setAttribute(Qt::WA_TransparentForMouseEvents);
}

void PictureView::paintEvent(QPaintEvent* /*event*/) {
  const double scale = devicePixelRatioF();
  if (picture_.isNull() || picture_.deviceIndependentSize().toSize() != size() ||
      !qFuzzyCompare(picture_.devicePixelRatio(), scale)) {
    picture_ = RenderFace(file_, QColor(), size(), scale, true);
  }
  QPainter painter(this);
  painter.fillRect(rect(), Qt::black);
  painter.drawPixmap(0, 0, picture_);
}

}  // namespace kv
