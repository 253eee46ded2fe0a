#include "view/pointer_watch.h"

#include <chrono>
#include <cstdlib>

namespace kv {
namespace {

using std::chrono::milliseconds;

constexpr int kLeftButton = 1;
constexpr int kRightButton = 2;
constexpr int kMenuButton = 7;

constexpr int kCaptionMargin = 25;  // of a window with a title bar
constexpr int kVideoLeft = 5;
constexpr int kVideoTop = 26;
constexpr int kInsideLeft = 6;
constexpr int kInsideRight = 5;  // from the right edge
constexpr int kInsideBottom = 20;
constexpr int kBandBottom = 5;
constexpr int kNearPanel = 10;
constexpr int kStillPixels = 6;

constexpr int kTicksToCall = 5;
constexpr int kTicksToSendAway = 50;
constexpr auto kDoubleClick = milliseconds(500);
constexpr auto kIdle = milliseconds(3000);
constexpr int kPanelAtOnceMilliseconds = 10;
constexpr int kPanelLaterMilliseconds = 1000;

}  // namespace

PointerWatch::PointerWatch(PointerWorld& world, PointerActions& actions, FullScreen& full_screen,
                           const Settings& settings, const Session& session,
                           const TimerSource& time, MessagePump& pump, Timer& PanelDelayTimer,
                           const Timer& DelayAutoHide)
    : world_(world),
      actions_(actions),
      full_screen_(full_screen),
      settings_(settings),
      session_(session),
      time_(time),
      pump_(pump),
      PanelDelayTimer_(PanelDelayTimer),
      DelayAutoHide_(DelayAutoHide) {}

void PointerWatch::SetCursor(bool Show, bool Force) {
  if (!Force && CursorHidden_ != Show) return;
  CursorHidden_ = !Show;
  actions_.ShowCursor(Show);
}

void PointerWatch::OnMouseTimer() {
  if (session_.Unloading) return;
  const Foreground foreground = world_.ForegroundWindow();
  if (foreground == Foreground::kOtherProcess) {
    LeftToOthers();
    return;
  }
  if (foreground == Foreground::kOtherWindow) {
    SetCursor(true, false);  // one pointer serves all windows of the program
    return;
  }
  seen_in_full_screen_ = InFullScreen();
  if (!InFullScreen()) {
    ShowTaskBar();
  } else if (!TaskbarHidden_) {
    TaskbarHidden_ = true;
    actions_.SetTaskBarVisible(false);
  }
  const bool minimised = world_.FormMinimised();
  // Where the strip hides itself the end of the tick decides, so that the pointer does not flicker.
  if (minimised || (!InFullScreen() && !full_screen_.GetAutoHide())) SetCursor(true, false);
  if (minimised) return;
  KeepFocus();

  const FormArea area = world_.AreaOfForm();
  const Spot spot = FindPointer(area);
  if (DelayAutoHide_.Enabled()) {
    LastX_ = spot.X;
    LastY_ = spot.Y;
  }
  if (!ReadPress(spot, area)) return;
  JudgePanel(spot, area);
  if (full_screen_.NoPanel()) {
    HideIdlePointer(spot);
  } else if (full_screen_.GetAutoHide()) {
    FollowVerdict(spot);
  }
}

void PointerWatch::LeftToOthers() {
  SetCursor(true, false);
  ShowTaskBar();
  // A window that is just going to full screen has not got the foreground yet.
  if (IsOn(settings_.AutoFullscreen) && InFullScreen() && seen_in_full_screen_) {
    seen_in_full_screen_ = false;
    full_screen_.ToggleFullScreen();
  }
}

void PointerWatch::ShowTaskBar() {
  if (!TaskbarHidden_) return;
  TaskbarHidden_ = false;
  actions_.SetTaskBarVisible(true);
}

// Keeps the keys at the form, whatever was clicked last.
void PointerWatch::KeepFocus() {
  if (!world_.PanelVisible()) {
    actions_.FocusRender();
  } else if (world_.DisplayVisible()) {
    actions_.FocusDisplay();
  }
}

PointerWatch::Spot PointerWatch::FindPointer(const FormArea& area) const {
  Spot spot;
  spot.screen = world_.Pointer();
  if (spot.screen) {
    spot.X = spot.screen->x - area.left;
    spot.Y = spot.screen->y - area.top;
    spot.inside = spot.X >= 0 && spot.X < area.width && spot.Y >= 0 && spot.Y < area.height;
  } else {
    spot.X = LastX_;
    spot.Y = LastY_;
  }
  return spot;
}

// False when the form has gone down meanwhile.
bool PointerWatch::ReadPress(const Spot& spot, const FormArea& area) {
  const int button = world_.MouseButtonDown();
  if (button == 0) PressHandled_ = false;
  if (PressHandled_) return true;

  const int margin = InFullScreen() ? 0 : kCaptionMargin;
  const int limit =
      full_screen_.NoPanel() ? area.ScaleHeight : area.ScaleHeight + margin - area.PanelHeight;
  const bool on_video = spot.screen && spot.X >= kVideoLeft && spot.X < area.ScaleWidth &&
                        spot.Y >= kVideoTop && spot.Y < limit;
  if (!on_video) {
    PressHandled_ = true;
  } else if (button == kRightButton) {
    PressHandled_ = true;
    SetCursor(true, true);
    pump_.PumpOnce();
    if (session_.Unloading) return false;
    actions_.BUtton_Click(kMenuButton);
    ShowPanelRequest_ = true;
  } else if (button == kLeftButton) {
    PressHandled_ = true;
    CountClick();
  }
  return !session_.Unloading;
}

// The second of two quick clicks opens the file dialog; a third is a first one again.
void PointerWatch::CountClick() {
  const TimerSource::TimePoint now = time_.Now();
  const bool quick =
      LastClickTick_ && now > *LastClickTick_ && now - *LastClickTick_ < kDoubleClick;
  LastClickTick_ = now;
  if (DoubleClickDone_) {
    DoubleClickDone_ = false;
  } else if (quick) {
    DoubleClickDone_ = true;
    actions_.MENU_Click("mOpen");
  }
}

// The pointer counts from the outer corner and the height of the client area from the inner one:
// the band of the strip is meant to be that wide.
void PointerWatch::JudgePanel(const Spot& spot, const FormArea& area) {
  if (!spot.screen) {
    ShowPanelRequest_ = false;
    return;
  }
  const bool in_band = spot.Y > area.ScaleHeight - full_screen_.PanelFullHeight() &&
                       spot.Y < area.ScaleHeight - kBandBottom;
  const bool in_window = spot.X >= kInsideLeft && spot.X < area.width - kInsideRight &&
                         spot.Y >= 1 && spot.Y < area.height - kInsideBottom;
  if (in_band) {
    ShowPanelRequest_ = true;
  } else if (in_window) {
    const int frame = area.height - area.ScaleHeight;
    const bool near = spot.Y > area.PanelTop - kNearPanel + frame && spot.Y < area.height;
    CountMovement(near || spot.X != LastX_ || spot.Y != LastY_);
  } else {
    ShowPanelRequest_ = false;
    return;
  }
  LastX_ = spot.X;
  LastY_ = spot.Y;
}

void PointerWatch::CountMovement(bool moving) {
  int& count = moving ? MoveTicks_ : StillTicks_;
  (moving ? StillTicks_ : MoveTicks_) = 0;
  if (++count > (moving ? kTicksToCall : kTicksToSendAway)) {
    ShowPanelRequest_ = moving;
    count = 0;
  }
}

void PointerWatch::HideIdlePointer(const Spot& spot) {
  const TimerSource::TimePoint now = time_.Now();
  bool still = true;
  if (spot.screen) {
    still = LastScreen_ && std::abs(spot.screen->x - LastScreen_->x) < kStillPixels &&
            std::abs(spot.screen->y - LastScreen_->y) < kStillPixels;
    LastScreen_ = spot.screen;
  }
  if (!still || !LastMoveTick_) {
    LastMoveTick_ = now;
    SetCursor(true, false);
  } else if (!spot.inside) {
    SetCursor(true, false);
  } else if (now - *LastMoveTick_ >= kIdle) {
    SetCursor(false, false);
  }
}

// The pointer goes with the strip, but only over the form.
void PointerWatch::FollowVerdict(const Spot& spot) {
  SetCursor(ShowPanelRequest_ || !spot.inside, false);
  if (ShowPanelRequest_ == full_screen_.PanelShown()) return;
  full_screen_.SetPanelShown(ShowPanelRequest_);
  PanelDelayTimer_.Restart(ShowPanelRequest_ ? kPanelAtOnceMilliseconds : kPanelLaterMilliseconds);
}

}  // namespace kv
