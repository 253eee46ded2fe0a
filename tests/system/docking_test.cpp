// Where dragged windows snap to.
#include "system/docking.h"

#include <gtest/gtest.h>
#include <ostream>

namespace kv {

void PrintTo(const DockRect& rect, std::ostream* out) {
  *out << rect.left << ' ' << rect.top << ' ' << rect.right << ' ' << rect.bottom;
}

namespace {

const DockRect kWork{0, 0, 1000, 800};
const DockRect kOther{400, 300, 600, 500};

TEST(Docking, MovedWindowKeepsItsSize) {
  struct Case {
    DockRect window;
    DockRect snapped;
  };
  const Case cases[] = {
      {{14, 200, 114, 250}, {0, 200, 100, 250}},      // nearer than 15
      {{15, 200, 115, 250}, {15, 200, 115, 250}},     // at 15 it is free
      {{889, 740, 989, 790}, {900, 750, 1000, 800}},  // right and bottom
      {{290, 350, 390, 450}, {300, 350, 400, 450}},   // right edge at the left one of the other
      {{610, 490, 700, 560}, {600, 500, 690, 570}},   // at the corner; the other's bottom edge
      {{290, 514, 390, 600}, {300, 500, 400, 586}},   // just near enough to overlap
      {{290, 515, 390, 600}, {290, 515, 390, 600}},   // just not
  };
  for (const Case& c : cases) {
    EXPECT_EQ(DockMoving(c.window, {kWork, kOther}), c.snapped) << testing::PrintToString(c.window);
  }
}

TEST(Docking, SizedWindowSnapsWithItsDraggedEdges) {
  const DockRect window{5, 6, 990, 791};  // near the work area on all sides
  const struct {
    SizingSide side;
    DockRect snapped;
  } cases[] = {
      {SizingSide::kNone, window},
      {SizingSide::kTopLeft, {0, 0, 990, 791}},
      {SizingSide::kBottomRight, {5, 6, 1000, 800}},
  };
  for (const auto& c : cases) EXPECT_EQ(DockSizing(window, c.side, {kWork}), c.snapped);
  const DockRect narrow{595, 300, 604, 400};
  EXPECT_EQ(DockSizing(narrow, SizingSide::kLeft, {{610, 0, 900, 800}}), narrow);  // not empty
}

}  // namespace
}  // namespace kv
