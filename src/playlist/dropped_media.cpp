#include "playlist/dropped_media.h"

#include "system/ascii_text.h"

#include <charconv>
#include <cstddef>
#include <utility>

namespace kv {
namespace {

constexpr std::string_view kFileScheme = "file:";

template <class Use>
void ForEachLine(std::string_view text, Use use) {
  // Some programs end the data by a NUL.
  text = text.substr(0, text.find('\0'));
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    const std::string_view line = TrimBlanks(text.substr(0, end));
    if (!line.empty()) use(line);
    if (end == std::string_view::npos) return;
    text.remove_prefix(end + 1);
  }
}

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

// The path of a "file:" address (RFC 8089), which may have a host; empty when it has none.
std::string PathOfFileAddress(std::string_view address) {
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

}  // namespace

DroppedMedia ReadUriList(std::string_view list) {
  DroppedMedia media;
  ForEachLine(list, [&media](std::string_view line) {
    if (line.front() == '#') return;
    if (!StartsWithIgnoringCase(line, kFileScheme)) {
      media.addresses.emplace_back(line);
    } else if (std::string path = PathOfFileAddress(line); !path.empty()) {
      media.files.push_back(std::move(path));
    }
  });
  return media;
}

DroppedMedia ReadDroppedText(std::string_view text) {
  DroppedMedia media;
  ForEachLine(text, [&media](std::string_view line) { media.addresses.emplace_back(line); });
  return media;
}

}  // namespace kv
