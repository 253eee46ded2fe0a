// The strip of controls for who uses a screen reader or the keyboard alone.
#include "shell/main_panel.h"
#include "support/fake_pump.h"

#include <QAccessible>
#include <QApplication>
#include <QElapsedTimer>
#include <QTest>

#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

namespace kv {
namespace {

class Form : public QWidget {
 public:
  std::vector<int> keys;

 protected:
  void keyPressEvent(QKeyEvent* event) override { keys.push_back(event->key()); }
};

struct PanelAccessibleTest : testing::Test {
  PanelAccessibleTest() {
    form.setFocusPolicy(Qt::StrongFocus);
    form.resize(720, 300);
    panel.setGeometry(0, 152, 720, MainPanel::kFullHeight);
    panel.Slider(SliderKind::kPosition).Model().SetMax(120);
    panel.Slider(SliderKind::kPosition).got_focus = [this] { form.setFocus(); };
    panel.Slider(SliderKind::kVolume).Model().SetMax(99);
    panel.Slider(SliderKind::kRate).Model().SetMax(40);
    panel.Slider(SliderKind::kBalance).Model().SetMax(18);
    for (int i = 0; i < kButtons; ++i) {
      QObject::connect(&panel.Button(i), &SmartButton::clicked, &form,
                       [this, i] { pressed.push_back(i); });
    }
    panel.on_disp_click = [this](int index) { pressed.push_back(100 + index); };
    form.show();
    QApplication::setActiveWindow(&form);
    form.setFocus();
  }

  static void Names(QAccessibleInterface* node, std::string& out) {
    for (int i = 0; i < node->childCount(); ++i) {
      QAccessibleInterface* const child = node->child(i);
      if (child->state().invisible) continue;
      const QString name = child->text(QAccessible::Name);
      // What only holds others together, or them apart, says nothing itself.
      if (child->role() != QAccessible::Client && child->role() != QAccessible::Separator) {
        out += name.toStdString() + "|";
      }
      Names(child, out);
    }
  }

  // The control that is pressed next; -1 when none is.
  int Pressed() {
    QElapsedTimer clock;
    clock.start();
    while (pressed.empty() && clock.elapsed() < 5000) QTest::qWait(5);
    const std::vector<int> presses = std::exchange(pressed, {});
    return presses.size() == 1 ? presses[0] : -1;
  }

  Form form;
  FakePump pump;
  MainPanel panel{[](const char*) { return QStringLiteral("/nowhere"); }, pump, &form};
  std::vector<int> pressed;
};

TEST_F(PanelAccessibleTest, SaysWhatEverythingIs) {
  panel.SetDisp(5, QStringLiteral("Holiday"));
  panel.SetSliderLabel(SliderKind::kVolume, QStringLiteral("99"));
  panel.PicTime().Print(4, QStringLiteral("00:00:05"));
  panel.PicTime().Print(68, QStringLiteral("00:02:00"));
  std::string names;
  Names(QAccessible::queryAccessibleInterface(&panel), names);
  EXPECT_EQ(names,
            "Position|Title: Holiday|Medium|Details|Volume|Volume|Volume: 99|Speed|Speed|Speed|"
            "Balance|Balance|Balance|Time: 00:00:05 00:02:00|Number in the list|Play|Pause|Stop|"
            "First|Previous|Next|Last|A > B|Repeat|Playlist|Cycle plugins|Menu|");
}

TEST_F(PanelAccessibleTest, SlidersSpeakAndStep) {
  const struct {
    SliderKind kind;
    double value;
    const char *spoken, *after_step;
  } rows[] = {{SliderKind::kPosition, 65, "00:01:04 of 00:01:59", "00:01:05 of 00:01:59"},
              {SliderKind::kRate, 20, "100 %", "105 %"},
              {SliderKind::kBalance, 11, "Right 2", "Right 3"}};
  for (const auto& row : rows) {
    Scroller& slider = panel.Slider(row.kind);
    slider.Model().SetValue(row.value);
    std::vector<double> finished;
    slider.Events().after_scroll = [&](double& value, std::int16_t) { finished.push_back(value); };
    QAccessibleInterface* const face = QAccessible::queryAccessibleInterface(&slider);
    EXPECT_EQ(face->text(QAccessible::Value).toStdString(), row.spoken);
    face->actionInterface()->doAction(QAccessibleActionInterface::increaseAction());
    EXPECT_EQ(face->text(QAccessible::Value).toStdString(), row.after_step);
    EXPECT_EQ(finished.size(), 1U) << row.spoken;  // as a key's step, not as a drag under way
    slider.setEnabled(false);
    face->actionInterface()->doAction(QAccessibleActionInterface::decreaseAction());
    face->valueInterface()->setCurrentValue(0);
    EXPECT_EQ(face->text(QAccessible::Value).toStdString(), row.after_step);
    slider.setEnabled(true);
  }
}

TEST_F(PanelAccessibleTest, ButtonsAndLinksArePressed) {
  SmartButton& repeat = panel.Button(6);
  QAccessibleInterface* face = QAccessible::queryAccessibleInterface(&repeat);
  face->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(Pressed(), 6);
  repeat.SetState(QStringLiteral("Repeats the list"), true);
  EXPECT_TRUE(face->state().checked);
  EXPECT_EQ(face->text(QAccessible::Description).toStdString(), "Repeats the list");

  // A line of data is a link while it is shown as one.
  QAccessibleInterface* link = nullptr;
  for (QLabel* const label : panel.findChildren<QLabel*>()) {
    if (label->property("index") == 1) link = QAccessible::queryAccessibleInterface(label);
  }
  ASSERT_NE(link, nullptr);
  EXPECT_EQ(link->role(), QAccessible::StaticText);
  panel.SetDispUnderline(1, true);
  EXPECT_EQ(link->role(), QAccessible::Link);
  link->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(Pressed(), 101);
}

TEST_F(PanelAccessibleTest, TabReachesTheControlsAndNoKeyOfThePlayerIsLost) {
  std::vector<QWidget*> reached;
  do {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    reached.push_back(QApplication::focusWidget());
  } while (reached.back() != &form && reached.size() < 40);
  EXPECT_EQ(reached.size(), 3U + kButtons + 1U);  // small sliders, buttons, the form again
  EXPECT_FALSE(panel.HoldsFocus());
  form.keys.clear();

  Scroller& volume = panel.Slider(SliderKind::kVolume);
  volume.Model().SetValue(50);
  SmartButton& menu = panel.Button(7);
  const std::vector<int> described = {Qt::Key_Space, Qt::Key_Return, Qt::Key_Left,   Qt::Key_Right,
                                      Qt::Key_Home,  Qt::Key_End,    Qt::Key_PageUp, Qt::Key_V};
  for (QWidget* const control : {static_cast<QWidget*>(&volume), static_cast<QWidget*>(&menu)}) {
    control->setFocus(Qt::TabFocusReason);
    EXPECT_TRUE(panel.HoldsFocus());
    form.keys.clear();
    for (const int key : described) QTest::keyClick(control, static_cast<Qt::Key>(key));
    QTest::keyClick(control, Qt::Key_Plus, Qt::KeypadModifier);
    EXPECT_EQ(form.keys.size(), described.size() + 1);
  }
  EXPECT_EQ(volume.Model().Value(), 50);
  EXPECT_TRUE(pressed.empty());

  QTest::keyClick(&volume, Qt::Key_Up);
  EXPECT_NEAR(volume.Model().Value(), 51, 0.01);
  QTest::keyClick(&menu, Qt::Key_Space, Qt::ControlModifier);
  EXPECT_EQ(Pressed(), 7);
}

}  // namespace
}  // namespace kv
