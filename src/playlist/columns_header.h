// The titles of the playlist's columns, which the keyboard reaches too: Tab comes to them, Left and
// Right choose one, Space clicks it, Ctrl+Left and Ctrl+Right move it, Shift+Left and Shift+Right
// make it narrower and wider. Owned by the list's view; interface thread only.
#pragma once

#include <QColor>
#include <QHeaderView>

namespace kv {

class ColumnsHeader : public QHeaderView {
  Q_OBJECT

 public:
  explicit ColumnsHeader(QWidget* parent);

  // Of the frame around the column that the keyboard has chosen.
  void SetFocusColor(const QColor& color);

 Q_SIGNALS:
  void ColumnChosen(int column);  // and is to come into sight

 protected:
  void paintSection(QPainter* painter, const QRect& rect, int column) const override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  void Choose(int column);

  QColor focus_color_;
  int chosen_ = 0;  // column
};

}  // namespace kv
