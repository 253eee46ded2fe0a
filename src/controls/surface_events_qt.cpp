#include "controls/surface_events_qt.h"

#include "controls/scroller_model.h"

namespace kv {
std::int16_t ButtonMask(Qt::MouseButtons buttons) {
  int mask = 0;
  if (buttons.testFlag(Qt::LeftButton)) mask |= kLeftButton;
  if (buttons.testFlag(Qt::RightButton)) mask |= kRightButton;
  if (buttons.testFlag(Qt::MiddleButton)) mask |= kMiddleButton;
  return static_cast<std::int16_t>(mask);
}

std::int16_t ShiftMask(Qt::KeyboardModifiers modifiers) {
  int mask = 0;
  if (modifiers.testFlag(Qt::ShiftModifier)) mask |= kShiftKey;
  if (modifiers.testFlag(Qt::ControlModifier)) mask |= kCtrlKey;
  if (modifiers.testFlag(Qt::AltModifier)) mask |= kAltKey;
  return static_cast<std::int16_t>(mask);
}

namespace {

bool Raise(const SurfaceEvents::Handler& handler, std::int16_t button, const QMouseEvent& event) {
  if (!handler) return false;
  const QPointF at = event.position();
  handler(button, ShiftMask(event.modifiers()), static_cast<float>(at.x()),
          static_cast<float>(at.y()));
  return true;
}

}  // namespace

bool RaiseButton(const SurfaceEvents::Handler& handler, const QMouseEvent& event) {
  const std::int16_t button = ButtonMask(event.button());
  return button != 0 && Raise(handler, button, event);
}

bool RaiseMove(const SurfaceEvents::Handler& handler, const QMouseEvent& event) {
  return Raise(handler, ButtonMask(event.buttons()), event);
}

}  // namespace kv
