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
  static constexpr int kStep = 4;  // pixels

  // The form's timers of these names; both are disabled by their own events here.
  PanelSlide(PanelSlideHost& host, const FullScreen& full_screen, Timer& PanelShowTimer,
             Timer& PanelDelayTimer);

  // The user wants no animations: the strip then comes and goes in one step.
  void SetReducedMotion(bool reduced) { reduced_motion_ = reduced; }

  void OnPanelShowTimer();
  // One shot: sets the strip moving.
  void OnPanelDelayTimer();

 private:
  void StepIn();
  void StepOut();
  int Step() const { return reduced_motion_ ? full_screen_.PanelFullHeight() : kStep; }

  PanelSlideHost& host_;
  const FullScreen& full_screen_;
  Timer& PanelShowTimer_;
  Timer& PanelDelayTimer_;
  bool reduced_motion_ = false;
};

}  // namespace kv
