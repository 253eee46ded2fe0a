#include "playlist/foreign_list.h"

#include "playlist/m3u_file.h"
#include "system/paths.h"
#include "system/shown_text.h"
#include "system/translation.h"
#include "system/utf8.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace kv {
namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::size_t kNoEnd = std::string_view::npos;
// So many names without a file prove no code page; a list on a slow disk is not to be waited for.
constexpr std::size_t kProbes = 64;

// Where a LF or CR stands that is not part of a CR LF.
std::size_t FindBareEnd(std::string_view text) {
  for (std::size_t at = text.find_first_of(kLineEnd); at != kNoEnd;
       at = text.find_first_of(kLineEnd, at)) {
    if (!text.substr(at).starts_with(kLineEnd)) return at;
    at += kLineEnd.size();
  }
  return kNoEnd;
}

bool IsUtf8(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const Utf8Char next = DecodeUtf8(text, at);
    if (!next.valid) return false;
    at += next.size;
  }
  return true;
}

// "UTF-16LE" or "UTF-16BE", or empty. The byte order mark alone could begin a name.
std::string Utf16NameOf(std::string_view text) {
  if (text.find('\0') == kNoEnd) return {};
  return text.starts_with("\xFF\xFE") ? "UTF-16LE" : text.starts_with("\xFE\xFF") ? "UTF-16BE" : "";
}

bool NamesFile(std::string_view line, const LineTest& names_file) {
  return IsM3uEntry(line) && line.size() < PATH_MAX && names_file(line);
}

// The entries of a list whose lines may end in any way; at most as many as a list has room for.
class EntrySplitter {
 public:
  EntrySplitter(std::string_view text, const LineTest& names_file)
      : text_(text), names_file_(names_file) {}

  std::vector<std::string_view> Split(bool& other_ends, bool& complete) {
    while (complete_ && at_ < text_.size()) {
      const std::size_t end = std::min(text_.find(kLineEnd, at_), text_.size());
      const std::string_view line = text_.substr(at_, end - at_);
      if (FindBareEnd(line) == kNoEnd || IsName(line)) {
        Add(line);
      } else {
        other_ends = true;
        AddParts(line);
      }
      at_ = end + kLineEnd.size();
    }
    complete = complete_;
    return std::move(entries_);
  }

 private:
  // Bounded, as every answer costs a look at the disk.
  bool IsName(std::string_view line) {
    return asked_++ < std::size_t{kPlaylistLimit} && NamesFile(line, names_file_);
  }

  void AddParts(std::string_view line) {
    while (complete_ && !line.empty()) {
      const std::size_t end = std::min(line.find_first_of(kLineEnd), line.size());
      Add(line.substr(0, end));
      line.remove_prefix(std::min(end + 1, line.size()));
    }
  }

  void Add(std::string_view line) {
    if (!IsM3uEntry(line)) return;
    if (entries_.size() + 1 == std::size_t{kPlaylistLimit}) {
      const std::string_view rest =
          text_.substr(static_cast<std::size_t>(line.data() - text_.data()));
      const std::size_t end = std::min(rest.find_last_not_of(kLineEnd) + 1, rest.size());
      complete_ = end <= line.size();
      line = rest.substr(0, std::max(end, line.size()));
    }
    entries_.push_back(line);
  }

  std::string_view text_;
  const LineTest& names_file_;
  std::size_t at_ = 0;
  std::size_t asked_ = 0;
  bool complete_ = true;
  std::vector<std::string_view> entries_;
};

// A line that is not UTF-8.
struct ByteLine {
  std::size_t number;
  std::string_view bytes;
};

bool DecodesAll(const Utf8Decoder& decoder, const std::vector<ByteLine>& lines) {
  return std::all_of(lines.begin(), lines.end(),
                     [&](const ByteLine& line) { return decoder.Decode(line.bytes).has_value(); });
}

bool LeadsToFile(const Utf8Decoder& decoder, const std::vector<ByteLine>& lines,
                 const LineTest& names_file) {
  const std::size_t count = std::min(lines.size(), kProbes);
  return std::any_of(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(count),
                     [&](const ByteLine& line) {
                       if (line.bytes.size() >= PATH_MAX) return false;
                       const std::optional<std::string> text = decoder.Decode(line.bytes);
                       return text && NamesFile(*text, names_file);
                     });
}

const CodePage* PageOf(const std::vector<ByteLine>& lines, std::string_view locale,
                       const LineTest& names_file) {
  const std::vector<const CodePage*> pages = CodePagesFor(locale);
  for (const CodePage* const page : pages) {
    if (LeadsToFile(Utf8Decoder(page->name), lines, names_file)) return page;
  }
  for (const CodePage* const page : pages) {
    if (DecodesAll(Utf8Decoder(page->name), lines)) return page;
  }
  return pages.front();
}

std::string ExampleOf(std::string_view line) {
  constexpr std::size_t kLongestExample = 60;
  const std::size_t separator = line.find_last_of("/\\");
  return ShownText(separator == kNoEnd ? line : line.substr(separator + 1), kLongestExample);
}

// Decodes what is to be decoded of `entries`, into `decoded`, which the lines then point into.
void DecodeEntries(std::vector<std::string_view>& entries, std::vector<std::string>& decoded,
                   std::string_view locale, const LineTest& names_file, ForeignList& list) {
  bool bytes_are_names = false;
  std::vector<ByteLine> lines;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (IsUtf8(entries[i])) continue;
    if (NamesFile(entries[i], names_file)) {
      bytes_are_names = true;
    } else {
      lines.push_back({i, entries[i]});
    }
  }
  if (lines.empty()) return;
  const CodePage* const page = PageOf(lines, locale, names_file);
  const Utf8Decoder decoder(page->name);
  decoded.reserve(lines.size());
  for (const ByteLine& line : lines) {
    std::optional<std::string> text = decoder.Decode(line.bytes);
    if (!text || (bytes_are_names && !NamesFile(*text, names_file))) continue;
    if (list.encoding.empty()) {
      list.encoding = page->name;
      list.script = page->script;
      list.example = ExampleOf(*text);
    }
    decoded.push_back(std::move(*text));
    entries[line.number] = decoded.back();
  }
}

}  // namespace

bool HasPlainLines(std::string_view text, const LineTest& names_file) {
  if (!Utf16NameOf(text).empty()) return false;
  const std::vector<std::string_view> lines = SplitM3u(text);
  return std::all_of(lines.begin(), lines.end(), [&](std::string_view line) {
    return FindBareEnd(line) == kNoEnd || NamesFile(line, names_file);
  });
}

ForeignList ReadForeignList(std::string_view text, std::string_view locale,
                            const LineTest& names_file) {
  ForeignList list;
  std::string from_utf16;
  if (const std::string utf16 = Utf16NameOf(text); !utf16.empty()) {
    constexpr std::size_t kMark = 2;
    if (std::optional<std::string> whole = Utf8Decoder(utf16).Decode(text.substr(kMark))) {
      from_utf16 = std::move(*whole);
      text = from_utf16;
      list.encoding = utf16;
    }
  }
  std::vector<std::string_view> entries =
      EntrySplitter(text, names_file).Split(list.line_ends, list.complete);
  std::vector<std::string> decoded;
  if (list.encoding.empty()) {
    DecodeEntries(entries, decoded, locale, names_file, list);
  } else if (!entries.empty()) {
    list.example = ExampleOf(entries.front());
  }
  if (!list.Found()) return list;
  for (const std::string_view entry : entries) {
    if (!list.text.empty()) list.text.append(kLineEnd);
    list.text.append(entry);
  }
  return list;
}

MessageBoxRequest QuestionAbout(const ForeignList& list, std::string_view path) {
  constexpr std::size_t kLongestName = 100;
  std::string text = Fill(Tr("\"%1\" is another kind of playlist:"),
                          ShownText(FileNameOfPath(path), kLongestName)) +
                     '\n';
  // One short line each, as a box is narrow.
  const auto add = [&text](const std::string& line) { text += '\n' + line; };
  if (list.line_ends) add(Tr("Line ends: as on Unix"));
  if (!list.encoding.empty()) {
    const std::string script = list.script.empty() ? "Unicode" : Tr(list.script.c_str());
    add(Fill(Tr("Encoding: %1 (%2)"), list.encoding, script));
    if (!list.example.empty()) add(Fill(Tr("Example: %1"), list.example));
  }
  add("");
  add(Tr("Do you want to read it as a list of lines?"));
  add(Tr("Yes also marks the list as changed,\nNo reads the file as it stands."));
  return {text, BoxIcon::kQuestion, BoxButtons::kYesNoCancel, Tr("Other kind of playlist")};
}

}  // namespace kv
