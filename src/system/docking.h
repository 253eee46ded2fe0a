// Windows that snap to each other and to the edges of the work area: the arithmetic.
//
// The nearest edge within kSnapDistance wins, each axis for itself; at equal distance the first one
// found stays. What drags real windows is docking_qt.h. Lengths are device-independent pixels of
// the desktop. Any thread.
#pragma once

#include <vector>

namespace kv {

inline constexpr int kSnapDistance = 15;

// `right` and `bottom` lie just outside.
struct DockRect {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;

  int Width() const { return right - left; }
  int Height() const { return bottom - top; }
  friend bool operator==(const DockRect&, const DockRect&) = default;
};

// The edge or corner that is dragged, by the number of the sizing message.
enum class SizingSide {
  kNone = 0,
  kLeft = 1,
  kRight = 2,
  kTop = 3,
  kTopLeft = 4,
  kTopRight = 5,
  kBottom = 6,
  kBottomLeft = 7,
  kBottomRight = 8,
};

// Where a window that is moved to `window` comes to lie; it keeps its size.
DockRect DockMoving(const DockRect& window, const std::vector<DockRect>& targets);

// The size of a window that is dragged to `window` by `side`. Other edges stay where they are, and
// a window never becomes empty.
DockRect DockSizing(const DockRect& window, SizingSide side, const std::vector<DockRect>& targets);

// A finished drag from `before` to `after`: which edge was dragged. kNone when the window kept its
// size or has been given another one as a whole, as by a desktop that tiles: then it was moved.
SizingSide DraggedSide(const DockRect& before, const DockRect& after);

}  // namespace kv
