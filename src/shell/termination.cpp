#include "shell/termination.h"

#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>
#include <utility>

namespace kv {
namespace {

sigset_t EndingSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGTERM, SIGHUP, SIGINT}) sigaddset(&signals, signal);
  return signals;
}

}  // namespace

Termination::Termination(std::function<void()> on_request) {
  const sigset_t signals = EndingSignals();
  // Blocked in every thread that is started from here on, so that they come by the descriptor.
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  descriptor_ = signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
  if (descriptor_ < 0) return;
  notifier_ = std::make_unique<QSocketNotifier>(descriptor_, QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated,
                   [this, request = std::move(on_request)] {
                     notifier_->setEnabled(false);
                     request();
                   });
}

Termination::~Termination() {
  notifier_.reset();
  if (descriptor_ >= 0) close(descriptor_);
}

}  // namespace kv
