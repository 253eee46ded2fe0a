#include "system/ascii_text.h"

#include <algorithm>

namespace kv {
namespace {

bool SameLetter(char a, char b) {
  return LowerAscii(a) == LowerAscii(b);
}

}  // namespace

char LowerAscii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string LowerAscii(std::string_view text) {
  std::string result(text);
  for (char& c : result) c = LowerAscii(c);
  return result;
}

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), SameLetter);
}

bool StartsWithIgnoringCase(std::string_view text, std::string_view prefix) {
  return EqualsIgnoringCase(text.substr(0, prefix.size()), prefix);
}

bool ContainsIgnoringCase(std::string_view text, std::string_view needle) {
  return needle.empty() || std::search(text.begin(), text.end(), needle.begin(), needle.end(),
                                       SameLetter) != text.end();
}

std::string_view TrimBlanks(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

}  // namespace kv
