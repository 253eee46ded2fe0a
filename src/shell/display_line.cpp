#include "shell/display_line.h"

#include "controls/accessible_qt.h"

#include <QPainter>

namespace kv {

DisplayLine::DisplayLine(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
}

void DisplayLine::SetFullText(const QString& text) {
  if (text == full_text_) return;
  full_text_ = text;
  AnnounceChange(*this, QAccessible::NameChanged);
}

void DisplayLine::SetLink(bool link) {
  link_ = link;
  setFocusPolicy(link ? Qt::TabFocus : Qt::NoFocus);
  // What was a link a moment ago must not keep the keyboard.
  if (!link) clearFocus();
}

void DisplayLine::paintEvent(QPaintEvent* event) {
  QLabel::paintEvent(event);
  if (!hasFocus()) return;
  QPainter painter(this);
  painter.setPen(palette().color(QPalette::WindowText));
  painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
}

}  // namespace kv
