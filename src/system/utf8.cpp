#include "system/utf8.h"

namespace kv {
namespace {

unsigned ByteAt(std::string_view text, std::size_t position) {
  return static_cast<unsigned char>(text[position]);
}

bool IsContinuation(unsigned byte) {
  return (byte & 0xC0U) == 0x80U;
}

}  // namespace

Utf8Char DecodeUtf8(std::string_view text, std::size_t position) {
  const unsigned lead = ByteAt(text, position);
  if (lead < 0x80) return {lead, 1, true};
  const Utf8Char bare{lead, 1, false};

  std::size_t size = 0;
  char32_t code = 0;
  char32_t least = 0;  // anything below has a shorter form
  if ((lead & 0xE0U) == 0xC0U) {
    size = 2, code = lead & 0x1FU, least = 0x80;
  } else if ((lead & 0xF0U) == 0xE0U) {
    size = 3, code = lead & 0x0FU, least = 0x800;
  } else if ((lead & 0xF8U) == 0xF0U) {
    size = 4, code = lead & 0x07U, least = 0x10000;
  } else {
    return bare;
  }
  if (text.size() - position < size) return bare;
  for (std::size_t i = 1; i < size; ++i) {
    const unsigned byte = ByteAt(text, position + i);
    if (!IsContinuation(byte)) return bare;
    code = (code << 6U) | (byte & 0x3FU);
  }
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  if (code < least || code > 0x10FFFF || surrogate) return bare;
  return {code, size, true};
}

void AppendUtf8(std::string& text, char32_t code) {
  if (code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) code = 0xFFFD;
  const auto put = [&text](char32_t byte) { text += static_cast<char>(byte); };
  if (code < 0x80) {
    put(code);
  } else if (code < 0x800) {
    put(0xC0U | (code >> 6U));
    put(0x80U | (code & 0x3FU));
  } else if (code < 0x10000) {
    put(0xE0U | (code >> 12U));
    put(0x80U | ((code >> 6U) & 0x3FU));
    put(0x80U | (code & 0x3FU));
  } else {
    put(0xF0U | (code >> 18U));
    put(0x80U | ((code >> 12U) & 0x3FU));
    put(0x80U | ((code >> 6U) & 0x3FU));
    put(0x80U | (code & 0x3FU));
  }
}

std::string_view Utf8Prefix(std::string_view text, std::size_t max_bytes) {
  if (text.size() <= max_bytes) return text;
  // A character is cut when it begins at most three bytes before the limit and reaches beyond it.
  for (std::size_t back = 1; back <= 3 && back <= max_bytes; ++back) {
    if (DecodeUtf8(text, max_bytes - back).size > back) return text.substr(0, max_bytes - back);
  }
  return text.substr(0, max_bytes);
}

std::string_view LastCharacters(std::string_view text, std::size_t count) {
  std::size_t begin = text.size();
  for (; count > 0 && begin > 0; --count) {
    std::size_t back = 1;
    while (back < 4 && back < begin && IsContinuation(ByteAt(text, begin - back))) ++back;
    const Utf8Char last = DecodeUtf8(text, begin - back);
    begin -= last.size == back ? back : 1;  // stray continuation bytes count one by one
  }
  return text.substr(begin);
}

}  // namespace kv
