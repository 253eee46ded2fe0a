// Pictures in the tags of media.
#include "desktop/embedded_cover.h"

#include "support.h"

#include <cstdint>

namespace kv::fuzz {
namespace {

std::string Number(std::size_t number, unsigned bytes, unsigned bits = 8) {
  std::string text;
  for (unsigned i = bytes; i-- > 0;) {
    text += static_cast<char>((number >> (i * bits)) & ((1U << bits) - 1));
  }
  return text;
}

std::string InId3v23(const std::string& picture) {
  const std::string body = std::string("\0image/x\0\x03\0", 11) + picture;
  const std::string frame = "APIC" + Number(body.size(), 4) + std::string(2, '\0') + body;
  return std::string("ID3\x03\0\0", 6) + Number(frame.size(), 4, 7) + frame;
}

std::string InFlac(const std::string& picture) {
  const std::string block = Number(3, 4) + Number(7, 4) + "image/x" + Number(2, 4) + "of" +
                            std::string(16, '\0') + Number(picture.size(), 4) + picture;
  return "fLaC\x86" + Number(block.size(), 3) + block;
}

std::string Box(const std::string& name, const std::string& content) {
  return Number(content.size() + 8, 4) + name + content;
}

std::string InMp4(const std::string& picture) {
  std::string content = Box("data", std::string(8, '\0') + picture);
  for (const char* name : {"covr", "ilst"}) content = Box(name, content);
  content = Box("meta", std::string(4, '\0') + content);
  for (const char* name : {"udta", "moov"}) content = Box(name, content);
  return Box("ftyp", "M4A ") + content;
}

CoverPicture CoverOf(std::string_view bytes) {
  static MemoryFile file;
  CoverPicture cover = FindEmbeddedCover(file.Holding(bytes));
  Require(PictureExtension(cover.bytes) == cover.extension, "a picture begins as its name ends");
  Require(cover.bytes.empty() == cover.extension.empty(), "a picture is all there or not at all");
  Require(cover.bytes.size() < bytes.size(), "a picture is a part of the file");
  return cover;
}

}  // namespace

void Try(std::string_view input) {
  if (!input.empty()) CoverOf(input);
  if (const std::string large = Stretched(input); !large.empty()) CoverOf(large);
  const std::string picture(input);
  if (PictureExtension(picture).empty()) return;
  for (const auto& in : {InId3v23, InFlac, InMp4}) {
    Require(CoverOf(in(picture)).bytes == picture, "a picture comes out as it was put in");
  }
}

}  // namespace kv::fuzz
