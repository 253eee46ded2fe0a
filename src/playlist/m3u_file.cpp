#include "playlist/m3u_file.h"

#include "system/ascii_text.h"
#include "system/name_tests.h"
#include "system/paths.h"
#include "system/utf8.h"

#include <algorithm>
#include <cstddef>

namespace kv {
namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool SecondCharacterIsColon(std::string_view line) {
  if (line.empty()) return false;
  const std::size_t second = DecodeUtf8(line, 0).size;
  return second < line.size() && line[second] == ':';
}

// For lines whose meaning no file changes.
bool NeverAsked(const std::string& /*path*/) {
  return true;
}

// True for a line that would be taken for a remark ("#:x.mp3"), or lose its beginning as a byte
// order mark. A "\" in front, which reading takes off, keeps it.
bool NeedsCover(std::string_view line, bool first) {
  return !IsM3uEntry(line) || (first && line.starts_with(kByteOrderMark));
}

// True when `rest`, what follows `folder` in an entry, alone on a line means the entry again,
// whatever files there are.
bool ReadsBack(std::string_view rest, const std::string& folder, const std::string& playlist_file) {
  if (!IsM3uEntry(rest) || rest.find(kLineEnd) != std::string_view::npos) return false;
  if (rest.starts_with(kByteOrderMark)) return false;  // skipped at the start of a file
  if (IsNativePath(folder) && rest.find('\\') != std::string_view::npos) return false;
  return GetPlaylistFile(rest, playlist_file, NeverAsked) == folder + std::string(rest);
}

}  // namespace

std::vector<std::string_view> SplitM3u(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty() || !lines.empty()) {
    const std::size_t end = lines.size() + 1 < std::size_t{kPlaylistLimit} ? text.find(kLineEnd)
                                                                           : std::string_view::npos;
    lines.push_back(text.substr(0, end));
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + kLineEnd.size());
  }
  return lines;
}

bool IsM3uEntry(std::string_view line) {
  const std::size_t first = line.find_first_not_of(' ');
  return first != std::string_view::npos && line[first] != '#';
}

std::string WithBaseUrl(std::string_view line, std::string_view base_url) {
  std::string result(StartsWithIgnoringCase(line, base_url) ? std::string_view() : base_url);
  return result.append(line);
}

std::string GetPlaylistFile(std::string_view line, std::string_view PlaylistFile,
                            const FileTest& exists) {
  if (IsUrl(line) || IsNativePath(line) || line.starts_with("\\\\")) return std::string(line);
  if (line.starts_with('\\')) line.remove_prefix(1);
  if (SecondCharacterIsColon(line)) return std::string(line);
  const std::string folder = FolderOfPath(PlaylistFile);
  std::string path = folder + std::string(line);
  if (!IsNativePath(folder) || line.find('\\') == std::string_view::npos || exists(path)) {
    return path;
  }
  // Written by a system where "\" separates.
  std::string translated = path;
  std::replace(translated.begin() + static_cast<std::ptrdiff_t>(folder.size()), translated.end(),
               '\\', '/');
  return exists(translated) ? translated : path;
}

std::string M3uText(const OSTList& list, const std::string& playlist_file, bool full,
                    const TextPlatform& text) {
  const std::string folder = FolderOfPath(playlist_file);
  const bool native = IsNativePath(folder);
  const std::string folder_lower = text.Lower(folder);
  // Native folders that differ in case are two.
  const auto lies_in_folder = [&](const std::string& item) {
    return native ? item.starts_with(folder)
                  : text.Lower(std::string_view(item).substr(0, folder.size())) == folder_lower;
  };
  std::string result;
  for (int index = 1; index <= list.Count(); ++index) {
    const std::string& item = list.Item(index);
    std::string_view line = item;
    if (!full && lies_in_folder(item)) {
      const std::string_view rest = line.substr(std::min(folder.size(), line.size()));
      if (ReadsBack(rest, folder, playlist_file)) line = rest;
    }
    if (NeedsCover(line, result.empty()) &&
        GetPlaylistFile("\\" + item, playlist_file, NeverAsked) == item) {
      result += '\\';
    }
    result.append(line).append(kLineEnd);
  }
  return result;
}

}  // namespace kv
