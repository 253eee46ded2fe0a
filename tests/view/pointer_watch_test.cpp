// The poll of the pointer against a scripted world: a form of 400 x 300 pixels at (100, 50), with a
// frame of 5 around and a title bar of 25, and a strip of 60 at its lower edge.
#include "view/pointer_watch.h"

#include "support/movie_world.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

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

class PointerWatchTest : public testing::Test,
                         protected MovieWorld,
                         protected PointerWorld,
                         protected PointerActions {
 protected:
  Foreground ForegroundWindow() const override { return foreground; }
  bool FormMinimised() const override { return minimised; }
  FormArea AreaOfForm() const override { return {100, 50, 410, 330, 400, 300, 240, kFull}; }
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
  std::string DuringForeground(Foreground which) {
    foreground = which;
    return During(1000);
  }
  // A pixel to the right before each of so many ticks.
  void MoveOn(int ticks) {
    for (; ticks > 0; --ticks) {
      pointer->x += 1;
      During(50);
    }
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
  bool minimised = false, panel_visible = true, display_visible = true, cursor = true;
  std::optional<ScreenPoint> pointer = kMiddle;
  int button = 0;
  std::string calls, focus;

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
  EXPECT_EQ(DuringForeground(Foreground::kMainForm), "no-bar ");
  EXPECT_EQ(DuringForeground(Foreground::kOtherWindow), "");
  EXPECT_EQ(DuringForeground(Foreground::kOtherProcess), "bar ");
  EXPECT_EQ(DuringForeground(Foreground::kMainForm), "no-bar ");
  EXPECT_TRUE(IsOn(settings.FullScreen));
  GoFullScreen();  // and back
  EXPECT_EQ(During(100), "bar ");
  EXPECT_FALSE(watch.TaskbarHidden());
}

TEST_F(PointerWatchTest, LeavesFullScreenWithTheForeground) {
  settings.AutoFullscreen = FromBool(true);
  GoFullScreen();
  DuringForeground(Foreground::kOtherProcess);
  EXPECT_TRUE(IsOn(settings.FullScreen)) << "not come to the foreground yet";
  DuringForeground(Foreground::kMainForm);
  DuringForeground(Foreground::kOtherWindow);
  EXPECT_TRUE(IsOn(settings.FullScreen));
  DuringForeground(Foreground::kOtherProcess);
  EXPECT_FALSE(IsOn(settings.FullScreen));
}

TEST_F(PointerWatchTest, CallsTheStripByMovementAndSendsItAwayByStillness) {
  settings.HideInNormal = FromBool(true);
  screen.SetPanelShown(false);
  During(250);
  EXPECT_FALSE(cursor);
  MoveOn(5);
  EXPECT_FALSE(screen.PanelShown());
  MoveOn(1);
  EXPECT_TRUE(screen.PanelShown() && cursor && delay->Enabled());
  EXPECT_EQ(delay->Interval(), 10);
  EXPECT_EQ(During(50 * 50), "");
  EXPECT_TRUE(screen.PanelShown());
  EXPECT_EQ(During(50), "hide ");  // the 51st tick
  EXPECT_TRUE(!screen.PanelShown() && delay->Enabled());
  EXPECT_EQ(delay->Interval(), 1000);

  // A pause on the way starts the count over.
  MoveOn(5);
  During(50);
  MoveOn(5);
  EXPECT_FALSE(screen.PanelShown());
}

TEST_F(PointerWatchTest, JudgesByWhereThePointerRests) {
  settings.HideInNormal = FromBool(true);
  // The strip and the pointer after a second of rest.
  const auto shown = [this](int x, int y) {
    pointer = kElsewhere;
    During(50);
    pointer = {x, y};
    During(1000);
    return std::string(screen.PanelShown() ? "strip " : "") + (cursor ? "pointer" : "");
  };
  EXPECT_EQ(shown(300, 50 + 241), "strip pointer") << "band of the strip";
  EXPECT_EQ(shown(300, 50 + 240), "") << "above the band";
  EXPECT_EQ(shown(300, 50 + 300), "strip pointer") << "under the band, near the strip";
  EXPECT_EQ(shown(300, 50 + 310), "") << "lower frame";
  EXPECT_EQ(shown(105, 180), "") << "left frame";
  EXPECT_EQ(shown(kElsewhere.x, kElsewhere.y), "pointer") << "another screen";
  EXPECT_EQ(shown(100 + 410, 180), "pointer") << "right of the form";
}

TEST_F(PointerWatchTest, CountsNoMovementJustAfterFullScreen) {
  settings.HideInFullscreen = FromBool(true);
  screen.ToggleFullScreen();
  MoveOn(19 + 5);
  EXPECT_FALSE(screen.PanelShown());
  MoveOn(2);
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
  EXPECT_EQ(During(10'000), "show ");
}

TEST_F(PointerWatchTest, ShowsThePointerToEveryOtherWindow) {
  settings.HideInNormal = FromBool(true);
  for (const Foreground other :
       {Foreground::kOtherWindow, Foreground::kOtherProcess, Foreground::kMainForm}) {
    foreground = Foreground::kMainForm;
    During(4000);
    EXPECT_FALSE(cursor);
    foreground = other;
    minimised = other == Foreground::kMainForm;
    EXPECT_EQ(During(1000), "show ");
  }
}

TEST_F(PointerWatchTest, ReadsClicksOnTheVideo) {
  // Clicks with these milliseconds between them, on top of 100.
  const auto clicks = [this](const std::vector<int>& pauses) {
    Click(1), During(10'000);  // forgets what came before
    std::string done = Click(1);
    for (const int pause : pauses) During(pause), done += Click(1);
    During(10'000);
    return done;
  };
  EXPECT_EQ(clicks({}), "");
  EXPECT_EQ(clicks({350}), "mOpen ");
  EXPECT_EQ(clicks({400}), "") << "not before half a second is over";
  EXPECT_EQ(clicks({0, 0}), "mOpen ");
  EXPECT_EQ(clicks({0, 0, 0}), "mOpen mOpen ");
  EXPECT_EQ(clicks({1000, 0}), "mOpen ");
  EXPECT_EQ(Click(2), "show button7 ");
  EXPECT_EQ(pump.Pumps(), 1);
  button = 2;
  EXPECT_EQ(During(1000), "show button7 ") << "held down is one press";
}

TEST_F(PointerWatchTest, ReadsNoClicksElsewhere) {
  // From the corner of the form.
  const auto reads = [this](int x, int y) {
    pointer = {100 + x, 50 + y};
    During(50);
    return Click(2).find("button7") != std::string::npos;
  };
  EXPECT_TRUE(reads(5, 100) && !reads(4, 100)) << "left frame";
  EXPECT_TRUE(reads(399, 100) && !reads(400, 100)) << "right frame";
  EXPECT_TRUE(reads(100, 26) && !reads(100, 25)) << "title bar";
  EXPECT_TRUE(reads(100, 264) && !reads(100, 265)) << "strip";
  GoFullScreen();
  EXPECT_TRUE(reads(100, 239) && !reads(100, 240)) << "strip in full screen";
  settings.HideControlsInFullscreen = FromBool(true);
  EXPECT_TRUE(reads(100, 299) && !reads(100, 300)) << "full screen without a strip";
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
  During(50);
  EXPECT_EQ(focus, "display");
  panel_visible = false;
  During(50);
  EXPECT_EQ(focus, "render");
  panel_visible = true;
  display_visible = false;
  focus.clear();
  During(50);
  EXPECT_EQ(focus, "");
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
