#include "system/docking.h"

#include <array>
#include <cstdlib>
#include <initializer_list>

namespace kv {
namespace {

// Which end of an axis a side drags: left or top, right or bottom.
enum class End { kNone, kNear, kFar };

struct SideEnds {
  End horizontal;
  End vertical;
};

// In the order of SizingSide.
constexpr std::array<SideEnds, 9> kSides = {{
    {End::kNone, End::kNone},
    {End::kNear, End::kNone},
    {End::kFar, End::kNone},
    {End::kNone, End::kNear},
    {End::kNear, End::kNear},
    {End::kFar, End::kNear},
    {End::kNone, End::kFar},
    {End::kNear, End::kFar},
    {End::kFar, End::kFar},
}};

struct Span {
  int low;
  int high;
};

Span Horizontal(const DockRect& rect) {
  return {rect.left, rect.right};
}
Span Vertical(const DockRect& rect) {
  return {rect.top, rect.bottom};
}

// Windows that pass each other at a distance do not meet.
bool Near(Span a, Span b) {
  return b.high > a.low - kSnapDistance && a.high + kSnapDistance > b.low;
}

// One axis: collects how far the moving edges would have to go, and keeps the shortest way.
class Snap {
 public:
  void Try(int edge, int target) {
    const int way = target - edge;
    if (std::abs(way) >= best_) return;
    best_ = std::abs(way);
    way_ = way;
  }
  int Way() const { return way_; }

 private:
  int best_ = kSnapDistance;
  int way_ = 0;
};

using SpanOf = Span (*)(const DockRect&);

int WayAlong(SpanOf along, SpanOf across, const DockRect& window, std::initializer_list<int> edges,
             const std::vector<DockRect>& targets) {
  Snap snap;
  for (const DockRect& target : targets) {
    if (!Near(across(window), across(target))) continue;
    for (const int edge : edges) {
      snap.Try(edge, along(target).low);
      snap.Try(edge, along(target).high);
    }
  }
  return snap.Way();
}

// Moves the dragged end of one axis.
void SizeAlong(SpanOf along, SpanOf across, End end, const DockRect& window, int& low, int& high,
               const std::vector<DockRect>& targets) {
  if (end == End::kNone) return;
  int& edge = end == End::kNear ? low : high;
  const int old = edge;
  edge += WayAlong(along, across, window, {edge}, targets);
  if (low >= high) edge = old;
}

End DraggedEnd(Span before, Span after) {
  if ((before.low == after.low) == (before.high == after.high)) return End::kNone;
  return before.low == after.low ? End::kFar : End::kNear;
}

// Both ends of an axis have gone, and not together.
bool GivenAnew(Span before, Span after) {
  return before.low != after.low && before.high != after.high &&
         after.high - after.low != before.high - before.low;
}

}  // namespace

DockRect DockMoving(const DockRect& window, const std::vector<DockRect>& targets) {
  const int x = WayAlong(Horizontal, Vertical, window, {window.left, window.right}, targets);
  const int y = WayAlong(Vertical, Horizontal, window, {window.top, window.bottom}, targets);
  return {window.left + x, window.top + y, window.right + x, window.bottom + y};
}

DockRect DockSizing(const DockRect& window, SizingSide side, const std::vector<DockRect>& targets) {
  const SideEnds& ends = kSides.at(static_cast<std::size_t>(side));
  DockRect result = window;
  SizeAlong(Horizontal, Vertical, ends.horizontal, window, result.left, result.right, targets);
  SizeAlong(Vertical, Horizontal, ends.vertical, window, result.top, result.bottom, targets);
  return result;
}

SizingSide DraggedSide(const DockRect& before, const DockRect& after) {
  if (GivenAnew(Horizontal(before), Horizontal(after)) ||
      GivenAnew(Vertical(before), Vertical(after))) {
    return SizingSide::kNone;
  }
  const End horizontal = DraggedEnd(Horizontal(before), Horizontal(after));
  const End vertical = DraggedEnd(Vertical(before), Vertical(after));
  for (std::size_t side = 0; side < kSides.size(); ++side) {
    if (kSides[side].horizontal == horizontal && kSides[side].vertical == vertical) {
      return static_cast<SizingSide>(side);
    }
  }
  return SizingSide::kNone;
}

}  // namespace kv
