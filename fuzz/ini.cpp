// INI texts: section, key, value and the text, in this order.
#include "support.h"
#include "system/ini_file.h"
#include "system/ini_text.h"

#include <algorithm>

namespace kv::fuzz {
namespace {

std::vector<std::string_view> Lines(std::string_view text) {
  std::vector<std::string_view> lines;
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    while (line.ends_with('\r')) line.remove_suffix(1);
    lines.push_back(line);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
  return lines;
}

// How many lines of `old_text` lie between what both texts begin and what they end with.
std::size_t LinesLost(std::string_view old_text, std::string_view new_text) {
  const auto old_lines = Lines(old_text);
  const auto new_lines = Lines(new_text);
  const std::size_t most = std::min(old_lines.size(), new_lines.size());
  std::size_t front = 0;
  while (front < most && old_lines[front] == new_lines[front]) ++front;
  std::size_t back = 0;
  while (front + back < most && *(old_lines.rbegin() + static_cast<std::ptrdiff_t>(back)) ==
                                    *(new_lines.rbegin() + static_cast<std::ptrdiff_t>(back))) {
    ++back;
  }
  return old_lines.size() - front - back;
}

void TrySet(const std::string& text, std::string_view section, std::string_view key,
            std::string_view value) {
  const bool had = FindIniValue(text, section, key).has_value();
  std::string changed = text;
  SetIniValue(changed, section, key, value);
  const auto found = FindIniValue(changed, section, key);
  Require(found && WithoutQuotes(*found) == value, "a value that was set is found");
  Require(LinesLost(text, changed) <= (had ? 1U : 0U), "a set leaves all other lines");
  std::string again = changed;
  SetIniValue(again, section, key, value);
  Require(again == changed, "setting a value again changes nothing");
  std::string removed = changed;
  Require(RemoveIniValue(removed, section, key), "a value that is there can be removed");
  Require(LinesLost(removed, changed) == 0, "a removal takes one line");
}

}  // namespace

void Try(std::string_view input) {
  Parts parts(input);
  const std::string_view section = parts.Next();
  const std::string_view key = parts.Next();
  const std::string_view value = parts.Next();
  const std::string text(parts.Rest());

  if (CanStandInIni(section, key, value)) {
    TrySet(text, section, key, value);
    std::string with_section = text;
    AddIniSection(with_section, section);
    Require(RemoveIniSection(with_section, section), "a section that was added can be removed");
    std::string line = "[" + std::string(section) + "]\n" + IniLine(key, value);
    const auto found = FindIniValue(line, section, key);
    Require(found && WithoutQuotes(*found) == value, "a line that was written is read");
  }
  for (const std::string_view name : IniSections(text)) {
    std::string without = text;
    Require(RemoveIniSection(without, name), "every section can be removed");
    Require(without.size() < text.size(), "a removal makes the text smaller");
  }

  static MemoryFile file;
  const std::string read = ReadIniString(file.Holding(text), section, key, "");
  Require(read.size() < kIniValueBuffer, "a value fits the buffer");
  FindIniValue(Stretched(text), section, key);
}

}  // namespace kv::fuzz
