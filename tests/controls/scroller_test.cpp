// The slider's widget: real input events reach the rules, and its picture is crisp at every scale.
#include "controls/scroller.h"

#include <QApplication>
#include <QImage>
#include <QMenu>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>

#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kv {
namespace {

constexpr std::int32_t kBack = 0x302820;
constexpr std::int32_t kRange = 0x0000FF;

// Hears the keys that the slider leaves to its parent.
class Parent : public QWidget {
 public:
  std::vector<int> keys;

 protected:
  void keyPressEvent(QKeyEvent* event) override { keys.push_back(event->key()); }
};

class ScrollerTest : public testing::Test {
 protected:
  ScrollerTest() {
    slider.resize(111, 40);
    slider.Model().SetMax(100);
    slider.Model().SetBackColor(kBack);
    slider.Model().SetRangeColor(kRange);
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

  // Runs `work` in the next turn of the message queue.
  void Soon(std::function<void()> work) {
    soon.disconnect();
    soon.setSingleShot(true);
    QObject::connect(&soon, &QTimer::timeout, qApp, std::move(work));
    soon.start(0);
  }

  QImage Picture(double scale) {
    QImage image((QSizeF(slider.size()) * scale).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::magenta);
    slider.render(&image);
    return image;
  }

  Parent parent;
  Scroller slider{&parent};
  std::vector<std::pair<double, int>> finished;
  QTimer soon;
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
    if (hide) {
      slider.hide();
    } else {
      slider.setEnabled(false);
    }
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
  Soon([&texts] {
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
  Soon([&owner] { owner.reset(); });
  doomed->Model().ShowSetMenu();
  EXPECT_EQ(owner, nullptr);
}

TEST_F(ScrollerTest, OnlyTheKeypadIsHandled) {
  QTest::keyClick(&slider, Qt::Key_Plus, Qt::KeypadModifier);
  EXPECT_EQ(slider.Model().Value(), 6.5);
  for (const Qt::Key key : {Qt::Key_Plus, Qt::Key_Right, Qt::Key_PageUp, Qt::Key_Space}) {
    QTest::keyClick(&slider, key);
  }
  EXPECT_EQ(parent.keys.size(), 4U);

  QWheelEvent wheel(QPointF(5, 5), slider.mapToGlobal(QPointF(5, 5)), {}, {0, 120}, Qt::NoButton,
                    Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&slider, &wheel);
  EXPECT_FALSE(wheel.isAccepted());
  EXPECT_EQ(slider.Model().Value(), 6.5);
}

// Counts the pixels of `color` on the line through the middle.
int RangePixels(const QImage& image) {
  int count = 0;
  for (int x = 0; x < image.width(); ++x) {
    count += image.pixelColor(x, image.height() / 2) == QColor(255, 0, 0) ? 1 : 0;
  }
  return count;
}

TEST_F(ScrollerTest, IsCrispAtEveryScale) {
  for (const double scale : {1.0, 1.25, 1.4, 2.0}) {
    SCOPED_TRACE(scale);
    slider.Model().SetRangeStart(-1);
    const QImage plain = Picture(scale);
    EXPECT_EQ(RangePixels(plain), 0);
    slider.Model().SetRangeStart(20);
    slider.Model().SetRangeEnd(80);
    const QImage ranged = Picture(scale);
    const int first = qRound(111 / 103.0 * 20 * scale);
    const int last = qRound((111 / 100.0 * 80 + 5.5) * scale);
    EXPECT_EQ(RangePixels(ranged), last - first);

    // The corner is background, and the knob keeps its width wherever it stands.
    EXPECT_EQ(ranged.pixelColor(ranged.width() - 1, 0), QColor(0x20, 0x28, 0x30));
    for (const double value : {0.0, 33.3, 71.9}) {
      slider.Model().SetValue(value);
      const QImage image = Picture(scale);
      const int row = image.height() / 4;
      int width = 0;
      for (int x = 0; x < image.width(); ++x) {
        width += image.pixelColor(x, row) != QColor(0x20, 0x28, 0x30) ? 1 : 0;
      }
      EXPECT_EQ(width, qRound(11 * scale)) << value;
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
