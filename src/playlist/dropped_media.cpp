#include "playlist/dropped_media.h"

#include "system/ascii_text.h"
#include "system/file_address.h"

#include <cstddef>
#include <utility>

namespace kv {
namespace {

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

}  // namespace

DroppedMedia ReadUriList(std::string_view list) {
  DroppedMedia media;
  ForEachLine(list, [&media](std::string_view line) {
    if (line.front() == '#') return;
    if (!IsFileAddress(line)) {
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
