// Full screen, the slide of the strip and the tray icon, against a form that writes down what is
// asked of it.
#include "view/full_screen.h"

#include "support/movie_world.h"
#include "view/panel_slide.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kv {
namespace {

constexpr int kFull = 10;

class FullScreenTest : public testing::Test,
                       protected MovieWorld,
                       protected FullScreenHost,
                       protected PanelSlideHost,
                       protected TrayHost {
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
  void SetPanelVisible(bool shown) override {
    calls += shown ? "panel " : "no-panel ";
    panel_visible = shown;
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

  bool DialogOpen() const override { return dialog; }
  bool FormVisible() const override { return visible; }
  void ShowForm() override { calls += "show "; }
  void ToggleFullScreen() override { screen.ToggleFullScreen(); }
  void BUtton_Click(int Index) override { calls += "button " + std::to_string(Index); }

  std::string Click(int code) {
    calls.clear();
    TrayClick(code, *this, settings);
    return calls;
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
  bool panel_visible = true, render = true, dialog = false, visible = false;
  int height = kFull;
  std::vector<int> heights;
  int scaled = 0;
  std::string calls;
  std::function<void()> while_entering;

  std::unique_ptr<Timer> hide_delay = Make(1000, [this] { screen.OnDelayAutoHide(); });
  std::unique_ptr<Timer> show = Make(10, [this] { slide.OnPanelShowTimer(); });
  std::unique_ptr<Timer> delay = Make(500, [this] { slide.OnPanelDelayTimer(); });
  std::unique_ptr<Timer> toggle = Make(10, [this] { screen.OnToggleFullscreenTimer(); });
  FullScreen screen{*this, settings, session, {*hide_delay, *show, *delay, *toggle}, kFull};
  PanelSlide slide{*this, screen, *show, *delay};
};

TEST_F(FullScreenTest, GoesToFullScreenAndBack) {
  EXPECT_EQ(Toggle(), "active enter checked target ");
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
  settings.HideControlsInFullscreen = settings.HideInFullscreen = FromBool(true);
  screen.SetAutoHideMode();  // sets the strip moving, which must not bring it back
  EXPECT_EQ(Toggle(), "no-panel active enter checked target ");
  time.Advance(1000);
  EXPECT_FALSE(panel_visible);
  EXPECT_EQ(Toggle(), "leave panel unchecked target ");

  settings.HideControlsInFullscreen = FromBool(false);
  EXPECT_EQ(Toggle(), "active enter checked target ");
  EXPECT_TRUE(hide_delay->Enabled());
  time.Advance(1000);
  EXPECT_FALSE(screen.PanelShown() || panel_visible);
  EXPECT_EQ(time.ActiveTimers(), 0);
  Toggle();
  EXPECT_TRUE(screen.PanelShown() && panel_visible);
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
}

TEST_F(FullScreenTest, SlidesFourPixelsATick) {
  const struct {
    int from;
    bool shown;
    std::vector<int> heights;
    bool reduced_motion = false;
  } rows[] = {{10, false, {6, 2}},
              {11, false, {7, 3, 1}},
              {0, true, {4, 8, 10}},
              {12, true, {}},
              {10, false, {0}, true}};
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

TEST_F(FullScreenTest, AClickOnTheTrayBringsTheFormBackOrOpensTheMenu) {
  EXPECT_EQ(Click(1), "active show active ");
  Toggle();
  EXPECT_EQ(Click(2), "active button 7");
  EXPECT_EQ(Click(1), "active leave panel unchecked target ");
  dialog = true;
  EXPECT_EQ(Click(1), "");
}

}  // namespace
}  // namespace kv
