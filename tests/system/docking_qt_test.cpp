// Windows that the user's hand has dragged snap when they are let go, and no others.
#include "system/docking_qt.h"

#include "support/virtual_time.h"

#include <QGuiApplication>
#include <QScreen>

#include <gtest/gtest.h>
#include <memory>

namespace kv {
namespace {

class DockingTest : public testing::Test {
 protected:
  DockingTest() {
    window.setGeometry(corner.x() + 300, corner.y() + 200, 200, 100);
    window.show();
    docking.DockWindow(window);
    docking.DockWindow(window);
  }
  void LetGo() {
    held = false;
    time.Advance(500);
  }

  VirtualTime time;
  bool held = false;
  Docking docking{time, [this] { return held; }};
  QWidget window;
  const QPoint corner = QGuiApplication::primaryScreen()->availableGeometry().topLeft();
};

TEST_F(DockingTest, SnapsWhenItIsLetGo) {
  held = true;
  window.move(corner + QPoint(40, 200));
  time.Advance(500);
  window.move(corner + QPoint(9, 210));
  time.Advance(500);
  EXPECT_EQ(window.pos(), corner + QPoint(9, 210));  // not out of the user's hand
  LetGo();
  EXPECT_EQ(window.pos(), corner + QPoint(0, 210));
  EXPECT_EQ(window.size(), QSize(200, 100));

  const int bottom = QGuiApplication::primaryScreen()->availableGeometry().bottom();
  held = true;
  window.resize(200, window.height() + bottom - window.frameGeometry().bottom() - 7);
  LetGo();
  EXPECT_EQ(window.frameGeometry().bottom(), bottom);  // with its frame
  EXPECT_EQ(time.ActiveTimers(), 0);
}

TEST_F(DockingTest, SnapsToOtherWindowsThatAreSeen) {
  QWidget other;
  other.setGeometry(corner.x() + 100, corner.y() + 50, 150, 150);
  for (const bool seen : {false, true}) {
    other.setVisible(seen);
    window.move(corner + QPoint(300, 60));
    held = true;
    window.move(other.frameGeometry().right() + 9, corner.y() + 70);
    LetGo();
    const int edge = other.frameGeometry().right() + 1;
    EXPECT_EQ(window.frameGeometry().left(), seen ? edge : edge + 8);
  }
}

TEST_F(DockingTest, LeavesAloneWhatNobodyDrags) {
  window.move(corner + QPoint(9, 210));
  time.Advance(500);
  EXPECT_EQ(window.x(), corner.x() + 9);
  docking.UndockWindow(window);
  held = true;
  window.move(corner + QPoint(8, 210));
  LetGo();
  EXPECT_EQ(window.x(), corner.x() + 8);
  docking.DockWindow(window);
  held = true;
  window.move(corner + QPoint(7, 210));
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
