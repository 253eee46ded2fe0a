// Full screen and the rules of the control strip: when it hides itself, when it is not shown at
// all.
//
// Holds what panel, pointer and window have to agree on; says what is to happen and leaves the
// doing to its host. Owned by `frmMain`; interface thread only.
#pragma once

#include "state/session.h"
#include "state/settings.h"
#include "system/timers.h"

#include <optional>

namespace kv {

// Where a window lies in its normal state, twips.
struct FormPlace {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
  friend bool operator==(const FormPlace&, const FormPlace&) = default;
};

class FullScreenHost {
 public:
  virtual ~FullScreenHost() = default;
  // 0 normal, 1 minimised, 2 maximised, as `LastWindowState`.
  virtual int FormState() const = 0;
  virtual FormPlace PlaceOfForm() const = 0;
  virtual void SetActiveHwnd() = 0;  // brings the form to the foreground
  // Takes the frame off and covers the whole screen that the form is on.
  virtual void EnterFullScreen() = 0;
  // Gives the frame back, then `place` where one is kept, then the state.
  virtual void LeaveFullScreen(const std::optional<FormPlace>& place, int state) = 0;
  virtual void SetPanelVisible(bool visible) = 0;
  virtual void SetPanelHeight(int pixels) = 0;
  virtual void SetFullScreenChecked(bool checked) = 0;  // the menu item "mFullScreen"
  virtual bool RenderVisible() const = 0;
  // `GetMovieScale` with `PanelAccounted` false, and `DS_ChangeTarget` into `Render`.
  virtual void ChangeTarget() = 0;
};

class FullScreen {
 public:
  // The form's timers of these names.
  struct Timers {
    Timer& DelayAutoHide;
    Timer& PanelShowTimer;
    Timer& PanelDelayTimer;
    Timer& ToggleFullscreenTimer;
  };

  // `PanelFullHeight` is the height of the strip as designed, pixels.
  FullScreen(FullScreenHost& host, Settings& settings, const Session& session, Timers timers,
             int PanelFullHeight);

  // Goes to full screen and back. Does nothing while the last toggle is under way, and once the
  // form goes down.
  void ToggleFullScreen();

  // The strip hides itself, or is hidden.
  bool GetAutoHide() const;
  // The strip stays hidden whatever the pointer does.
  bool NoPanel() const;
  // Brings the strip back where nothing hides it.
  void SetAutoHideMode();

  // The state towards which the strip is moving.
  bool PanelShown() const { return PanelShown_; }
  void SetPanelShown(bool shown) { PanelShown_ = shown; }

  int PanelFullHeight() const { return PanelFullHeight_; }

  // One shot: while it runs, movements of the pointer do not count.
  void OnDelayAutoHide() { timers_.DelayAutoHide.SetEnabled(false); }
  // One shot, for callers that must not change the window within their own event.
  void OnToggleFullscreenTimer();

 private:
  void Enter();
  void Leave();

  FullScreenHost& host_;
  Settings& settings_;
  const Session& session_;
  Timers timers_;
  int PanelFullHeight_;
  bool PanelShown_ = true;
  FormPlace NormalPlace_;  // before full screen; counts when NormalState_ is 0
  int NormalState_ = 0;
  bool toggling_ = false;
};

class TrayHost {
 public:
  virtual ~TrayHost() = default;
  // `frmAbout`, `frmCopy` or `frmSettings` is open.
  virtual bool DialogOpen() const = 0;
  virtual void SetActiveHwnd() = 0;
  virtual bool FormVisible() const = 0;
  virtual void ShowForm() = 0;
  virtual void ToggleFullScreen() = 0;
  virtual void BUtton_Click(int Index) = 0;
};

// A press on the tray icon: 1 the left button, which brings the form forward and out of full
// screen; 2 the right one, which opens the menu. Any other only brings the form forward.
void TrayClick(int code, TrayHost& host, const Settings& settings);

}  // namespace kv
