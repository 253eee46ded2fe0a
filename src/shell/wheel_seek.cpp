#include "shell/wheel_seek.h"

namespace kv {
namespace {

constexpr int kShiftKeyCode = 16;
constexpr int kCtrlKeyCode = 17;

// Seconds.
constexpr double kMinute = 60.0;
constexpr double kSecond = 1.0;
constexpr double kFrameWithoutPicture = 0.5;

}  // namespace

WheelSeek::WheelSeek(clsDShowControl& movie, Transport& transport, ScrollerModel& Scroller2)
    : movie_(movie), transport_(transport), volume_(Scroller2) {}

void WheelSeek::WheelMove(bool Direction, int Mode) {
  if (Mode == kWheelVolume) {
    StepVolume(Direction);
  } else if (Mode >= kWheelMinute && Mode <= kWheelSecond) {
    StepPosition(Direction, Mode);
  }
}

void WheelSeek::StepVolume(bool down) {
  volume_.SetValue(volume_.Value() + (down ? -1 : 1));  // which keeps within its ends
}

void WheelSeek::StepPosition(bool back, int mode) {
  if (!movie_.DS_IsPaused()) {
    transport_.BUtton_Click(Transport::kPause);
    wheel_resume_ = true;
  }
  if (!movie_.DS_IsPaused()) return;

  double step = mode == kWheelMinute ? kMinute : kSecond;
  if (mode == kWheelFrame) {
    const double frame = movie_.DS_GetAvgTimePerFrame();
    step = frame > 0.0 ? frame : kFrameWithoutPicture;
  }
  movie_.DS_SetPosition(movie_.DS_GetPosition() + (back ? -step : step));  // within the medium
}

void WheelSeek::KeyUp(int KeyCode) {
  if (KeyCode != kShiftKeyCode && KeyCode != kCtrlKeyCode) return;
  if (wheel_resume_) movie_.DS_Play();
  wheel_resume_ = false;
}

}  // namespace kv
