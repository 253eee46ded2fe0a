#include "controls/scroller.h"

#include "controls/color_qt.h"
#include "controls/surface_events_qt.h"
#include "system/translation_qt.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QCursor>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPointer>
#include <QToolTip>

#include <cmath>

namespace kv {

namespace {

// A comfortable length for a slider that nobody has sized, and the least that can be aimed at.
constexpr int kLength = 120;
constexpr int kLeastLength = 33;

// The model's code of a key; 0 for every key that means nothing to it.
std::int16_t KeyCode(const QKeyEvent& event) {
  if (!event.modifiers().testFlag(Qt::KeypadModifier)) return 0;
  if (event.key() == Qt::Key_Plus) return kKeypadAdd;
  if (event.key() == Qt::Key_Minus) return kKeypadSubtract;
  return 0;
}

// An arrow key up or to the right is a step up; 0 for every other key.
int ArrowSteps(const QKeyEvent& event) {
  if ((event.modifiers() & ~Qt::KeypadModifier) != 0) return 0;
  if (event.key() == Qt::Key_Up || event.key() == Qt::Key_Right) return 1;
  return event.key() == Qt::Key_Down || event.key() == Qt::Key_Left ? -1 : 0;
}

}  // namespace

Scroller::Scroller(QWidget* parent, MessagePump* pump)
    : QWidget(parent), announcer_(*this, [this] { return model_.Value(); }), model_(*this, pump) {
  InstallControlsAccessibility();
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  setAttribute(Qt::WA_OpaquePaintEvent);
  UpdateSizePolicy();
  model_.SetSize(static_cast<float>(width()), static_cast<float>(height()));
}

bool Scroller::Vertical() const {
  return model_.Properties().direction == ScrollerDirection::kVertical;
}

void Scroller::SetPicture(const QPixmap& picture) {
  picture_ = picture;
  model_.PictureChanged();
  update();
}

void Scroller::SetScrollKnobPicture(const QPixmap& picture) {
  knob_picture_ = picture;
  if (picture.isNull()) {
    model_.SetScrollKnobPicture(std::nullopt);
  } else {
    // Whole pixels, since the control takes its size from the knob.
    const QSizeF size = picture.deviceIndependentSize();
    model_.SetScrollKnobPicture(KnobSize{static_cast<float>(std::ceil(size.width())),
                                         static_cast<float>(std::ceil(size.height()))});
  }
  update();
}

QString Scroller::SpokenValue() const {
  return spoken ? spoken(model_.Value()) : QString::number(model_.Value());
}

void Scroller::Step(int steps) {
  model_.SetAndFinish(model_.Value() + steps * key_step);
}

QSize Scroller::sizeHint() const {
  const QSize knob(qRound(model_.Knob().width), qRound(model_.Knob().height));
  return Vertical() ? QSize(knob.width(), kLength) : QSize(kLength, knob.height());
}

QSize Scroller::minimumSizeHint() const {
  const QSize hint = sizeHint();
  return Vertical() ? QSize(hint.width(), kLeastLength) : QSize(kLeastLength, hint.height());
}

void Scroller::UpdateSizePolicy() {
  const bool fixed = model_.Properties().size_to_knob;
  const QSizePolicy::Policy across = fixed ? QSizePolicy::Fixed : QSizePolicy::Preferred;
  if (Vertical()) {
    setSizePolicy(across, QSizePolicy::Expanding);
  } else {
    setSizePolicy(QSizePolicy::Expanding, across);
  }
  updateGeometry();
}

void Scroller::Resize(float width, float height) {
  resize(qRound(width), qRound(height));
}

// A position slider is told its value many times a second, and mostly the picture stays the same.
void Scroller::Repaint() {
  const bool same = painted_pressed_ == model_.Dragging() &&
                    LayOutScroller(model_, devicePixelRatioF()) == painted_;
  if (same) return;
  // The hand on the knob feels each delay; the eye on a playing film does not.
  if (model_.Dragging()) {
    update();
  } else {
    pace_.Wanted();
  }
}

void Scroller::PropertyChanged(std::string_view key) {
  if (key == "Value") {
    announcer_.Changed();
    return;
  }
  UpdateSizePolicy();
  update();
}

std::string Scroller::ToolTipText() const {
  return toolTip().toStdString();
}

std::optional<SetMenuItem> Scroller::PopUpSetMenu(const SetMenuCaptions& captions) {
  // A child, so that it goes when the slider goes; then nothing here may be touched any more.
  const QPointer<QMenu> menu = new QMenu(QTr(captions.file), this);
  const QAction* const to_min = menu->addAction(QTr(captions.set_to_min));
  const QAction* const to_mid = menu->addAction(QTr(captions.set_to_mid));
  const QAction* const to_max = menu->addAction(QTr(captions.set_to_max));
  const QAction* const picked =
      menu->exec(underMouse() ? QCursor::pos() : mapToGlobal(rect().bottomLeft()));
  if (!menu) return std::nullopt;
  menu->deleteLater();
  if (picked == to_min) return SetMenuItem::kSetToMin;
  if (picked == to_mid) return SetMenuItem::kSetToMid;
  if (picked == to_max) return SetMenuItem::kSetToMax;
  return std::nullopt;
}

void Scroller::SetHover(bool hover) {
  if (hover == hover_) return;
  hover_ = hover;
  update();
}

bool Scroller::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    const auto* help = static_cast<QHelpEvent*>(event);
    const auto x = static_cast<float>(help->pos().x());
    const auto y = static_cast<float>(help->pos().y());
    const QString text =
        model_.KnobContains(x, y) ? QString::fromStdString(model_.KnobToolTip()) : toolTip();
    if (text.isEmpty()) {
      QToolTip::hideText();
      event->ignore();
    } else {
      QToolTip::showText(help->globalPos(), text, this);
    }
    return true;
  }
  return QWidget::event(event);
}

ScrollerLook Scroller::Look() const {
  const ScrollerProperties& properties = model_.Properties();
  ScrollerLook look;
  look.back = ToQColor(properties.back_color, palette());
  look.center_line = ToQColor(properties.center_line_color, palette());
  look.range = ToQColor(properties.range_color, palette());
  if (properties.knob_color != kSystemButtonFace) {
    look.knob = ToQColor(properties.knob_color, palette());
  }
  // The theme's accent, unless the scheme's background swallows it.
  constexpr double kVisible = 3.0;
  look.focus = palette().color(QPalette::Highlight);
  if (ContrastRatio(look.focus, look.back) < kVisible) {
    const QColor white(255, 255, 255);
    const QColor black(0, 0, 0);
    look.focus = ContrastRatio(white, look.back) > ContrastRatio(black, look.back) ? white : black;
  }
  look.picture = picture_;
  look.custom_knob = knob_picture_;
  look.vertical = Vertical();
  look.enabled = isEnabled();
  look.hover = hover_;
  look.pressed = model_.Dragging();
  look.keyboard_focus = focused_ && focus_by_key_;
  return look;
}

void Scroller::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  // The scale of what is painted on, which need not be the screen when a picture is taken.
  const QTransform device = painter.deviceTransform();
  const double scale = device.m11();
  painted_ = LayOutScroller(model_, scale);
  painted_pressed_ = model_.Dragging();
  const ScrollerLook look = Look();
  painter.fillRect(rect(), look.back);
  // At a fractional scale the control's corner need not fall on a device pixel; the drawing does.
  painter.scale(1 / scale, 1 / scale);
  painter.translate(std::round(device.dx()) - device.dx(), std::round(device.dy()) - device.dy());
  PaintScroller(painter, painted_, look, scale);
}

void Scroller::resizeEvent(QResizeEvent* /*event*/) {
  model_.SetSize(static_cast<float>(width()), static_cast<float>(height()));
}

void Scroller::changeEvent(QEvent* event) {
  if (event->type() == QEvent::EnabledChange && !isEnabled()) {
    hover_ = false;
    model_.CancelDrag();
  }
  update();
  QWidget::changeEvent(event);
}

void Scroller::hideEvent(QHideEvent* event) {
  hover_ = false;
  model_.CancelDrag();
  QWidget::hideEvent(event);
}

void Scroller::ButtonChanged(QMouseEvent& event, ButtonHandler handler) {
  const std::int16_t button = ButtonMask(event.button());
  if (button == 0) {
    event.ignore();
    return;
  }
  const QPointF at = event.position();
  const QPointer<Scroller> alive(this);
  (model_.*handler)(button, ShiftMask(event.modifiers()), static_cast<float>(at.x()),
                    static_cast<float>(at.y()));
  if (alive) update();
}

void Scroller::mousePressEvent(QMouseEvent* event) {
  ButtonChanged(*event, &ScrollerModel::PointerDown);
}

void Scroller::mouseMoveEvent(QMouseEvent* event) {
  const QPointF at = event->position();
  const QPointer<Scroller> alive(this);
  model_.PointerMove(ButtonMask(event->buttons()), static_cast<float>(at.x()),
                     static_cast<float>(at.y()));
  if (alive) {
    SetHover(model_.KnobContains(static_cast<float>(at.x()), static_cast<float>(at.y())));
  }
}

void Scroller::mouseReleaseEvent(QMouseEvent* event) {
  ButtonChanged(*event, &ScrollerModel::PointerUp);
}

void Scroller::leaveEvent(QEvent* event) {
  SetHover(false);
  QWidget::leaveEvent(event);
}

void Scroller::keyPressEvent(QKeyEvent* event) {
  if (const int steps = arrow_keys ? ArrowSteps(*event) : 0; steps != 0) return Step(steps);
  if (!model_.KeyDown(KeyCode(*event), ShiftMask(event->modifiers()))) event->ignore();
}

void Scroller::keyReleaseEvent(QKeyEvent* event) {
  model_.KeyUp(KeyCode(*event), ShiftMask(event->modifiers()));
  event->ignore();
}

// The mouse brings the menu by itself; this is the Menu key.
void Scroller::contextMenuEvent(QContextMenuEvent* event) {
  const bool by_key = event->reason() == QContextMenuEvent::Keyboard;
  event->setAccepted(by_key && model_.Properties().menu_enabled);
  if (event->isAccepted()) model_.ShowSetMenu();
}

// Coming back from another window or a menu says nothing about how the focus once came here.
void Scroller::focusInEvent(QFocusEvent* event) {
  const Qt::FocusReason reason = event->reason();
  if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason) {
    focus_by_key_ = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
                    reason == Qt::ShortcutFocusReason;
  }
  focused_ = true;
  QWidget::focusInEvent(event);
  if (got_focus) got_focus();
}

void Scroller::focusOutEvent(QFocusEvent* event) {
  focused_ = false;
  QWidget::focusOutEvent(event);
}

}  // namespace kv
