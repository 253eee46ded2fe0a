#include "system/file_address.h"

#include "system/ascii_text.h"

#include <charconv>
#include <cstddef>

namespace kv {
namespace {

constexpr std::string_view kFileScheme = "file:";

std::string DecodePercent(std::string_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  for (std::size_t at = 0; at < text.size(); ++at) {
    unsigned char byte = 0;
    const char* const digits = text.data() + at + 1;
    if (text[at] == '%' && at + 2 < text.size() &&
        std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
      bytes += static_cast<char>(byte);
      at += 2;
    } else {
      bytes += text[at];
    }
  }
  return bytes;
}

bool IsUnreserved(char c) {
  constexpr std::string_view kMarks = "-._~/";
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
         kMarks.find(c) != std::string_view::npos;
}

}  // namespace

std::string FileAddress(std::string_view path) {
  constexpr std::string_view kHex = "0123456789ABCDEF";
  std::string address = "file://";
  for (const char c : path) {
    if (IsUnreserved(c)) {
      address += c;
      continue;
    }
    const auto byte = static_cast<unsigned char>(c);
    address += '%';
    address += kHex[byte / 16U];
    address += kHex[byte % 16U];
  }
  return address;
}

bool IsFileAddress(std::string_view text) {
  return StartsWithIgnoringCase(text, kFileScheme);
}

std::string PathOfFileAddress(std::string_view address) {
  if (!IsFileAddress(address)) return {};
  address.remove_prefix(kFileScheme.size());
  if (address.substr(0, 2) == "//") {
    const std::size_t path = address.find('/', 2);
    if (path == std::string_view::npos) return {};
    address.remove_prefix(path);
  }
  std::string path = DecodePercent(address);
  const bool usable = path.substr(0, 1) == "/" && path.find('\0') == std::string::npos;
  return usable ? path : std::string();
}

}  // namespace kv
