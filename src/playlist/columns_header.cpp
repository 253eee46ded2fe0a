#include "playlist/columns_header.h"

#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

namespace kv {
namespace {

constexpr int kWidthStep = 8;  // pixels

}  // namespace

ColumnsHeader::ColumnsHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
  setFocusPolicy(Qt::TabFocus);
}

void ColumnsHeader::SetFocusColor(const QColor& color) {
  focus_color_ = color;
  viewport()->update();
}

void ColumnsHeader::paintSection(QPainter* painter, const QRect& rect, int column) const {
  painter->save();
  QHeaderView::paintSection(painter, rect, column);
  painter->restore();
  if (!hasFocus() || column != chosen_) return;
  painter->setPen(focus_color_);
  painter->setBrush(Qt::NoBrush);
  painter->drawRect(QRectF(rect).adjusted(0.5, 0.5, -1.5, -1.5));
}

void ColumnsHeader::keyPressEvent(QKeyEvent* event) {
  const int step = event->key() == Qt::Key_Left ? -1 : event->key() == Qt::Key_Right ? 1 : 0;
  const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
  const int place = visualIndex(chosen_);
  const int next = std::clamp(place + step, 0, count() - 1);
  if (step != 0 && modifiers == Qt::NoModifier) {
    Choose(logicalIndex(next));
  } else if (step != 0 && modifiers == Qt::ControlModifier) {
    moveSection(place, next);
  } else if (step != 0 && modifiers == Qt::ShiftModifier) {
    resizeSection(chosen_,
                  std::max(sectionSize(chosen_) + step * kWidthStep, minimumSectionSize()));
  } else if (event->key() == Qt::Key_Space && modifiers == Qt::NoModifier) {
    if (!event->isAutoRepeat()) Q_EMIT sectionClicked(chosen_);
  } else {
    event->ignore();
  }
}

void ColumnsHeader::Choose(int column) {
  chosen_ = column;
  // The toolkit knows no current column of a header; this is what is read out.
  setAccessibleDescription(model()->headerData(column, Qt::Horizontal).toString());
  viewport()->update();
  Q_EMIT ColumnChosen(column);
}

void ColumnsHeader::focusInEvent(QFocusEvent* event) {
  QHeaderView::focusInEvent(event);
  Choose(chosen_);
}

void ColumnsHeader::focusOutEvent(QFocusEvent* event) {
  QHeaderView::focusOutEvent(event);
  viewport()->update();
}

}  // namespace kv
