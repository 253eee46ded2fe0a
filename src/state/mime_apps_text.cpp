#include "state/mime_apps_text.h"

#include "system/ascii_text.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace kv {
namespace {

constexpr std::string_view kGroup = "[Default Applications]";

struct Span {
  std::size_t begin = 0;
  std::size_t end = 0;
};

// Where things stand in the text.
struct Found {
  std::optional<Span> line;          // of the type, its line end included
  Span value;                        // behind "=" and its blanks
  std::optional<std::size_t> place;  // for a new line: behind the group's last one with something
};

Found Find(std::string_view text, std::string_view type) {
  Found found;
  bool in_group = false;
  bool first_group = true;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size() - 1) + 1;
    const std::string_view line = TrimBlanks(text.substr(at, end - at));
    if (line.starts_with('[')) {
      if (in_group) first_group = false;
      in_group = line == kGroup;
    }
    const std::size_t equals = line.starts_with('#') ? line.npos : line.find('=');
    if (in_group && equals != line.npos && TrimBlanks(line.substr(0, equals)) == type) {
      const std::string_view value = TrimBlanks(line.substr(equals + 1));
      const auto begin = static_cast<std::size_t>(
          (value.empty() ? line.data() + equals + 1 : value.data()) - text.data());
      found.line = Span{at, end};
      found.value = {begin, begin + value.size()};
    }
    if (in_group && first_group && !line.empty()) found.place = end;
    at = end;
  }
  return found;
}

std::string LineEnd(std::string_view text) {
  const std::size_t first = text.find('\n');
  return first != text.npos && first > 0 && text[first - 1] == '\r' ? "\r\n" : "\n";
}

}  // namespace

std::optional<std::string_view> DefaultPrograms(std::string_view text, std::string_view type) {
  const Found found = Find(text, type);
  if (!found.line) return {};
  return text.substr(found.value.begin, found.value.end - found.value.begin);
}

std::string_view FirstProgram(std::string_view programs) {
  while (!programs.empty()) {
    const std::size_t end = std::min(programs.find(';'), programs.size());
    const std::string_view id = TrimBlanks(programs.substr(0, end));
    if (!id.empty()) return id;
    programs.remove_prefix(std::min(end + 1, programs.size()));
  }
  return {};
}

void PutProgramFirst(std::string& text, std::string_view type, std::string_view id) {
  const Found found = Find(text, type);
  if (found.line) {
    const bool alone = found.value.begin == found.value.end;
    text.insert(found.value.begin, std::string(id) + (alone ? "" : ";"));
    return;
  }
  const std::string end = LineEnd(text);
  std::string added = std::string(type) + '=' + std::string(id) + end;
  const std::size_t place = found.place.value_or(text.size());
  if (!found.place) {
    added = std::string(kGroup) + end + added;
    if (!text.empty()) added = end + added;
  }
  if (place > 0 && text[place - 1] != '\n') added = end + added;
  text.insert(place, added);
}

bool RemoveFirstProgram(std::string& text, std::string_view type, std::string_view id) {
  const Found found = Find(text, type);
  if (!found.line) return false;
  const std::string_view programs =
      std::string_view(text).substr(found.value.begin, found.value.end - found.value.begin);
  const std::string_view first = FirstProgram(programs);
  if (first.empty() || first != id) return false;
  const auto begin = static_cast<std::size_t>(first.data() - text.data());
  std::string_view rest = std::string_view(text).substr(begin + first.size());
  rest = rest.substr(0, found.value.end - begin - first.size());
  const std::size_t taken = first.size() + rest.find(';') + 1;
  if (FirstProgram(rest).empty()) {
    std::string without = text;
    without.erase(found.line->begin, found.line->end - found.line->begin);
    // An earlier line of the type must not come into force.
    if (!Find(without, type).line) {
      text = std::move(without);
      return true;
    }
  }
  text.erase(begin, taken);
  return true;
}

}  // namespace kv
