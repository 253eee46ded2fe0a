// Turns the signals that ask a process to end into a call on the interface thread.
//
// SIGTERM, SIGHUP and SIGINT. One object at a time; owned by the program's entry.
#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace kv {

class Termination {
 public:
  // `on_request` runs on the interface thread, for the first signal that comes.
  explicit Termination(std::function<void()> on_request);
  ~Termination();
  Termination(const Termination&) = delete;
  Termination& operator=(const Termination&) = delete;

 private:
  int descriptor_ = -1;
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace kv
