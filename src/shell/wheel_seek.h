// What the mouse wheel does: the volume, or with keys held a step through the medium.
//
// A step pauses a playing medium, and it plays on when the key is let go. Called by the wheel hook
// and by the windows that have wheels of their own. Owned by `frmMain`; interface thread only.
#pragma once

#include "controls/scroller_model.h"
#include "engine/dshow_control.h"
#include "shell/transport.h"

namespace kv {

// The keys held with the wheel, in the numbers of its message.
enum WheelMode : int {
  kWheelVolume = 0,  // none
  kWheelMinute = 1,  // Shift: 60 s
  kWheelFrame = 2,   // Ctrl: one picture, half a second without pictures
  kWheelSecond = 3,  // both: 1 s
};

class WheelSeek {
 public:
  // All must outlive this object. `Scroller2` is the volume slider.
  WheelSeek(clsDShowControl& movie, Transport& transport, ScrollerModel& Scroller2);

  // One notch of the wheel; `Direction` true lowers the volume or steps back. A mode that is none
  // of the four does nothing.
  void WheelMove(bool Direction, int Mode);

  // A key was let go: Ctrl (17) and Shift (16) end the stepping.
  void KeyUp(int KeyCode);

 private:
  void StepVolume(bool down);
  void StepPosition(bool back, int mode);

  clsDShowControl& movie_;
  Transport& transport_;
  ScrollerModel& volume_;

  bool wheel_resume_ = false;  // a step has paused a playing medium, and the key is still held
};

}  // namespace kv
