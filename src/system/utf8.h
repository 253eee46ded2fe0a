// Walking UTF-8 texts that may hold anything: a file name is bytes and need not be UTF-8 at all.
//
// A byte that begins no well-formed character (RFC 3629: shortest form, no surrogates, at most
// U+10FFFF) counts as a character of its own. Any thread.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kv {

struct Utf8Char {
  char32_t code = 0;     // the code point; the bare byte when not `valid`
  std::size_t size = 1;  // bytes it takes, 1 to 4
  bool valid = false;
};

// The character that begins at `position`, which must lie inside `text`.
Utf8Char DecodeUtf8(std::string_view text, std::size_t position);

// Appends the code point in UTF-8; a value that is none appends U+FFFD.
void AppendUtf8(std::string& text, char32_t code);

// The longest beginning of `text` of at most `max_bytes` bytes that cuts no character.
std::string_view Utf8Prefix(std::string_view text, std::size_t max_bytes);

// The last `count` characters of `text`; all of it when it has fewer.
std::string_view LastCharacters(std::string_view text, std::size_t count);

}  // namespace kv
