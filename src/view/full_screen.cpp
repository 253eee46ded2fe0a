#include "view/full_screen.h"

namespace kv {
namespace {

constexpr int kNormalState = 0;
constexpr int kDelayAutoHideMilliseconds = 1000;
constexpr int kPanelAtOnceMilliseconds = 10;
constexpr int kLeftCode = 1;
constexpr int kRightCode = 2;
constexpr int kMenuButton = 7;

}  // namespace

FullScreen::FullScreen(FullScreenHost& host, Settings& settings, const Session& session,
                       Timers timers, int PanelFullHeight)
    : host_(host),
      settings_(settings),
      session_(session),
      timers_(timers),
      PanelFullHeight_(PanelFullHeight) {}

bool FullScreen::NoPanel() const {
  return IsOn(settings_.FullScreen) && IsOn(settings_.HideControlsInFullscreen);
}

bool FullScreen::GetAutoHide() const {
  return IsOn(settings_.HideInNormal) || NoPanel() ||
         (IsOn(settings_.FullScreen) && IsOn(settings_.HideInFullscreen));
}

void FullScreen::SetAutoHideMode() {
  if (GetAutoHide()) return;
  PanelShown_ = true;
  timers_.PanelShowTimer.SetEnabled(false);
  timers_.PanelDelayTimer.Restart(kPanelAtOnceMilliseconds);
  host_.SetPanelHeight(PanelFullHeight_);
}

void FullScreen::ToggleFullScreen() {
  // Changing the window gives events a turn, and one of them may ask for the way back.
  if (toggling_ || session_.Unloading) return;
  toggling_ = true;
  settings_.FullScreen = FromBool(!IsOn(settings_.FullScreen));
  if (IsOn(settings_.FullScreen)) {
    Enter();
  } else {
    Leave();
  }
  host_.SetFullScreenChecked(IsOn(settings_.FullScreen));
  if (host_.RenderVisible()) host_.ChangeTarget();
  toggling_ = false;
}

void FullScreen::Enter() {
  if (IsOn(settings_.HideControlsInFullscreen)) host_.SetPanelVisible(false);
  NormalState_ = host_.FormState();
  if (NormalState_ == kNormalState) NormalPlace_ = host_.PlaceOfForm();
  host_.SetActiveHwnd();
  host_.EnterFullScreen();
  if (IsOn(settings_.HideInFullscreen) && !IsOn(settings_.HideControlsInFullscreen)) {
    timers_.DelayAutoHide.Restart(kDelayAutoHideMilliseconds);
    PanelShown_ = false;
    timers_.PanelShowTimer.SetEnabled(true);
  }
}

void FullScreen::Leave() {
  host_.LeaveFullScreen(
      NormalState_ == kNormalState ? std::optional<FormPlace>(NormalPlace_) : std::nullopt,
      NormalState_);
  SetAutoHideMode();
  host_.SetPanelVisible(true);
}

void FullScreen::OnToggleFullscreenTimer() {
  timers_.ToggleFullscreenTimer.SetEnabled(false);
  ToggleFullScreen();
}

void TrayClick(int code, TrayHost& host, const Settings& settings) {
  if (host.DialogOpen()) return;
  host.SetActiveHwnd();
  if (code == kLeftCode) {
    if (IsOn(settings.FullScreen)) {
      host.ToggleFullScreen();
    } else if (!host.FormVisible()) {
      host.ShowForm();
      host.SetActiveHwnd();
    }
  } else if (code == kRightCode) {
    host.BUtton_Click(kMenuButton);
  }
}

}  // namespace kv
