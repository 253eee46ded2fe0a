#include "shell/trace.h"

#include "system/shown_text.h"

#include <array>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <unistd.h>

namespace kv {
namespace {

constexpr std::size_t kLongestValue = 5000;  // characters; any path fits

}  // namespace

Trace::Trace() {
  const char* name = std::getenv("KESTRELVIEW_TRACE");
  if (name == nullptr || name[0] == '\0') return;
  // It tells what is played, which is nobody else's business.
  const int file = open(name, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
  if (file < 0) return;
  file_.reset(fdopen(file, "a"));
  if (!file_) close(file);
}

void Trace::Write(std::string_view event, std::string_view value) {
  if (!file_) return;
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  const std::string shown = ShownText(WithoutUserInfo(value), kLongestValue);
  std::fprintf(file_.get(), "%lld.%06ld\t%.*s\t%.*s\n", static_cast<long long>(now.tv_sec),
               now.tv_nsec / 1000, static_cast<int>(event.size()), event.data(),
               static_cast<int>(shown.size()), shown.data());
  std::fflush(file_.get());
}

void Trace::WriteSeconds(std::string_view event, double seconds) {
  if (!file_) return;
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "%.3f", seconds);
  Write(event, text.data());
}

}  // namespace kv
