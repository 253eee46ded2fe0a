#include "system/shown_text.h"

#include "system/ascii_text.h"
#include "system/utf8.h"

namespace kv {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

// Controls of ASCII and Latin-1, and the separators of lines and paragraphs.
bool IsBreak(char32_t code) {
  return code < 0x20 || (code >= 0x7F && code <= 0x9F) || code == 0x2028 || code == 0x2029;
}

// Embeddings, overrides and isolates: left open, they would turn the rest of the line around.
bool TurnsDirection(char32_t code) {
  return (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

}  // namespace

std::string ShownText(std::string_view text, std::size_t max_characters) {
  constexpr std::string_view kDots = "...";
  std::string result;
  std::size_t count = 0;
  std::size_t room_for_dots = 0;  // bytes of `result` that stay when it is cut
  bool after_break = false;
  text = TrimBlanks(text);
  for (std::size_t at = 0; at < text.size();) {
    const Utf8Char next = DecodeUtf8(text, at);
    at += next.size;
    const bool is_break = next.valid && IsBreak(next.code);
    if (result.empty() && (is_break || next.code == U' ')) continue;
    if ((is_break && after_break) || (next.valid && TurnsDirection(next.code))) continue;
    after_break = is_break;
    if (count == max_characters) {
      result.resize(room_for_dots);
      return result.append(kDots.substr(0, max_characters));
    }
    if (count + kDots.size() <= max_characters) room_for_dots = result.size();
    AppendUtf8(result, is_break ? U' ' : next.valid ? next.code : kReplacement);
    ++count;
  }
  return std::string(TrimBlanks(result));
}

std::string WithoutUserInfo(std::string_view text) {
  constexpr std::string_view kMark = "://";
  std::string result;
  std::size_t from = 0;
  for (std::size_t mark = text.find(kMark); mark != std::string_view::npos;
       mark = text.find(kMark, from)) {
    const std::size_t begin = mark + kMark.size();
    result += text.substr(from, begin - from);
    const std::string_view authority =
        text.substr(begin, text.find_first_of("/?# \t\r\n\"<>", begin) - begin);
    const std::size_t at_sign = authority.rfind('@');
    from = at_sign == std::string_view::npos ? begin : begin + at_sign + 1;
  }
  return result.append(text.substr(from));
}

std::string ShownName(std::string_view name) {
  constexpr std::size_t kLongestName = 500;
  return ShownText(WithoutUserInfo(name), kLongestName);
}

}  // namespace kv
