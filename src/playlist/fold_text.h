// Letter case for searching and sorting, with a short way for texts that are all ASCII: of those a
// list has a hundred thousand, and a key stroke folds them all. Any thread.
#pragma once

#include "system/ascii_text.h"
#include "system/text_platform.h"

#include <string>
#include <string_view>

namespace kv {

// Looks at every byte, which in one sweep is quicker than to stop at the first that decides.
inline bool IsAscii(std::string_view text) {
  unsigned seen = 0;
  for (const char c : text) seen |= static_cast<unsigned char>(c);
  return seen < 0x80;
}

// Turns A-Z, and no other byte, to lower case in place.
inline void FoldAscii(std::string& text) {
  for (char& c : text) c = static_cast<char>(c + (c >= 'A' && c <= 'Z' ? 'a' - 'A' : 0));
}

// The same as TextPlatform::Lower.
inline std::string LowerText(std::string_view text, const TextPlatform& platform) {
  return IsAscii(text) ? LowerAscii(text) : platform.Lower(text);
}

}  // namespace kv
