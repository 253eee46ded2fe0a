// The texts of ID3v2 tags.
#include "playlist/id3v2_texts.h"
#include "support.h"

#include <taglib/tbytevectorstream.h>

namespace kv::fuzz {
namespace {

constexpr std::size_t kHeader = 10;

std::string Texts(std::string_view bytes) {
  TagLib::ByteVectorStream stream(
      TagLib::ByteVector(bytes.data(), static_cast<unsigned>(bytes.size())));
  return TextsOfId3v2(stream);
}

}  // namespace

void Try(std::string_view input) {
  const std::string small = Texts(input);
  Texts(Stretched(input));
  if (small.empty()) return;
  Require(small.size() >= kHeader && small.starts_with("ID3"), "a tag has a header");
  Require(small[3] == 3 || small[3] == 4, "a tag of 2.3 or 2.4");
  std::size_t size = 0;
  for (std::size_t i = 6; i < kHeader; ++i) {
    size = size << 7U | static_cast<unsigned char>(small[i]);
  }
  Require(small.size() == kHeader + size, "a tag tells its size");
  Require(size <= input.size() + 4 * kHeader, "a tag is no larger than it was");
  if (size > 0) Require(Texts(small) == small, "the small tag has the same texts");
}

}  // namespace kv::fuzz
