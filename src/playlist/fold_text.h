// Letter case for searching and sorting, with a short way for texts that are all ASCII: of those a
// list has a hundred thousand, and a key stroke folds them all. Any thread.
#pragma once

#include "system/ascii_text.h"
#include "system/text_platform.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace kv {

inline bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// The same as TextPlatform::Lower.
inline std::string LowerText(std::string_view text, const TextPlatform& platform) {
  return IsAscii(text) ? LowerAscii(text) : platform.Lower(text);
}

}  // namespace kv
