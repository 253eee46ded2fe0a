// The sliding of the control strip in and out, four pixels a tick.
//
// Moves towards `FullScreen::PanelShown`. A tick that comes late is one tick: the strip then moves
// more slowly and never jumps. Owned by `frmMain`; interface thread only.
#pragma once

#include "system/timers.h"
#include "view/full_screen.h"

namespace kv {

class PanelSlideHost {
 public:
  virtual ~PanelSlideHost() = default;
  virtual bool PanelVisible() const = 0;
  virtual void SetPanelVisible(bool visible) = 0;
  virtual int PanelHeight() const = 0;  // pixels, also while it is not visible
  virtual void SetPanelHeight(int pixels) = 0;
  virtual void ScaleMovie(bool ForcePanel) = 0;
};

class PanelSlide {
 public:
  // The form's timers of these names; both are disabled by their own events here.
  PanelSlide(PanelSlideHost& host, const FullScreen& full_screen, Timer& PanelShowTimer,
             Timer& PanelDelayTimer);

  void OnPanelShowTimer();
  // One shot: sets the strip moving.
  void OnPanelDelayTimer();

 private:
  void StepIn();
  void StepOut();

  PanelSlideHost& host_;
  const FullScreen& full_screen_;
  Timer& PanelShowTimer_;
  Timer& PanelDelayTimer_;
};

}  // namespace kv
