// A message queue of functions: what a test posts runs inside the pump of the code under test.
#pragma once

#include "support/virtual_time.h"
#include "system/message_pump.h"

#include <deque>
#include <functional>
#include <utility>

namespace kv {

class FakePump : public MessagePump {
 public:
  // With a clock, timers that are due fire in every pump, and waiting moves the clock.
  explicit FakePump(VirtualTime* time = nullptr) : time_(time) {}

  void Post(std::function<void()> message) { queue_.push_back(std::move(message)); }

  // Runs `action` inside the pump of that number, from now on; 0 is the next.
  void InPump(int number, std::function<void()> action) {
    number_ = pumps_ + number;
    action_ = std::move(action);
  }
  bool Waiting() const { return static_cast<bool>(action_); }

  void PumpOnce() override {
    if (action_ && pumps_ >= number_) std::exchange(action_, nullptr)();
    ++pumps_;
    while (!queue_.empty()) {
      const std::function<void()> message = std::move(queue_.front());
      queue_.pop_front();
      message();
    }
    if (time_ != nullptr) time_->Advance(0);
  }

  // Sleeps the whole time when the queue is empty, whatever timers fire meanwhile.
  void WaitAndPump(int milliseconds) override {
    const bool idle = queue_.empty();
    PumpOnce();
    if (idle && time_ != nullptr) time_->Advance(milliseconds);
  }

  // How often the code under test pumped.
  int Pumps() const { return pumps_; }

 private:
  VirtualTime* time_;
  std::deque<std::function<void()>> queue_;
  int pumps_ = 0;
  int number_ = 0;
  std::function<void()> action_;
};

}  // namespace kv
