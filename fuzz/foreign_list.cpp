// Playlists of other programs. The first part is a locale.
#include "playlist/foreign_list.h"

#include "playlist/m3u_file.h"
#include "playlist/ost_list.h"
#include "support.h"

#include <algorithm>
#include <array>
#include <memory>
#include <vector>

namespace kv::fuzz {
namespace {

const std::array<LineTest, 3> kFiles = {
    [](std::string_view /*line*/) { return false; },
    [](std::string_view line) { return line.ends_with("3"); },
    [](std::string_view /*line*/) { return true; },
};

// Keeps what the C library has loaded for each page; to load it anew takes most of a run.
std::vector<std::unique_ptr<Utf8Decoder>> OpenPages() {
  std::vector<std::unique_ptr<Utf8Decoder>> pages;
  for (const CodePage* page : CodePagesFor("C")) {
    pages.push_back(std::make_unique<Utf8Decoder>(page->name));
  }
  return pages;
}

std::string InUtf16(std::string_view ascii) {
  std::string bytes = "\xFF\xFE";
  for (const char c : ascii) bytes.append(1, c).append(1, '\0');
  return bytes;
}

ForeignList TryList(std::string_view text, std::string_view locale, const LineTest& names_file) {
  ForeignList list = ReadForeignList(text, locale, names_file);
  Require(list.Found() || list.text.empty(), "what is not foreign is left alone");
  Require(IsWellFormedUtf8(list.example) && !HasControl(list.example), "an example can be shown");
  if (HasPlainLines(text, names_file)) Require(!list.line_ends, "lines that end well");
  const std::vector<std::string_view> lines = SplitM3u(list.text);
  Require(lines.size() <= static_cast<std::size_t>(kPlaylistLimit), "at most 9999 lines");
  Require(std::all_of(lines.begin(), lines.end(), IsM3uEntry), "only entries are left");
  // A name cannot have a NUL, which together with two other bytes would make UTF-16 of the list.
  if (list.complete && text.find('\0') == std::string_view::npos) {
    Require(!ReadForeignList(list.text, locale, names_file).line_ends, "lines end well now");
  }
  return list;
}

}  // namespace

void Try(std::string_view input) {
  static const auto pages = OpenPages();
  Parts parts(input);
  const std::string_view locale = parts.Next();
  const std::string_view text = parts.Rest();
  const std::string large = Stretched(text);
  for (const LineTest& names_file : kFiles) {
    TryList(text, locale, names_file);
    if (!large.empty()) TryList(large, locale, names_file);
  }
  // Nothing names a file, so that all is decoded.
  const ForeignList list = TryList(text, locale, kFiles[0]);
  const ForeignList again = ReadForeignList(list.text, locale, kFiles[0]);
  if (list.complete && IsWellFormedUtf8(list.text))
    Require(!again.Found(), "a list that was read is our own");
  const bool ascii = std::all_of(text.begin(), text.end(), [](char c) {
    return c != '\0' && static_cast<signed char>(c) > 0;
  });
  if (!ascii || text.empty()) return;
  const ForeignList wide = TryList(InUtf16(text), locale, kFiles[0]);
  Require(wide.encoding == "UTF-16LE", "UTF-16 is recognised");
  Require(wide.line_ends == list.line_ends, "UTF-16 says the same as UTF-8");
  if (list.Found()) Require(wide.text == list.text, "UTF-16 says the same as UTF-8");
}

}  // namespace kv::fuzz
