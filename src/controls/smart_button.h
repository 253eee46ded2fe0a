// A flat button with a drawn face, which shows that the pointer is over it or holds it down.
//
// The face takes the ink colour, the ground the back colour; hover, press, focus and disabled state
// are shades of the two, so that every colour scheme suits it. Owned by its parent; interface
// thread only.
#pragma once

#include <QAbstractButton>
#include <QColor>
#include <QPixmap>
#include <QString>

#include <functional>

namespace kv {

class SmartButton : public QAbstractButton {
  Q_OBJECT

 public:
  explicit SmartButton(QWidget* parent = nullptr);

  // `file`: the drawing, see svg_face_qt.h; empty for none.
  void SetFace(const QString& file);
  void SetColors(const QColor& back, const QColor& ink);
  // Tooltip and accessible name in one.
  void SetLabel(const QString& label);

  // For a face that shows one of several states: the state in words, and whether it is on.
  void SetState(const QString& text, bool on);
  const QString& StateText() const { return state_text_; }
  bool StateOn() const { return state_on_; }

  // Called for the second press of a quick pair, whose first was an ordinary click.
  std::function<void()> on_double_click;

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  void RenderFacePixmap(double scale);

  QString file_;
  QString state_text_;
  bool state_on_ = false;
  QColor back_;
  QColor ink_;
  QPixmap face_;
  bool face_enabled_ = true;
  bool hover_ = false;
};

}  // namespace kv
