// A separator: a groove two pixels thick, drawn in two colours, horizontal or vertical by the shape
// of the control. Owned by its parent; interface thread only.
#pragma once

#include <QColor>
#include <QWidget>

namespace kv {

class line3d : public QWidget {
  Q_OBJECT

 public:
  explicit line3d(QWidget* parent = nullptr);

  // The upper or left line, and the lower or right one.
  void SetColors(const QColor& Color1, const QColor& Color2);

  QSize sizeHint() const override { return {kThickness, kThickness}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  static constexpr int kThickness = 2;

  QColor Color1_{0x80, 0x80, 0x80};
  QColor Color2_{0xFF, 0xFF, 0xFF};
};

}  // namespace kv
