#include "system/text_case.h"

#include "system/utf8.h"

namespace kv {
namespace {

// The white space of Unicode.
bool IsWhiteSpace(char32_t code) {
  return (code >= 0x09 && code <= 0x0D) || code == 0x20 || code == 0x85 || code == 0xA0 ||
         code == 0x1680 || (code >= 0x2000 && code <= 0x200A) || code == 0x2028 || code == 0x2029 ||
         code == 0x202F || code == 0x205F || code == 0x3000;
}

}  // namespace

std::string ProperCase(std::string_view text, const TextPlatform& platform) {
  std::string result;
  result.reserve(text.size());
  bool in_word = false;
  std::size_t lower_from = 0;  // where the part that waits for lower case begins
  const auto append_lower = [&](std::size_t end) {
    result += platform.Lower(text.substr(lower_from, end - lower_from));
  };
  for (std::size_t at = 0; at < text.size();) {
    const Utf8Char next = DecodeUtf8(text, at);
    const bool white = next.valid && IsWhiteSpace(next.code);
    if (!white && !in_word) {
      append_lower(at);
      result += platform.Upper(text.substr(at, next.size));
      lower_from = at + next.size;
    }
    in_word = !white;
    at += next.size;
  }
  append_lower(text.size());
  return result;
}

}  // namespace kv
