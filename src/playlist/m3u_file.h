// The text of M3U playlists: one path or URL on each line, lines ended by CR LF.
//
// Nothing here reads or writes files. Texts are UTF-8 or any other bytes, which stand for
// themselves. Any thread.
#pragma once

#include "playlist/ost_list.h"
#include "system/text_platform.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

// The lines of `text`, which they point into. Only CR LF separates. There are at most 9999; the
// last of so many holds all the rest. An empty text has no line.
std::vector<std::string_view> SplitM3u(std::string_view text);

// False for a line of nothing but blanks, and for one that begins, blanks aside, with "#".
bool IsM3uEntry(std::string_view line);

// A line of a playlist on a server: with `base_url`, the playlist's folder, in front, unless the
// line begins with it already, any case.
std::string WithBaseUrl(std::string_view line, std::string_view base_url);

// Answers whether a path names a plain file.
using FileTest = std::function<bool(const std::string&)>;

// The path or URL that a line of the playlist `PlaylistFile` means. URLs, "\\server\...", "C:..."
// and "/..." stand as they are; all else, less one "\" at its start, lies in the playlist's folder.
// Where that is a native folder and a line with "\" names no file, but one with "/" does, it is
// that file; only then is `exists` asked.
std::string GetPlaylistFile(std::string_view line, std::string_view PlaylistFile,
                            const FileTest& exists);

// The list as the text of `playlist_file`. Entries in the playlist's folder or below are written
// relative to it, unless `full`, or unless they would then read back as something else.
std::string M3uText(const OSTList& list, const std::string& playlist_file, bool full,
                    const TextPlatform& text);

}  // namespace kv
