// M3U texts: lines, what they mean, and the way back.
#include "playlist/m3u_file.h"
#include "support.h"
#include "support/fake_text_platform.h"
#include "system/ascii_text.h"

#include <vector>

namespace kv::fuzz {
namespace {

// Every file is there but those with a "\" in their name.
bool Exists(const std::string& path) {
  return path.find('\\') == std::string::npos;
}

std::vector<std::string> Entries(std::string_view text, const std::string& playlist) {
  std::vector<std::string> entries;
  for (const std::string_view line : SplitM3u(text)) {
    if (IsM3uEntry(line)) entries.push_back(GetPlaylistFile(line, playlist, Exists));
  }
  return entries;
}

// What a line can hold at all: an entry that means itself.
bool CanBeWritten(const std::string& entry, const std::string& playlist) {
  return IsM3uEntry(entry) && entry.find("\r\n") == std::string::npos &&
         GetPlaylistFile(entry, playlist, Exists) == entry;
}

void TryAs(std::string_view text, const std::string& playlist, const TextPlatform& platform) {
  OSTList list(platform);
  // Where letter case does not tell files apart, a cut entry takes that of the list's folder.
  const bool any_case = !playlist.starts_with('/');
  const auto told = [&](const std::string& entry) { return any_case ? LowerAscii(entry) : entry; };
  std::vector<std::string> written;
  for (const std::string& entry : Entries(text, playlist)) {
    if (!CanBeWritten(entry, playlist)) continue;
    list.add(entry);
    written.push_back(told(entry));
  }
  Require(list.Count() <= kPlaylistLimit, "a list has at most 9999 entries");
  for (const bool full : {false, true}) {
    const std::string saved = M3uText(list, playlist, full, platform);
    std::vector<std::string> read = Entries(saved, playlist);
    for (std::string& entry : read) entry = told(entry);
    Require(read == written, "a saved list reads back as itself");
  }
}

}  // namespace

void Try(std::string_view input) {
  static const FakeTextPlatform platform;
  const std::vector<std::string_view> lines = SplitM3u(input);
  Require(lines.size() <= static_cast<std::size_t>(kPlaylistLimit), "at most 9999 lines");
  std::size_t bytes = lines.empty() ? 0 : (lines.size() - 1) * 2;
  for (const std::string_view line : lines) bytes += line.size();
  Require(bytes == input.size(), "lines and their ends are the whole text");

  for (const char* playlist : {"/home/me/Music/list.m3u", "C:\\Music\\list.m3u", "/l.m3u",
                               "\\\\server\\share\\list.m3u"}) {
    TryAs(input, playlist, platform);
  }
  if (const std::string text = Stretched(input); !text.empty()) TryAs(text, "/m/l.m3u", platform);

  constexpr std::string_view kBase = "http://Host/dir/";
  for (const std::string_view line : lines) {
    const std::string once = WithBaseUrl(line, kBase);
    Require(WithBaseUrl(once, kBase) == once, "a base address is put in front once");
  }
}

}  // namespace kv::fuzz
