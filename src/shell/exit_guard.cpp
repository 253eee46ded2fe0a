#include "shell/exit_guard.h"

#include <atomic>
#include <cstdlib>
#include <utility>

namespace kv {
namespace {

// An exit handler is given nothing, so it finds here what to call.
std::atomic<const std::function<void()>*> g_save{nullptr};

void OnExit() {
  const std::function<void()>* const save = g_save.exchange(nullptr);
  if (save == nullptr) return;
  (*save)();
  std::_Exit(EXIT_FAILURE);
}

}  // namespace

ExitGuard::ExitGuard(std::function<void()> save) : save_(std::move(save)) {
  g_save = &save_;
  std::atexit(&OnExit);
}

ExitGuard::~ExitGuard() {
  g_save = nullptr;
}

}  // namespace kv
