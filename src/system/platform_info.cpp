#include "system/platform_info.h"

#include <charconv>
#include <chrono>
#include <string_view>
#include <sys/utsname.h>

namespace kv {
namespace {

// Takes the number off the front of `text` and a "." behind it; 0 when there is none.
std::int32_t TakeNumber(std::string_view& text) {
  std::int32_t number = 0;
  const char* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  text = std::string_view(rest, static_cast<std::size_t>(end - rest));
  if (text.starts_with('.')) text.remove_prefix(1);
  return error == std::errc() ? number : 0;
}

}  // namespace

WindowsVersionInfo GetWindowsVersionInfo() {
  WindowsVersionInfo info;
  info.platform = "NT";
  utsname kernel{};
  if (uname(&kernel) != 0) return info;
  std::string_view release = kernel.release;
  const std::int32_t major_version = TakeNumber(release);
  const std::int32_t minor_version = TakeNumber(release);
  info.version = std::to_string(major_version) + "." + std::to_string(minor_version);
  info.build = TakeNumber(release);
  info.service_text = kernel.version;
  return info;
}

std::uint32_t TickCount() {
  const auto since_boot = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<std::uint32_t>(
      std::chrono::duration_cast<std::chrono::milliseconds>(since_boot).count());
}

}  // namespace kv
