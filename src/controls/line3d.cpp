#include "controls/line3d.h"

#include <QPainter>

namespace kv {

line3d::line3d(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_OpaquePaintEvent);
}

void line3d::SetColors(const QColor& Color1, const QColor& Color2) {
  Color1_ = Color1;
  Color2_ = Color2;
  update();
}

void line3d::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  if (height() > width()) {
    painter.fillRect(QRect(0, 0, 1, height()), Color1_);
    painter.fillRect(QRect(1, 0, width() - 1, height()), Color2_);
  } else {
    painter.fillRect(QRect(0, 0, width(), 1), Color1_);
    painter.fillRect(QRect(0, 1, width(), height() - 1), Color2_);
  }
}

}  // namespace kv
