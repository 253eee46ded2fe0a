// A disk that runs full.
#pragma once

#include <csignal>
#include <sys/resource.h>

namespace kv {

// Lets no file of this process grow beyond `bytes`: a write that crosses the limit is cut short and
// the next one fails.
class FullDisk {
 public:
  explicit FullDisk(rlim_t bytes) : old_handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &old_);
    const rlimit limit{bytes, old_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;
  ~FullDisk() {
    setrlimit(RLIMIT_FSIZE, &old_);
    std::signal(SIGXFSZ, old_handler_);
  }

 private:
  void (*old_handler_)(int);
  rlimit old_{};
};

}  // namespace kv
