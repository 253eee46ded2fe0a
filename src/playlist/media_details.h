// What the details columns of the list show for one medium, read from its file.
//
// Free of rows and windows, so that a thread may read ahead while the interface lives. Reading only
// ever looks: no file is changed. Any thread.
#pragma once

#include "playlist/tag_readers.h"
#include "system/text_platform.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace kv {

// The most characters of a value that a file gives; tags can hold books.
inline constexpr std::size_t kMaxDetailCharacters = 1024;

// Texts as the cells show them, one line each: no control characters, at most kMaxDetailCharacters.
struct MediaDetails {
  std::string time;  // "00:03:25", MPEG audio only, as are `bitrate`, `mode` and `frequency`
  std::string file_size;
  std::string artist;
  std::string album;
  std::string title;  // of the tag, or made from the file's name where the tag has none
  std::string genre;
  std::string bitrate;
  std::string mode;
  std::string frequency;
  std::string extension;  // without the dot, as it stands in the path

  friend bool operator==(const MediaDetails&, const MediaDetails&) = default;
};

// Reads one file or, for what is none, gives size 0 and the extension. A cell that has no value is
// empty. `text` is asked for letter case alone, which is safe on any thread; the user's decimal
// separator may not be asked for there and comes along.
MediaDetails ReadMediaDetails(const std::string& path, const MediaReaders& readers,
                              const TextPlatform& text, std::string_view decimal_separator);

// The length of a file as "00:03:25", or "??:??:??" when it is no MPEG audio.
std::string GetFileTime(const std::string& path, const MediaReaders& readers);

}  // namespace kv
