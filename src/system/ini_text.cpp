#include "system/ini_text.h"

#include "system/ascii_text.h"
#include "system/ini_file.h"

namespace kv {
namespace {

constexpr std::size_t kNone = std::string_view::npos;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

enum class LineKind { kBlank, kSection, kPair, kOther };  // other: comments and what says nothing

struct Line {
  std::size_t begin = 0;  // of the line in the text
  std::size_t end = 0;    // behind its line end
  LineKind kind = LineKind::kBlank;
  std::string_view name;   // of the section or key, trimmed
  std::string_view value;  // of the pair, trimmed
};

// Walks the lines of a text.
class LineReader {
 public:
  explicit LineReader(std::string_view text)
      : text_(text), at_(text.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0) {}

  bool Next(Line& line) {
    if (at_ >= text_.size()) return false;
    line = Line();
    line.begin = at_;
    const std::size_t feed = text_.find('\n', at_);
    line.end = at_ = feed == kNone ? text_.size() : feed + 1;
    Classify(TrimBlanks(text_.substr(line.begin, line.end - line.begin)), line);
    return true;
  }

 private:
  static void Classify(std::string_view content, Line& line) {
    if (content.empty()) return;
    line.kind = LineKind::kOther;
    if (content.front() == ';') return;
    if (content.front() == '[') {
      const std::size_t close = content.find(']');
      if (close == kNone) return;
      line.kind = LineKind::kSection;
      line.name = TrimBlanks(content.substr(1, close - 1));
    } else if (const std::size_t equals = content.find('='); equals != kNone) {
      line.kind = LineKind::kPair;
      line.name = TrimBlanks(content.substr(0, equals));
      line.value = TrimBlanks(content.substr(equals + 1));
    }
  }

  std::string_view text_;
  std::size_t at_;
};

// Where a section and a key in it stand. All offsets are into the text.
struct Place {
  bool has_section = false;
  std::size_t section_begin = 0;  // of the header's line
  std::size_t section_end = 0;    // of the next header's line, or the end of the text
  std::size_t insert_at = 0;      // behind the section's last line that is not blank
  bool has_key = false;
  Line key;
};

Place Find(std::string_view text, std::string_view section, std::string_view key) {
  section = TrimBlanks(section);
  key = TrimBlanks(key);
  Place place;
  LineReader reader(text);
  for (Line line; reader.Next(line);) {
    if (line.kind == LineKind::kSection) {
      if (place.has_section) break;
      if (!EqualsIgnoringCase(line.name, section)) continue;
      place.has_section = true;
      place.section_begin = line.begin;
    }
    if (!place.has_section) continue;
    place.section_end = line.end;
    if (line.kind == LineKind::kBlank) continue;
    place.insert_at = line.end;
    if (!place.has_key && line.kind == LineKind::kPair && EqualsIgnoringCase(line.name, key)) {
      place.has_key = true;
      place.key = line;
    }
  }
  return place;
}

std::string_view LineEndOf(std::string_view text) {
  const std::size_t feed = text.find('\n');
  if (feed == kNone) return kIniLineEnd;
  return feed > 0 && text[feed - 1] == '\r' ? "\r\n" : "\n";
}

// Puts `line` in at `position`, which is the end of a line or of the text.
void InsertLine(std::string& text, std::size_t position, const std::string& line) {
  const std::string_view line_end = LineEndOf(text);
  std::string inserted;
  if (position > 0 && text[position - 1] != '\n' && text != kByteOrderMark) inserted = line_end;
  inserted.append(line).append(line_end);
  text.insert(position, inserted);
}

bool IsQuoted(std::string_view value) {
  return value.size() >= 2 && value.front() == value.back() &&
         (value.front() == '"' || value.front() == '\'');
}

}  // namespace

std::optional<std::string_view> FindIniValue(std::string_view text, std::string_view section,
                                             std::string_view key) {
  const Place place = Find(text, section, key);
  if (!place.has_key) return {};
  return place.key.value;
}

std::string_view WithoutQuotes(std::string_view value) {
  return IsQuoted(value) ? value.substr(1, value.size() - 2) : value;
}

std::string IniLine(std::string_view key, std::string_view value) {
  const bool needs_quotes = TrimBlanks(value).size() != value.size() || IsQuoted(value);
  std::string line(key);
  line += '=';
  if (needs_quotes) line += '"';
  line += value;
  if (needs_quotes) line += '"';
  return line;
}

bool CanStandInIni(std::string_view section, std::string_view key, std::string_view value) {
  constexpr std::string_view kBreaks("\r\n\0", 3);
  for (const std::string_view part : {section, key, value}) {
    if (part.find_first_of(kBreaks) != kNone) return false;
  }
  key = TrimBlanks(key);
  return !key.empty() && key.front() != '[' && key.front() != ';' && key.find('=') == kNone &&
         section.find(']') == kNone;
}

void SetIniValue(std::string& text, std::string_view section, std::string_view key,
                 std::string_view value) {
  Place place = Find(text, section, key);
  if (place.has_key) {
    // The key stays as it is written, and so does the line's end.
    const std::size_t begin = place.key.begin;
    const std::string_view line = std::string_view(text).substr(begin, place.key.end - begin);
    const std::size_t size = line.find_last_not_of("\r\n") + 1;
    const std::string new_line = IniLine(line.substr(0, line.find('=')), value);
    text.replace(begin, size, new_line);
    return;
  }
  if (!place.has_section) {
    AddIniSection(text, section);
    place.insert_at = text.size();
  }
  InsertLine(text, place.insert_at, IniLine(TrimBlanks(key), value));
}

void AddIniSection(std::string& text, std::string_view section) {
  if (Find(text, section, {}).has_section) return;
  InsertLine(text, text.size(), "[" + std::string(TrimBlanks(section)) + "]");
}

bool RemoveIniValue(std::string& text, std::string_view section, std::string_view key) {
  const Place place = Find(text, section, key);
  if (place.has_key) text.erase(place.key.begin, place.key.end - place.key.begin);
  return place.has_key;
}

bool RemoveIniSection(std::string& text, std::string_view section) {
  const Place place = Find(text, section, {});
  if (place.has_section) {
    text.erase(place.section_begin, place.section_end - place.section_begin);
  }
  return place.has_section;
}

std::vector<std::string_view> IniSections(std::string_view text) {
  std::vector<std::string_view> names;
  LineReader reader(text);
  for (Line line; reader.Next(line);) {
    if (line.kind == LineKind::kSection) names.push_back(line.name);
  }
  return names;
}

}  // namespace kv
