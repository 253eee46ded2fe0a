// Turns the signals that ask a process to end into a call on the interface thread.
//
// SIGTERM, SIGHUP and SIGINT. At most one object at a time; owned by the program's entry.
#pragma once

#include <QSocketNotifier>

#include <array>
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
  std::array<int, 2> pipe_{-1, -1};
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace kv
