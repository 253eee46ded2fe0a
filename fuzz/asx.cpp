// ASX metafiles in every encoding.
#include "playlist/asx_file.h"
#include "support.h"

#include <algorithm>
#include <array>

namespace kv::fuzz {
namespace {

std::array<std::string, 5> Texts(const AsxInfo& info) {
  return {info.title, info.author, info.copyright, info.moreInfo, info.entry};
}

std::string InUtf16(std::string_view ascii) {
  std::string bytes = "\xFF\xFE";
  for (const char c : ascii) bytes.append(1, c).append(1, '\0');
  return bytes;
}

}  // namespace

void Try(std::string_view input) {
  const auto texts = Texts(ParseAsx(input));
  const bool wide = input.starts_with("\xFF\xFE") || input.starts_with("\xFE\xFF");
  for (const std::string& text : texts) {
    Require(text.empty() || (text.front() != ' ' && text.back() != ' '), "texts are trimmed");
    Require(wide || input.find(text) != std::string_view::npos, "texts are parts of the file");
    Require(text.size() <= input.size() * 2, "texts are no larger than the file");
  }
  const bool ascii = std::all_of(input.begin(), input.end(),
                                 [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  if (ascii) Require(Texts(ParseAsx(InUtf16(input))) == texts, "UTF-16 says the same as UTF-8");

  static MemoryFile file;
  ReadAsxFile(file.Holding(input));
  ParseAsx(Stretched(input));
}

}  // namespace kv::fuzz
