// Where dragged windows snap to, and that they do when they are let go, and no others.
#include "system/docking.h"

#include "support/virtual_time.h"
#include "system/docking_qt.h"

#include <QGuiApplication>
#include <QScreen>

#include <gtest/gtest.h>
#include <memory>
#include <ostream>

namespace kv {

void PrintTo(const DockRect& rect, std::ostream* out) {
  *out << rect.left << ' ' << rect.top << ' ' << rect.right << ' ' << rect.bottom;
}

namespace {

const DockRect kWork{0, 0, 1000, 800};
const DockRect kOther{400, 300, 600, 500};

TEST(Docking, MovedWindowKeepsItsSize) {
  const struct {
    DockRect window, snapped;
  } cases[] = {
      {{14, 200, 114, 250}, {0, 200, 100, 250}},      // nearer than 15
      {{15, 200, 115, 250}, {15, 200, 115, 250}},     // at 15 it is free
      {{889, 740, 989, 790}, {900, 750, 1000, 800}},  // right and bottom
      {{290, 350, 390, 450}, {300, 350, 400, 450}},   // right edge at the left one of the other
      {{610, 490, 700, 560}, {600, 500, 690, 570}},   // at the corner; the other's bottom edge
      {{290, 514, 390, 600}, {300, 500, 400, 586}},   // just near enough to overlap
      {{290, 515, 390, 600}, {290, 515, 390, 600}},   // just not
  };
  for (const auto& c : cases) EXPECT_EQ(DockMoving(c.window, {kWork, kOther}), c.snapped);
}

TEST(Docking, SizedWindowSnapsWithItsDraggedEdges) {
  const DockRect window{5, 6, 990, 791};  // near the work area on all sides
  const auto sized = [&](SizingSide side) { return DockSizing(window, side, {kWork}); };
  EXPECT_EQ(sized(SizingSide::kNone), window);
  EXPECT_EQ(sized(SizingSide::kTopLeft), (DockRect{0, 0, 990, 791}));
  EXPECT_EQ(sized(SizingSide::kBottomRight), (DockRect{5, 6, 1000, 800}));
  const DockRect narrow{595, 300, 604, 400};
  EXPECT_EQ(DockSizing(narrow, SizingSide::kLeft, {{610, 0, 900, 800}}), narrow);  // not empty
}

class DockingTest : public testing::Test {
 protected:
  DockingTest() {
    window.setGeometry(corner.x() + 300, corner.y() + 200, 200, 100);
    window.show();
    docking.DockWindow(window);
    docking.DockWindow(window);
  }
  // From the corner of the screen.
  void Drag(int x, int y) {
    held = true;
    window.move(corner + QPoint(x, y));
  }
  void LetGo() {
    held = false;
    time.Advance(500);
  }

  VirtualTime time;
  bool held = false;
  Docking docking{time, [this] { return held; }};
  QWidget window;
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  const QPoint corner = screen.topLeft();
};

TEST_F(DockingTest, SnapsWhenItIsLetGo) {
  Drag(40, 200);
  time.Advance(500);
  Drag(9, 210);
  time.Advance(500);
  EXPECT_EQ(window.pos(), corner + QPoint(9, 210)) << "not out of the user's hand";
  LetGo();
  EXPECT_EQ(window.pos(), corner + QPoint(0, 210));
  EXPECT_EQ(window.size(), QSize(200, 100));

  held = true;
  window.resize(200, window.height() + screen.bottom() - window.frameGeometry().bottom() - 7);
  LetGo();
  EXPECT_EQ(window.frameGeometry().bottom(), screen.bottom()) << "with its frame";
  EXPECT_EQ(time.ActiveTimers(), 0);
}

TEST_F(DockingTest, SnapsToOtherWindowsThatAreSeen) {
  QWidget other;
  other.setGeometry(corner.x() + 100, corner.y() + 50, 150, 150);
  for (const bool seen : {false, true}) {
    other.setVisible(seen);
    const int edge = other.frameGeometry().right() + 1 - corner.x();
    Drag(300, 60);
    Drag(edge + 8, 70);
    LetGo();
    EXPECT_EQ(window.x() - corner.x(), seen ? edge : edge + 8);
  }
}

TEST_F(DockingTest, LeavesAloneWhatNobodyDrags) {
  window.move(corner + QPoint(9, 210));
  time.Advance(500);
  EXPECT_EQ(window.x(), corner.x() + 9);
  docking.UndockWindow(window);
  Drag(8, 210);
  LetGo();
  EXPECT_EQ(window.x(), corner.x() + 8);
  docking.DockWindow(window);
  Drag(7, 210);
  window.showMaximized();
  LetGo();
  EXPECT_TRUE(window.isMaximized());
}

TEST_F(DockingTest, AWindowMayGoInTheMiddleOfADrag) {
  auto gone = std::make_unique<QWidget>();
  gone->show();
  docking.DockWindow(*gone);
  held = true;
  gone->move(corner + QPoint(5, 5));
  gone.reset();
  LetGo();
  EXPECT_EQ(time.ActiveTimers(), 0);
}

}  // namespace
}  // namespace kv
