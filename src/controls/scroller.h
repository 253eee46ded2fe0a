// The player's slider as a widget: a ScrollerModel with a window, a picture and a popup menu.
//
// All properties, values and events are the model's, reached by Model(); only what needs the
// toolkit is here. The wheel and all keys but the numeric keypad's plus and minus are left to the
// parent. Owned by its parent widget. Interface thread; sizes are device-independent pixels.
#pragma once

#include "controls/accessible_qt.h"
#include "controls/picture_pace.h"
#include "controls/scroller_art_qt.h"
#include "controls/scroller_model.h"

#include <QPixmap>
#include <QWidget>

#include <functional>

namespace kv {

class Scroller : public QWidget, private ScrollerSurface {
  Q_OBJECT

 public:
  // `pump` may be null and must outlive the widget.
  explicit Scroller(QWidget* parent = nullptr, MessagePump* pump = nullptr);

  ScrollerModel& Model() { return model_; }
  const ScrollerModel& Model() const { return model_; }
  ScrollerEvents& Events() { return model_.Events(); }

  // Called when the slider gets the keyboard focus, so that a host can hand it on.
  std::function<void()> got_focus;

  // The value with its unit, as it is spoken; unset, the bare number.
  std::function<QString(double value)> spoken;
  QString SpokenValue() const;

  // What one step by key or by an assistive tool adds; a step is a finished change.
  double key_step = 1.0;
  void Step(int steps);

  // The arrow keys step it, where nothing else has a use for them.
  bool arrow_keys = false;

  // Background of the control; a null pixmap takes it away.
  void SetPicture(const QPixmap& picture);

  // The knob; a null pixmap brings back the built-in one. A pixmap's own pixel ratio counts.
  void SetScrollKnobPicture(const QPixmap& picture);

  // A picture is about to be painted: a value told since the last one is painted with it.
  void PictureComes() { pace_.PictureComes(); }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  void Resize(float width, float height) override;
  void Repaint() override;
  void PropertyChanged(std::string_view key) override;
  std::string ToolTipText() const override;
  std::optional<SetMenuItem> PopUpSetMenu(const SetMenuCaptions& captions) override;

  bool Vertical() const;
  void UpdateSizePolicy();
  using ButtonHandler = void (ScrollerModel::*)(std::int16_t button, std::int16_t shift, float x,
                                                float y);
  void ButtonChanged(QMouseEvent& event, ButtonHandler handler);
  void SetHover(bool hover);
  ScrollerLook Look() const;

  PicturePace pace_{[this] { update(); }};
  QPixmap picture_;
  QPixmap knob_picture_;
  bool hover_ = false;
  bool focused_ = false;
  bool focus_by_key_ = false;
  bool painted_pressed_ = false;
  ValueAnnouncer announcer_;
  ScrollerScene painted_;
  ScrollerModel model_;
};

}  // namespace kv
