#include "shell/status_strip.h"

#include "controls/accessible_qt.h"
#include "controls/svg_face_qt.h"

#include <QPainter>

namespace kv {
namespace {

constexpr int kPictureSize = 64;
constexpr int kGap = 12;  // between picture and text
constexpr int kMargin = 16;

}  // namespace

StatusStrip::StatusStrip(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  hide();
}

void StatusStrip::Show(const QString& picture, const QString& text) {
  picture_ = picture;
  text_ = text;
  setAccessibleName(text);
  raise();
  show();
  update();
  AnnounceChange(*this, QAccessible::Alert);
}

void StatusStrip::SetColors(const QColor& back, const QColor& text) {
  back_ = back;
  ink_ = text;
  update();
}

void StatusStrip::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), back_);
  const QRect text_room = rect().adjusted(kMargin, 0, -kMargin, 0);
  const QRect text_size =
      painter.fontMetrics().boundingRect(text_room, Qt::AlignHCenter | Qt::TextWordWrap, text_);
  const int picture = height() > kPictureSize + kGap + text_size.height() ? kPictureSize : 0;
  const int content = picture + (picture > 0 ? kGap : 0) + text_size.height();
  const int top = (height() - content) / 2;
  if (picture > 0) {
    painter.drawPixmap(QPoint((width() - picture) / 2, top),
                       RenderFace(picture_, ink_, QSize(picture, picture), devicePixelRatioF()));
  }
  painter.setPen(ink_);
  painter.drawText(QRect(text_room.left(), top + content - text_size.height(), text_room.width(),
                         text_size.height()),
                   Qt::AlignHCenter | Qt::TextWordWrap, text_);
}

}  // namespace kv
