// Clock and timers of the interface thread.
//
// Everything that looks like a loop in the player is a timer, and most of them are one-shots that
// carry work out of an event. The rules ask a `TimerSource` for their timers; `timers_qt.h` gives
// real ones, the tests a virtual clock, so that no test sleeps. Interface thread only.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace kv {

// A timer fires again and again, one interval apart, until it is disabled; an interval of 0 never
// fires. While its own handler runs it does not fire, even when the handler pumps messages.
// Enabling an enabled timer changes nothing; a new interval starts the wait over.
class Timer {
 public:
  virtual ~Timer() = default;

  virtual void SetEnabled(bool enabled) = 0;
  virtual bool Enabled() const = 0;

  // Milliseconds, 0 or more.
  virtual void SetInterval(int milliseconds) = 0;
  virtual int Interval() const = 0;

  // Starts the wait over whatever the timer was doing.
  void Restart(int milliseconds) {
    SetEnabled(false);
    SetInterval(0);
    SetInterval(milliseconds);
    SetEnabled(true);
  }
};

// kHighResolution keeps to the millisecond; kOrdinary may be off by a twentieth of its interval.
enum class TimerKind { kOrdinary, kHighResolution };

class TimerSource {
 public:
  using TimePoint = std::chrono::steady_clock::time_point;

  virtual ~TimerSource() = default;

  // A disabled timer. It must not outlive the source.
  virtual std::unique_ptr<Timer> MakeTimer(TimerKind kind, int interval_milliseconds,
                                           std::function<void()> on_fire) = 0;

  // A clock that never goes back.
  virtual TimePoint Now() const = 0;
};

}  // namespace kv
