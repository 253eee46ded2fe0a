// The slider's widget: real input events reach the rules, and its picture is crisp at every scale.
#include "controls/scroller.h"

#include "controls/picture_qt.h"

#include <QApplication>
#include <QImage>
#include <QMenu>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kv {
namespace {

// Counts the keys that the slider leaves to its parent.
struct Parent : QWidget {
  void keyPressEvent(QKeyEvent* /*event*/) override { ++keys; }
  int keys = 0;
};

class ScrollerTest : public testing::Test {
 protected:
  ScrollerTest() {
    slider.resize(111, 40);
    slider.Model().SetMax(100);
    slider.Model().SetBackColor(0x302820);
    slider.Model().SetRangeColor(0x0000FF);
    slider.Events().after_scroll = [this](double& value, std::int16_t button) {
      finished.emplace_back(value, button);
    };
    parent.show();
  }

  void Move(int x, int y, Qt::MouseButtons buttons) {
    QMouseEvent move(QEvent::MouseMove, QPointF(x, y), slider.mapToGlobal(QPointF(x, y)),
                     Qt::NoButton, buttons, Qt::NoModifier);
    QApplication::sendEvent(&slider, &move);
  }

  QImage Picture(double scale) { return PictureOf(slider, scale); }

  Parent parent;
  Scroller slider{&parent};
  std::vector<std::pair<double, int>> finished;
};

TEST_F(ScrollerTest, DragsAndClicks) {
  QTest::mousePress(&slider, Qt::LeftButton, Qt::NoModifier, {5, 10});
  Move(45, 10, Qt::LeftButton);
  EXPECT_TRUE(slider.Model().Dragging());
  EXPECT_EQ(slider.Model().Value(), 40);
  QTest::mouseRelease(&slider, Qt::LeftButton, Qt::NoModifier, {45, 10});
  QTest::mouseClick(&slider, Qt::LeftButton, Qt::NoModifier, {100, 10});
  EXPECT_THAT(finished, testing::ElementsAre(std::pair(40.0, 1), std::pair(94.5, 1)));
}

TEST_F(ScrollerTest, ADisabledOrHiddenSliderLetsTheKnobGo) {
  for (const bool hide : {false, true}) {
    QTest::mousePress(&slider, Qt::LeftButton, Qt::NoModifier, {5, 10});
    Move(45, 10, Qt::LeftButton);
    slider.Model().SetValue(0);
    hide ? slider.hide() : slider.setEnabled(false);
    EXPECT_FALSE(slider.Model().Dragging());
    EXPECT_EQ(slider.Model().KnobLeft(), 0);
    QTest::mouseRelease(&slider, Qt::LeftButton, Qt::NoModifier, {45, 10});
    slider.setEnabled(true);
  }
  EXPECT_TRUE(finished.empty());
}

TEST_F(ScrollerTest, RightClickSetsByMenu) {
  slider.Model().SetMenuCaption("Left", "Middle", "Right");
  std::vector<std::string> texts;
  QTimer::singleShot(0, [&texts] {
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    for (const QAction* action : menu->actions()) texts.push_back(action->text().toStdString());
    menu->setActiveAction(menu->actions().at(1));
    QTest::keyClick(menu, Qt::Key_Return);
  });
  QTest::mouseClick(&slider, Qt::RightButton, Qt::NoModifier, {100, 10});
  EXPECT_THAT(texts, testing::ElementsAre("Left", "Middle", "Right"));
  EXPECT_THAT(finished, testing::ElementsAre(std::pair(50.0, 0)));
}

TEST_F(ScrollerTest, GoesAwayWithItsMenuOpen) {
  auto owner = std::make_unique<QWidget>();
  auto* const doomed = new Scroller(owner.get());
  owner->show();
  QTimer::singleShot(0, [&owner] { owner.reset(); });
  doomed->Model().ShowSetMenu();
  EXPECT_EQ(owner, nullptr);
}

TEST_F(ScrollerTest, OnlyTheKeypadIsHandled) {
  QTest::keyClick(&slider, Qt::Key_Plus, Qt::KeypadModifier);
  EXPECT_EQ(slider.Model().Value(), 6.5);
  for (const Qt::Key key : {Qt::Key_Plus, Qt::Key_Right, Qt::Key_PageUp, Qt::Key_Space}) {
    QTest::keyClick(&slider, key);
  }
  EXPECT_EQ(parent.keys, 4);

  QWheelEvent wheel(QPointF(5, 5), slider.mapToGlobal(QPointF(5, 5)), {}, {0, 120}, Qt::NoButton,
                    Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&slider, &wheel);
  EXPECT_FALSE(wheel.isAccepted());
  EXPECT_EQ(slider.Model().Value(), 6.5);
}

// Counts the pixels of `color` on a line.
int Pixels(const QImage& image, int y, const QColor& color) {
  int count = 0;
  for (int x = 0; x < image.width(); ++x) count += image.pixelColor(x, y) == color ? 1 : 0;
  return count;
}

TEST_F(ScrollerTest, IsCrispAtEveryScale) {
  const QColor back(0x20, 0x28, 0x30);
  for (const double scale : {1.0, 1.25, 1.4, 2.0}) {
    SCOPED_TRACE(scale);
    const auto in_range = [&] {
      const QImage image = Picture(scale);
      EXPECT_EQ(image.pixelColor(image.width() - 1, 0), back) << "the corner";
      return Pixels(image, image.height() / 2, Qt::red);
    };
    slider.Model().SetRangeStart(-1);
    EXPECT_EQ(in_range(), 0);
    slider.Model().SetRangeStart(20);
    slider.Model().SetRangeEnd(80);
    const int first = qRound(111 / 103.0 * 20 * scale);
    EXPECT_EQ(in_range(), qRound((111 / 100.0 * 80 + 5.5) * scale) - first);
    // The knob keeps its width wherever it stands.
    for (const double value : {0.0, 33.3, 71.9}) {
      slider.Model().SetValue(value);
      const QImage image = Picture(scale);
      const int knob = image.width() - Pixels(image, image.height() / 4, back);
      EXPECT_EQ(knob, qRound(11 * scale)) << value;
    }
  }
}

TEST_F(ScrollerTest, ShowsItsStates) {
  const QImage idle = Picture(1);
  slider.setEnabled(false);
  EXPECT_NE(Picture(1), idle);
  slider.setEnabled(true);
  // The focus ring: by key, hidden with the window, back with it; never by mouse.
  const auto focus = [this](QEvent::Type type, Qt::FocusReason reason) {
    QFocusEvent event(type, reason);
    QApplication::sendEvent(&slider, &event);
    return Picture(1);
  };
  EXPECT_NE(focus(QEvent::FocusIn, Qt::TabFocusReason), idle);
  EXPECT_EQ(focus(QEvent::FocusOut, Qt::ActiveWindowFocusReason), idle);
  EXPECT_NE(focus(QEvent::FocusIn, Qt::ActiveWindowFocusReason), idle);
  focus(QEvent::FocusOut, Qt::MouseFocusReason);
  EXPECT_EQ(focus(QEvent::FocusIn, Qt::MouseFocusReason), idle);
}

}  // namespace
}  // namespace kv
