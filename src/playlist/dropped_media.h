// What was dropped on the playlist, read from the formats in which desktops hand it over.
//
// A file keeps the bytes of its name, whatever its encoding. Any thread.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kv {

struct DroppedMedia {
  std::vector<std::string> files;      // local paths
  std::vector<std::string> addresses;  // everything else, as it stands

  bool Empty() const { return files.empty() && addresses.empty(); }
};

// A list of addresses, one a line (RFC 2483). "file:" addresses of any host become paths, percent
// escapes decoded; one that names no path is left out.
DroppedMedia ReadUriList(std::string_view list);

// Plain text: each line that is not blank is an address or path.
DroppedMedia ReadDroppedText(std::string_view text);

}  // namespace kv
