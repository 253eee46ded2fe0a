#include "playlist/asx_file.h"

#include "system/ascii_text.h"
#include "system/files.h"
#include "system/paths.h"
#include "system/utf8.h"

#include <array>
#include <cstddef>
#include <fstream>

namespace kv {
namespace {

constexpr std::size_t kNone = std::string_view::npos;
constexpr std::size_t kMaxBytes = std::size_t{64} * 1024 * 1024;

// What a medium in this format begins with: the GUID of the ASF header object.
constexpr std::string_view kMediumBegin(
    "\x30\x26\xB2\x75\x8E\x66\xCF\x11\xA6\xD9\x00\xAA\x00\x62\xCE\x6C", 16);

// A metafile under its own text and, for searching, in lower case.
struct AsxText {
  std::string_view text;
  std::string lower;
};

std::string TrimSpaces(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == kNone) return {};
  return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

std::string Between(const AsxText& asx, std::string_view open, std::string_view close) {
  const std::size_t begin = asx.lower.find(open);
  const std::size_t end = begin == kNone ? kNone : asx.lower.find(close, begin + 1);
  if (end == kNone) return {};
  return TrimSpaces(asx.text.substr(begin + open.size(), end - begin - open.size()));
}

std::string QuotedAfter(const AsxText& asx, std::string_view tag) {
  const std::size_t begin = asx.lower.find(tag);
  const std::size_t open = begin == kNone ? kNone : asx.text.find('"', begin);
  const std::size_t close = open == kNone ? kNone : asx.text.find('"', open + 1);
  if (close == kNone) return {};
  return TrimSpaces(asx.text.substr(open + 1, close - open - 1));
}

// UTF-16 (RFC 2781); half a surrogate pair becomes U+FFFD, an odd last byte is left out.
std::string Utf16ToUtf8(std::string_view bytes, bool big_endian) {
  const auto unit = [&](std::size_t at) {
    const auto first = static_cast<unsigned char>(bytes[at]);
    const auto second = static_cast<unsigned char>(bytes[at + 1]);
    return static_cast<char32_t>(big_endian ? first << 8 | second : second << 8 | first);
  };
  std::string text;
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
    char32_t code = unit(at);
    if (code >= 0xD800 && code < 0xDC00 && at + 3 < bytes.size()) {
      const char32_t low = unit(at + 2);
      if (low >= 0xDC00 && low < 0xE000) {
        code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
        at += 2;
      }
    }
    AppendUtf8(text, code);
  }
  return text;
}

bool IsMedium(const std::string& path) {
  std::array<char, kMediumBegin.size()> begin{};
  std::ifstream file(path, std::ios::binary);
  file.read(begin.data(), begin.size());
  return file && std::string_view(begin.data(), begin.size()) == kMediumBegin;
}

}  // namespace

AsxInfo ParseAsx(std::string_view text) {
  if (text.starts_with("\xFF\xFE")) return ParseAsx(Utf16ToUtf8(text.substr(2), false));
  if (text.starts_with("\xFE\xFF")) return ParseAsx(Utf16ToUtf8(text.substr(2), true));
  const AsxText asx{text, LowerAscii(text)};
  AsxInfo info;
  info.title = Between(asx, "<title>", "</title>");
  info.author = Between(asx, "<author>", "</author>");
  info.copyright = Between(asx, "<copyright>", "</copyright>");
  info.moreInfo = QuotedAfter(asx, "<moreinfo href");
  info.entry = QuotedAfter(asx, "<entry>");
  return info;
}

AsxInfo ReadAsxFile(const std::string& path) {
  std::string text;
  // A medium can be large, and reading it whole would only hold up its start.
  if (!FileExists(path) || IsMedium(path) || !ReadWholeFile(path, kMaxBytes, text)) return {};
  return ParseAsx(text);
}

}  // namespace kv
