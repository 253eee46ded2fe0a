// Saves when the process is ended by somebody else than the player.
//
// A toolkit whose screen has gone calls exit() in the middle of its events, and what a session has
// changed would be lost. At most one object at a time; owned by the program's entry.
#pragma once

#include <functional>

namespace kv {

class ExitGuard {
 public:
  // `save` runs if exit() is called while this object lives; the process then ends at once, without
  // its destructors, as other threads still run. It must not wait, show or pump anything.
  explicit ExitGuard(std::function<void()> save);
  ~ExitGuard();
  ExitGuard(const ExitGuard&) = delete;
  ExitGuard& operator=(const ExitGuard&) = delete;

 private:
  std::function<void()> save_;
};

}  // namespace kv
