// A clock that stands still until a test moves it, and timers that run on it.
//
// Behaves as the real timers do: due timers fire in the order of time (armed first goes first at
// the same moment), a timer never fires inside its own handler, and may be destroyed by it.
#pragma once

#include "system/timers.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace kv {

class VirtualTime : public TimerSource {
 public:
  std::unique_ptr<Timer> MakeTimer(TimerKind /*kind*/, int interval_milliseconds,
                                   std::function<void()> on_fire) override {
    auto state = std::make_shared<State>();
    state->on_fire = std::move(on_fire);
    state->interval = interval_milliseconds;
    states_.push_back(state);
    return std::make_unique<VirtualTimer>(*this, std::move(state));
  }

  TimePoint Now() const override { return TimePoint(std::chrono::milliseconds(now_)); }

  // Moves the clock on, firing what falls due on the way. Handlers may call it again.
  void Advance(std::int64_t milliseconds) {
    const std::int64_t end = now_ + milliseconds;
    while (const std::shared_ptr<State> next = NextDue(end)) {
      now_ = std::max(now_, next->due);
      next->due += next->interval;
      next->order = ++armed_;
      if (next->running) continue;
      next->running = true;
      if (next->on_fire) next->on_fire();
      next->running = false;
    }
    now_ = std::max(now_, end);
  }

  std::int64_t Milliseconds() const { return now_; }

  // How many timers are running, for tests that nothing stays behind.
  int ActiveTimers() const {
    return static_cast<int>(std::count_if(states_.begin(), states_.end(), [](const auto& weak) {
      const auto state = weak.lock();
      return state && state->enabled && state->interval > 0;
    }));
  }

 private:
  struct State {
    std::function<void()> on_fire;
    std::int64_t interval = 0;
    std::int64_t due = 0;
    std::uint64_t order = 0;
    bool enabled = false;
    bool running = false;
  };

  class VirtualTimer : public Timer {
   public:
    VirtualTimer(VirtualTime& time, std::shared_ptr<State> state)
        : time_(time), state_(std::move(state)) {}
    ~VirtualTimer() override { state_->enabled = false; }
    VirtualTimer(const VirtualTimer&) = delete;
    VirtualTimer& operator=(const VirtualTimer&) = delete;

    void SetEnabled(bool enabled) override {
      if (state_->enabled == enabled) return;
      state_->enabled = enabled;
      Arm();
    }
    bool Enabled() const override { return state_->enabled; }
    void SetInterval(int milliseconds) override {
      state_->interval = milliseconds;
      Arm();
    }
    int Interval() const override { return static_cast<int>(state_->interval); }

   private:
    void Arm() {
      state_->due = time_.now_ + state_->interval;
      state_->order = ++time_.armed_;
    }

    VirtualTime& time_;
    std::shared_ptr<State> state_;
  };

  std::shared_ptr<State> NextDue(std::int64_t end) {
    std::erase_if(states_, [](const auto& weak) { return weak.expired(); });
    std::shared_ptr<State> best;
    for (const auto& weak : states_) {
      auto state = weak.lock();
      if (!state->enabled || state->interval <= 0 || state->due > end) continue;
      if (!best || std::pair(state->due, state->order) < std::pair(best->due, best->order)) {
        best = std::move(state);
      }
    }
    return best;
  }

  std::int64_t now_ = 0;
  std::uint64_t armed_ = 0;
  std::vector<std::weak_ptr<State>> states_;
};

}  // namespace kv
