#include "system/timers_qt.h"

#include <QObject>
#include <QTimer>

#include <utility>

namespace kv {
namespace {

class TimerQt : public Timer {
 public:
  TimerQt(TimerKind kind, int interval, std::function<void()> on_fire)
      : state_(std::make_shared<State>(State{std::move(on_fire)})), interval_(interval) {
    timer_.setTimerType(kind == TimerKind::kHighResolution ? Qt::PreciseTimer : Qt::CoarseTimer);
    // The handler may destroy this timer, so what it runs from is held for the time.
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [weak = std::weak_ptr(state_)] {
      if (const std::shared_ptr<State> state = weak.lock()) Fire(*state);
    });
  }

  void SetEnabled(bool enabled) override {
    if (enabled == enabled_) return;
    enabled_ = enabled;
    Arm();
  }

  bool Enabled() const override { return enabled_; }

  void SetInterval(int milliseconds) override {
    interval_ = milliseconds;
    Arm();
  }

  int Interval() const override { return interval_; }

 private:
  struct State {
    std::function<void()> on_fire;
    bool running = false;
  };

  static void Fire(State& state) {
    if (state.running || !state.on_fire) return;
    state.running = true;
    state.on_fire();
    state.running = false;
  }

  void Arm() {
    timer_.stop();
    if (enabled_ && interval_ > 0) timer_.start(interval_);
  }

  std::shared_ptr<State> state_;
  QTimer timer_;
  int interval_;
  bool enabled_ = false;
};

}  // namespace

std::unique_ptr<Timer> TimerSourceQt::MakeTimer(TimerKind kind, int interval_milliseconds,
                                                std::function<void()> on_fire) {
  return std::make_unique<TimerQt>(kind, interval_milliseconds, std::move(on_fire));
}

TimerSource::TimePoint TimerSourceQt::Now() const {
  return std::chrono::steady_clock::now();
}

}  // namespace kv
