#include "shell/termination.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace kv {
namespace {

constexpr std::array kSignals = {SIGTERM, SIGHUP, SIGINT};

// A signal handler can reach nothing but this: the end of the pipe that it writes to. A handler and
// not a blocked mask, which the programs that we start would inherit.
std::atomic<int> g_write_end{-1};

void OnSignal(int /*signal*/) {
  const int saved = errno;
  const char byte = 1;
  // A full pipe means that the request has been told already.
  [[maybe_unused]] const ssize_t written = write(g_write_end.load(), &byte, 1);
  errno = saved;
}

void SetHandlers(void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  for (const int signal : kSignals) sigaction(signal, &action, nullptr);
}

}  // namespace

Termination::Termination(std::function<void()> on_request) {
  if (pipe2(pipe_.data(), O_NONBLOCK | O_CLOEXEC) != 0) return;
  g_write_end = pipe_[1];
  notifier_ = std::make_unique<QSocketNotifier>(pipe_[0], QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated,
                   [this, request = std::move(on_request)] {
                     notifier_->setEnabled(false);
                     request();
                   });
  SetHandlers(&OnSignal);
}

Termination::~Termination() {
  if (!notifier_) return;
  SetHandlers(SIG_DFL);
  g_write_end = -1;
  notifier_.reset();
  for (const int end : pipe_) close(end);
}

}  // namespace kv
