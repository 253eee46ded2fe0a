// Where dragged windows snap to.
#include "system/docking.h"

#include <gtest/gtest.h>
#include <ostream>
#include <vector>

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
      {{-14, -14, 86, 36}, {0, 0, 100, 50}},          // both axes, from outside
      {{889, 740, 989, 790}, {900, 750, 1000, 800}},  // right and bottom
      {{290, 350, 390, 450}, {300, 350, 400, 450}},   // right edge at the left one of the other
      {{410, 350, 510, 450}, {400, 350, 500, 450}},   // left edges in line
      {{610, 490, 700, 560}, {600, 500, 690, 570}},   // at the corner; the other's bottom edge
      {{290, 514, 390, 600}, {300, 500, 400, 586}},   // just near enough to overlap
      {{290, 515, 390, 600}, {290, 515, 390, 600}},   // just not
  };
  for (const Case& c : cases) {
    EXPECT_EQ(DockMoving(c.window, {kWork, kOther}), c.snapped) << testing::PrintToString(c.window);
  }
}

TEST(Docking, NearestWinsAndTheFirstOfTwoStays) {
  const DockRect window{100, 0, 200, 50};
  EXPECT_EQ(DockMoving(window, {{90, 0, 95, 10}, {108, 0, 300, 10}}).left, 95);
  EXPECT_EQ(DockMoving(window, {{0, 0, 90, 10}, {110, 0, 300, 10}}).left, 90);
  EXPECT_EQ(DockMoving(window, {{110, 0, 300, 10}, {0, 0, 90, 10}}).left, 110);
}

TEST(Docking, SizedWindowSnapsWithItsDraggedEdges) {
  const DockRect window{5, 6, 990, 791};  // near the work area on all sides
  const struct {
    SizingSide side;
    DockRect snapped;
  } cases[] = {
      {SizingSide::kNone, window},
      {SizingSide::kLeft, {0, 6, 990, 791}},
      {SizingSide::kRight, {5, 6, 1000, 791}},
      {SizingSide::kTop, {5, 0, 990, 791}},
      {SizingSide::kTopLeft, {0, 0, 990, 791}},
      {SizingSide::kTopRight, {5, 0, 1000, 791}},
      {SizingSide::kBottom, {5, 6, 990, 800}},
      {SizingSide::kBottomLeft, {0, 6, 990, 800}},
      {SizingSide::kBottomRight, {5, 6, 1000, 800}},
  };
  for (const auto& c : cases) EXPECT_EQ(DockSizing(window, c.side, {kWork}), c.snapped);
  const DockRect narrow{595, 300, 604, 400};
  EXPECT_EQ(DockSizing(narrow, SizingSide::kLeft, {{610, 0, 900, 800}}), narrow);  // not empty
}

TEST(Docking, DraggedEdgesFromBeforeAndAfter) {
  const DockRect before{100, 100, 300, 300};
  const struct {
    DockRect after;
    SizingSide side;
  } cases[] = {
      {{150, 80, 350, 280}, SizingSide::kNone},  // moved
      {{90, 100, 300, 300}, SizingSide::kLeft},
      {{100, 90, 310, 300}, SizingSide::kTopRight},
      {{90, 100, 300, 310}, SizingSide::kBottomLeft},
      {{0, 0, 500, 800}, SizingSide::kNone},    // tiled
      {{100, 0, 310, 800}, SizingSide::kNone},  // made as high as the screen
  };
  for (const auto& c : cases) EXPECT_EQ(DraggedSide(before, c.after), c.side);
}

}  // namespace
}  // namespace kv
