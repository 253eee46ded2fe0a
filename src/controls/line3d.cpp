#include "controls/line3d.h"

#include "controls/accessible_qt.h"
#include "controls/color_qt.h"

#include <QPainter>

namespace kv {
namespace {

std::int32_t FromQColor(const QColor& color) {
  return color.red() | color.green() << 8 | color.blue() << 16;
}

}  // namespace

line3d::line3d(QWidget* parent) : QWidget(parent) {
  InstallControlsAccessibility();
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);
  setEnabled(properties_.Enabled);
}

void line3d::LoadProperties(const Line3dProperties& properties) {
  properties_ = properties;
  setEnabled(properties_.Enabled);
  update();
}

void line3d::SetColors(const QColor& Color1, const QColor& Color2) {
  properties_.Color1 = FromQColor(Color1);
  properties_.Color2 = FromQColor(Color2);
  update();
}

void line3d::resizeEvent(QResizeEvent* /*event*/) {
  if (height() > width()) {
    if (width() != kThickness) resize(kThickness, height());
  } else if (height() != kThickness) {
    resize(width(), kThickness);
  }
}

void line3d::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), ToQColor(properties_.BackColor, palette()));
  const QColor first = ToQColor(properties_.Color1, palette());
  const QColor second = ToQColor(properties_.Color2, palette());
  if (height() > width()) {
    painter.fillRect(1, 0, 1, height(), second);
    painter.fillRect(0, 0, 1, height(), first);
  } else {
    painter.fillRect(0, 0, width(), 1, first);
    painter.fillRect(0, 1, width(), 1, second);
  }
}

void line3d::mousePressEvent(QMouseEvent* event) {
  if (!RaiseButton(events_.MouseDown, *event)) event->ignore();
}

void line3d::mouseMoveEvent(QMouseEvent* event) {
  if (!RaiseMove(events_.MouseMove, *event)) event->ignore();
}

void line3d::mouseReleaseEvent(QMouseEvent* event) {
  if (!RaiseButton(events_.MouseUp, *event)) event->ignore();
}

}  // namespace kv
