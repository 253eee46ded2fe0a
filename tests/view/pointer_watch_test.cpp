// The poll of the pointer against a scripted world: a form of 400 x 300 pixels at (100, 50), with a
// frame of 5 around and a title bar of 25, and a strip of 60 at its lower edge.
#include "view/pointer_watch.h"

#include "support/fake_pump.h"
#include "support/virtual_time.h"

#include <gtest/gtest.h>
#include <string>

namespace kv {
namespace {

constexpr int kFull = 60;
constexpr ScreenPoint kMiddle{300, 180};
constexpr ScreenPoint kElsewhere{1000, 20};

// A form that goes to full screen at once.
struct StillForm : FullScreenHost {
  int FormState() const override { return 0; }
  FormPlace PlaceOfForm() const override { return {}; }
  void SetActiveHwnd() override {}
  void EnterFullScreen() override {}
  void LeaveFullScreen(const std::optional<FormPlace>& /*place*/, int /*state*/) override {}
  void SetPanelVisible(bool /*visible*/) override {}
  void SetPanelHeight(int /*pixels*/) override {}
  void SetFullScreenChecked(bool /*checked*/) override {}
  bool RenderVisible() const override { return false; }
  void ChangeTarget() override {}
};

class PointerWatchTest : public testing::Test, protected PointerWorld, protected PointerActions {
 protected:
  Foreground ForegroundWindow() const override { return foreground; }
  bool FormMinimised() const override { return minimised; }
  FormArea AreaOfForm() const override { return {100, 50, 410, 330, 400, 300, 240, panel_height}; }
  bool PanelVisible() const override { return panel_visible; }
  bool DisplayVisible() const override { return display_visible; }
  std::optional<ScreenPoint> Pointer() const override { return pointer; }
  int MouseButtonDown() override { return button; }

  void ShowCursor(bool show) override {
    cursor = show;
    calls += show ? "show " : "hide ";
  }
  void SetTaskBarVisible(bool visible) override { calls += visible ? "bar " : "no-bar "; }
  void BUtton_Click(int Index) override { calls += "button" + std::to_string(Index) + " "; }
  void MENU_Click(std::string_view key) override { calls += std::string(key) + " "; }
  void FocusDisplay() override { focus = "display"; }
  void FocusRender() override { focus = "render"; }

  // What the ticks of `milliseconds` have done.
  std::string During(int milliseconds) {
    calls.clear();
    time.Advance(milliseconds);
    return calls;
  }
  // A press of `down` and the letting go, a tick each.
  std::string Click(int down) {
    button = down;
    std::string done = During(50);
    button = 0;
    return done + During(50);
  }
  void GoFullScreen() {
    screen.ToggleFullScreen();
    calls.clear();
  }

  Foreground foreground = Foreground::kMainForm;
  bool minimised = false;
  int panel_height = kFull;
  bool panel_visible = true;
  bool display_visible = true;
  std::optional<ScreenPoint> pointer = kMiddle;
  int button = 0;
  bool cursor = true;
  std::string calls;
  std::string focus;

  VirtualTime time;
  FakePump pump;
  Settings settings;
  Session session;
  StillForm form;
  std::unique_ptr<Timer> hide_delay = Make(1000, [this] { screen.OnDelayAutoHide(); });
  std::unique_ptr<Timer> slide = Make(10, [this] { slide->SetEnabled(false); });
  std::unique_ptr<Timer> delay = Make(500, [this] { delay->SetEnabled(false); });
  std::unique_ptr<Timer> toggle = Make(10, [] {});
  std::unique_ptr<Timer> mouse = Make(50, [this] { watch.OnMouseTimer(); });
  FullScreen screen{form, settings, session, {*hide_delay, *slide, *delay, *toggle}, kFull};
  PointerWatch watch{*this, *this, screen, settings, session, time, pump, *delay, *hide_delay};

  void SetUp() override { mouse->SetEnabled(true); }
  std::unique_ptr<Timer> Make(int interval, std::function<void()> event) {
    return time.MakeTimer(TimerKind::kOrdinary, interval, std::move(event));
  }
};

TEST_F(PointerWatchTest, HidesTheTaskBarWhileFullScreenHasTheForeground) {
  GoFullScreen();
  EXPECT_EQ(During(100), "no-bar ");
  foreground = Foreground::kOtherWindow;
  EXPECT_EQ(During(100), "");
  foreground = Foreground::kOtherProcess;
  EXPECT_EQ(During(100), "bar ");
  EXPECT_TRUE(IsOn(settings.FullScreen));
  foreground = Foreground::kMainForm;
  EXPECT_EQ(During(100), "no-bar ");
  GoFullScreen();  // and back
  EXPECT_EQ(During(100), "bar ");
  EXPECT_FALSE(watch.TaskbarHidden());
}

TEST_F(PointerWatchTest, LeavesFullScreenWithTheForeground) {
  settings.AutoFullscreen = FromBool(true);
  foreground = Foreground::kOtherProcess;
  GoFullScreen();
  During(1000);
  EXPECT_TRUE(IsOn(settings.FullScreen));  // not come to the foreground yet
  foreground = Foreground::kMainForm;
  During(50);
  foreground = Foreground::kOtherWindow;
  During(50);
  EXPECT_TRUE(IsOn(settings.FullScreen));
  foreground = Foreground::kOtherProcess;
  EXPECT_EQ(During(50), "bar ");
  EXPECT_FALSE(IsOn(settings.FullScreen));
  During(1000);
  EXPECT_FALSE(IsOn(settings.FullScreen));
}

TEST_F(PointerWatchTest, CallsTheStripByMovementAndSendsItAwayByStillness) {
  settings.HideInNormal = FromBool(true);
  screen.SetPanelShown(false);
  During(250);
  EXPECT_FALSE(cursor);
  for (int i = 1; i <= 6; ++i) {
    EXPECT_FALSE(screen.PanelShown()) << i;
    pointer->x += 1;
    During(50);
  }
  EXPECT_TRUE(screen.PanelShown());
  EXPECT_TRUE(cursor);
  EXPECT_EQ(delay->Interval(), 10);
  EXPECT_TRUE(delay->Enabled());
  EXPECT_EQ(During(50 * 50), "");
  EXPECT_TRUE(screen.PanelShown());
  EXPECT_EQ(During(50), "hide ");  // the 51st tick
  EXPECT_FALSE(screen.PanelShown());
  EXPECT_EQ(delay->Interval(), 1000);
  EXPECT_TRUE(delay->Enabled());

  // A pause on the way starts the count over.
  for (int i = 1; i <= 5; ++i) pointer->x += 1, During(50);
  During(50);
  for (int i = 1; i <= 5; ++i) pointer->x += 1, During(50);
  EXPECT_FALSE(screen.PanelShown());
}

TEST_F(PointerWatchTest, JudgesByWhereThePointerRests) {
  settings.HideInNormal = FromBool(true);
  const struct {
    const char* where;
    ScreenPoint at;
    bool shown;  // the strip, after a second of rest
    bool cursor;
  } rows[] = {
      {"middle", kMiddle, false, false},
      {"band of the strip", {300, 50 + 241}, true, true},
      {"above the band", {300, 50 + 240}, false, false},
      {"last line of the band", {300, 50 + 294}, true, true},
      {"under the band, near the strip", {300, 50 + 300}, true, true},
      {"lower frame", {300, 50 + 310}, false, false},
      {"left frame", {105, 180}, false, false},
      {"just inside", {106, 180}, false, false},
      {"another screen", kElsewhere, false, true},
      {"right of the form", {100 + 410, 180}, false, true},
  };
  for (const auto& row : rows) {
    pointer = kElsewhere;
    During(50);
    pointer = row.at;
    During(1000);
    EXPECT_EQ(screen.PanelShown(), row.shown) << row.where;
    EXPECT_EQ(cursor, row.cursor) << row.where;
  }
}

TEST_F(PointerWatchTest, CountsNoMovementJustAfterFullScreen) {
  settings.HideInFullscreen = FromBool(true);
  screen.ToggleFullScreen();
  for (int i = 1; i < 20; ++i) pointer->x += 1, During(50);
  EXPECT_FALSE(screen.PanelShown());
  for (int i = 1; i <= 5; ++i) pointer->x += 1, During(50);
  EXPECT_FALSE(screen.PanelShown());
  for (int i = 1; i <= 2; ++i) pointer->x += 1, During(50);
  EXPECT_TRUE(screen.PanelShown());
}

TEST_F(PointerWatchTest, HidesTheIdlePointerWhereThereIsNoStrip) {
  settings.HideControlsInFullscreen = FromBool(true);
  GoFullScreen();
  screen.SetPanelShown(false);
  EXPECT_EQ(During(50 + 2950), "no-bar ");
  EXPECT_EQ(During(50), "hide ");
  pointer->x += 5;  // a nudge is no movement
  EXPECT_EQ(During(50), "");
  pointer->y -= 6;
  EXPECT_EQ(During(50), "show ");
  EXPECT_EQ(During(2950), "");
  EXPECT_EQ(During(50), "hide ");
  EXPECT_FALSE(screen.PanelShown());
  pointer = kElsewhere;  // another screen: shown, and never hidden there
  EXPECT_EQ(During(50), "show ");
  EXPECT_EQ(During(10'000), "");
}

TEST_F(PointerWatchTest, ShowsThePointerToEveryOtherWindow) {
  settings.HideInNormal = FromBool(true);
  for (const Foreground other : {Foreground::kOtherWindow, Foreground::kOtherProcess}) {
    foreground = Foreground::kMainForm;
    During(4000);
    EXPECT_FALSE(cursor);
    foreground = other;
    EXPECT_EQ(During(1000), "show ");
  }
  foreground = Foreground::kMainForm;
  During(4000);
  minimised = true;
  EXPECT_EQ(During(50), "show ");
  minimised = false;
  During(4000);
  session.Unloading = true;
  button = 2;
  EXPECT_EQ(During(1000), "");
}

TEST_F(PointerWatchTest, ReadsClicksOnTheVideo) {
  const struct {
    const char* what;
    std::vector<int> pauses;  // milliseconds between two clicks, on top of 100
    std::string calls;
  } rows[] = {{"one", {}, ""},
              {"two quick", {0}, "mOpen "},
              {"at 450 ms", {350}, "mOpen "},
              {"at 500 ms", {400}, ""},
              {"three quick", {0, 0}, "mOpen "},
              {"four quick", {0, 0, 0}, "mOpen mOpen "},
              {"slow, then quick", {1000, 0}, "mOpen "}};
  for (const auto& row : rows) {
    During(10'000);
    std::string done = Click(1);
    for (const int pause : row.pauses) {
      During(pause);
      done += Click(1);
    }
    EXPECT_EQ(done, row.calls) << row.what;
    Click(1), During(10'000), Click(1);  // forget what came before
  }
  EXPECT_EQ(Click(2), "show button7 ");
  EXPECT_EQ(pump.Pumps(), 1);
  button = 2;
  EXPECT_EQ(During(1000), "show button7 ");  // held down is one press
}

TEST_F(PointerWatchTest, ReadsNoClicksElsewhere) {
  const struct {
    const char* where;
    int X;
    int Y;
    bool full;
    bool never;
    bool read;
  } rows[] = {
      {"first column", 5, 100, false, false, true},  {"frame", 4, 100, false, false, false},
      {"last column", 399, 100, false, false, true}, {"right", 400, 100, false, false, false},
      {"first line", 100, 26, false, false, true},   {"title bar", 100, 25, false, false, false},
      {"last line", 100, 264, false, false, true},   {"strip", 100, 265, false, false, false},
      {"full screen", 100, 239, true, false, true},  {"its strip", 100, 240, true, false, false},
      {"no strip", 100, 299, true, true, true},      {"below", 100, 300, true, true, false}};
  for (const auto& row : rows) {
    if (IsOn(settings.FullScreen) != row.full) GoFullScreen();
    settings.HideControlsInFullscreen = FromBool(row.never);
    pointer = {100 + row.X, 50 + row.Y};
    button = 0;
    During(50);
    EXPECT_EQ(Click(2).find("button7") != std::string::npos, row.read) << row.where;
  }
  // A press that began elsewhere is none, wherever it is dragged to.
  pointer = kElsewhere;
  button = 2;
  During(50);
  pointer = kMiddle;
  EXPECT_EQ(During(1000).find("button7"), std::string::npos);
}

TEST_F(PointerWatchTest, StopsWhereTheFormGoesDownInTheMidstOfATick) {
  settings.HideInNormal = FromBool(true);
  pump.Post([this] { session.Unloading = true; });
  button = 2;
  EXPECT_EQ(During(1000), "show ");
}

TEST_F(PointerWatchTest, KeepsTheKeysAtTheForm) {
  const struct {
    bool panel;
    bool display;
    const char* focus;
  } rows[] = {{true, true, "display"}, {true, false, ""}, {false, true, "render"}};
  for (const auto& row : rows) {
    focus.clear();
    panel_visible = row.panel;
    display_visible = row.display;
    During(50);
    EXPECT_EQ(focus, row.focus);
  }
}

TEST_F(PointerWatchTest, APointerOfUnknownPlaceIsAwayFromTheForm) {
  settings.HideInNormal = FromBool(true);
  pointer = {300, 50 + 241};  // in the band of the strip
  During(50);
  EXPECT_TRUE(screen.PanelShown());
  pointer.reset();
  button = 2;
  EXPECT_EQ(During(50), "");
  EXPECT_FALSE(screen.PanelShown());
  During(5000);
  EXPECT_TRUE(cursor);
}

}  // namespace
}  // namespace kv
