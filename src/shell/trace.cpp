#include "shell/trace.h"

#include <array>
#include <cstdlib>
#include <ctime>

namespace kv {

Trace::Trace() {
  const char* name = std::getenv("KESTRELVIEW_TRACE");
  if (name != nullptr && name[0] != '\0') file_.reset(std::fopen(name, "ae"));
}

void Trace::Write(std::string_view event, std::string_view value) {
  if (!file_) return;
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  std::fprintf(file_.get(), "%lld.%06ld\t%.*s\t%.*s\n", static_cast<long long>(now.tv_sec),
               now.tv_nsec / 1000, static_cast<int>(event.size()), event.data(),
               static_cast<int>(value.size()), value.data());
  std::fflush(file_.get());
}

void Trace::WriteSeconds(std::string_view event, double seconds) {
  if (!file_) return;
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "%.3f", seconds);
  Write(event, text.data());
}

}  // namespace kv
