// Mouse events of a drawn control in the numbers that its host hears. Interface thread.
#pragma once

#include <QMouseEvent>

#include <cstdint>
#include <functional>

namespace kv {

// Unset members are skipped. `button`: 1 left, 2 right, 4 middle (a mask while the mouse moves);
// `shift`: 1 Shift, 2 Ctrl, 4 Alt; positions in device-independent pixels of the control.
struct SurfaceEvents {
  using Handler = std::function<void(std::int16_t button, std::int16_t shift, float x, float y)>;
  Handler MouseDown;
  Handler MouseUp;
  Handler MouseMove;
};

// The buttons and modifier keys as masks of those numbers.
std::int16_t ButtonMask(Qt::MouseButtons buttons);
std::int16_t ShiftMask(Qt::KeyboardModifiers modifiers);

// Raises `handler` for a press or release. False when nobody hears it, or for another button.
bool RaiseButton(const SurfaceEvents::Handler& handler, const QMouseEvent& event);

// Raises `handler` for a move. False when nobody hears it.
bool RaiseMove(const SurfaceEvents::Handler& handler, const QMouseEvent& event);

}  // namespace kv
