// Full screen, the slide of the strip and the tray icon, against a form that writes down what is
// asked of it.
#include "view/full_screen.h"

#include "support/virtual_time.h"
#include "view/panel_slide.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kv {
namespace {

constexpr int kFull = 10;

class FullScreenTest : public testing::Test, protected FullScreenHost, protected PanelSlideHost {
 protected:
  int FormState() const override { return state; }
  FormPlace PlaceOfForm() const override { return place; }
  void SetActiveHwnd() override { calls += "active "; }
  void EnterFullScreen() override {
    calls += "enter ";
    place = {0, 0, 99'000, 60'000};
    if (while_entering) while_entering();
  }
  void LeaveFullScreen(const std::optional<FormPlace>& restored, int new_state) override {
    calls += "leave ";
    if (restored) place = *restored;
    state = new_state;
  }
  void SetPanelVisible(bool visible) override {
    calls += visible ? "panel " : "no-panel ";
    panel_visible = visible;
  }
  void SetPanelHeight(int pixels) override {
    height = pixels;
    heights.push_back(pixels);
  }
  bool PanelVisible() const override { return panel_visible; }
  int PanelHeight() const override { return height; }
  void SetFullScreenChecked(bool checked) override { calls += checked ? "checked " : "unchecked "; }
  bool RenderVisible() const override { return render; }
  void ChangeTarget() override { calls += "target "; }
  void ScaleMovie(bool ForcePanel) override {
    EXPECT_FALSE(ForcePanel);
    ++scaled;
  }

  std::string Toggle() {
    calls.clear();
    screen.ToggleFullScreen();
    return calls;
  }
  std::unique_ptr<Timer> Make(int interval, std::function<void()> event) {
    return time.MakeTimer(TimerKind::kOrdinary, interval, std::move(event));
  }

  int state = 0;
  FormPlace place{100, 200, 3000, 4000};
  bool panel_visible = true;
  bool render = true;
  int height = kFull;
  std::vector<int> heights;
  int scaled = 0;
  std::string calls;
  std::function<void()> while_entering;

  VirtualTime time;
  Settings settings;
  Session session;
  std::unique_ptr<Timer> hide_delay = Make(1000, [this] { screen.OnDelayAutoHide(); });
  std::unique_ptr<Timer> show = Make(10, [this] { slide.OnPanelShowTimer(); });
  std::unique_ptr<Timer> delay = Make(500, [this] { slide.OnPanelDelayTimer(); });
  std::unique_ptr<Timer> toggle = Make(10, [this] { screen.OnToggleFullscreenTimer(); });
  FullScreen screen{*this, settings, session, {*hide_delay, *show, *delay, *toggle}, kFull};
  PanelSlide slide{*this, screen, *show, *delay};
};

TEST_F(FullScreenTest, GoesToFullScreenAndBack) {
  EXPECT_EQ(Toggle(), "active enter checked target ");
  EXPECT_TRUE(IsOn(settings.FullScreen));
  EXPECT_EQ(time.ActiveTimers(), 0);
  render = false;
  EXPECT_EQ(Toggle(), "leave panel unchecked ");
  EXPECT_FALSE(IsOn(settings.FullScreen));
  EXPECT_EQ(place, (FormPlace{100, 200, 3000, 4000}));

  state = 2;  // a maximised window goes back to that, wherever it lies
  Toggle();
  const FormPlace covered = place;
  state = 0;
  Toggle();
  EXPECT_EQ(state, 2);
  EXPECT_EQ(place, covered);
}

TEST_F(FullScreenTest, HidesTheStripByTheSettings) {
  settings.HideControlsInFullscreen = FromBool(true);
  settings.HideInFullscreen = FromBool(true);
  screen.SetAutoHideMode();  // sets the strip moving, which must not bring it back
  EXPECT_EQ(Toggle(), "no-panel active enter checked target ");
  time.Advance(1000);
  EXPECT_FALSE(panel_visible);
  EXPECT_EQ(Toggle(), "leave panel unchecked target ");

  settings.HideControlsInFullscreen = FromBool(false);
  EXPECT_EQ(Toggle(), "active enter checked target ");
  EXPECT_FALSE(screen.PanelShown());
  EXPECT_TRUE(hide_delay->Enabled());
  time.Advance(1000);
  EXPECT_FALSE(panel_visible);
  EXPECT_EQ(time.ActiveTimers(), 0);
  Toggle();
  EXPECT_TRUE(screen.PanelShown());
  EXPECT_TRUE(panel_visible);
  EXPECT_EQ(height, kFull);

  settings.HideInNormal = FromBool(true);
  time.Advance(1000);
  screen.SetPanelShown(false);
  screen.SetAutoHideMode();
  EXPECT_FALSE(screen.PanelShown());
  EXPECT_EQ(time.ActiveTimers(), 0);
}

TEST_F(FullScreenTest, TogglesOnceAtATime) {
  while_entering = [this] { screen.ToggleFullScreen(); };
  EXPECT_EQ(Toggle(), "active enter checked target ");
  while_entering = nullptr;
  toggle->SetEnabled(true);
  time.Advance(1000);
  EXPECT_FALSE(IsOn(settings.FullScreen));
  session.Unloading = true;
  EXPECT_EQ(Toggle(), "");
  EXPECT_FALSE(IsOn(settings.FullScreen));
}

TEST_F(FullScreenTest, SlidesFourPixelsATick) {
  const struct {
    int from;
    bool shown;
    std::vector<int> heights;
    bool reduced_motion = false;
  } rows[] = {{10, false, {6, 2}},   {11, false, {7, 3, 1}}, {2, false, {}},
              {0, true, {4, 8, 10}}, {12, true, {}},         {10, false, {0}, true}};
  for (const auto& row : rows) {
    slide.SetReducedMotion(row.reduced_motion);
    height = row.from;
    heights.clear();
    scaled = 0;
    panel_visible = !row.shown;
    screen.SetPanelShown(row.shown);
    delay->Restart(500);
    time.Advance(509);
    EXPECT_EQ(scaled, 0);
    time.Advance(1000);
    EXPECT_EQ(heights, row.heights) << row.from;
    EXPECT_EQ(scaled, static_cast<int>(row.heights.size()) + 1);  // the tick that ends it too
    EXPECT_EQ(panel_visible, row.shown);
    EXPECT_EQ(time.ActiveTimers(), 0);
  }
}

class FakeTray : public TrayHost {
 public:
  bool DialogOpen() const override { return dialog; }
  void SetActiveHwnd() override { calls += "active "; }
  bool FormVisible() const override { return visible; }
  void ShowForm() override { calls += "show "; }
  void ToggleFullScreen() override { calls += "toggle "; }
  void BUtton_Click(int Index) override { calls += "button " + std::to_string(Index); }
  bool dialog = false;
  bool visible = true;
  std::string calls;
};

TEST(TrayClick, BringsTheFormBackOrOpensTheMenu) {
  const struct {
    int code;
    bool dialog;
    bool full;
    bool visible;
    const char* calls;
  } rows[] = {{1, true, true, false, ""},
              {1, false, true, false, "active toggle "},
              {1, false, false, false, "active show active "},
              {2, false, true, true, "active button 7"}};
  for (const auto& row : rows) {
    FakeTray tray;
    tray.dialog = row.dialog;
    tray.visible = row.visible;
    Settings settings;
    settings.FullScreen = FromBool(row.full);
    TrayClick(row.code, tray, settings);
    EXPECT_EQ(tray.calls, row.calls);
  }
}

}  // namespace
}  // namespace kv
