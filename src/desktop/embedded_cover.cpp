#include "desktop/embedded_cover.h"

#include "system/file_descriptor.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>

namespace kv {
namespace {

constexpr std::uint64_t kMostBytes = std::uint64_t{16} * 1024 * 1024;
constexpr int kMostParts = 4096;  // frames, blocks or boxes that are walked
constexpr unsigned kFrontCover = 3;

// A plain file, read at any place.
class Bytes {
 public:
  explicit Bytes(const std::string& path)
      : file_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {
    struct stat info {};
    if (file_.IsOpen() && fstat(file_.Number(), &info) == 0 && S_ISREG(info.st_mode)) {
      size_ = static_cast<std::uint64_t>(info.st_size);
    }
  }
  std::uint64_t Size() const { return size_; }

  // Exactly `count` bytes from `at`, or none.
  std::string Read(std::uint64_t at, std::uint64_t count) const {
    if (count > kMostBytes || at > size_ || count > size_ - at) return {};
    std::string bytes(count, '\0');
    if (lseek(file_.Number(), static_cast<off_t>(at), SEEK_SET) < 0) return {};
    const std::ptrdiff_t got = file_.Read(bytes.data(), bytes.size());
    return got == static_cast<std::ptrdiff_t>(count) ? bytes : std::string();
  }

 private:
  FileDescriptor file_;
  std::uint64_t size_ = 0;
};

// Big endian; in an ID3v2 size each byte holds seven bits.
std::uint64_t Number(std::string_view bytes, unsigned bits = 8) {
  std::uint64_t number = 0;
  for (const char c : bytes) number = (number << bits) | static_cast<unsigned char>(c);
  return number;
}

// The best picture so far.
class Best {
 public:
  void Offer(unsigned kind, std::string picture) {
    if (front_ || (!best_.bytes.empty() && kind != kFrontCover)) return;
    std::string extension = PictureExtension(picture);
    if (extension.empty()) return;
    front_ = kind == kFrontCover;
    best_ = {std::move(picture), std::move(extension)};
  }
  bool Done() const { return front_; }
  CoverPicture Take() { return std::move(best_); }

 private:
  CoverPicture best_;
  bool front_ = false;
};

// ---- ID3v2

// Undoes the stuffing that keeps sound out of a tag.
std::string Synchronised(std::string_view bytes) {
  std::string result;
  result.reserve(bytes.size());
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    result += bytes[i];
    if (bytes[i] == '\xFF' && i + 1 < bytes.size() && bytes[i + 1] == '\0') ++i;
  }
  return result;
}

// Body of APIC (ID3v2.3 and 2.4) or PIC: encoding, kind of file, kind of picture, description,
// picture.
void OfferFrame(std::string_view body, bool old, Best& best) {
  if (body.empty()) return;
  const bool wide = body[0] == '\1' || body[0] == '\2';  // UTF-16: two NULs end a text
  std::size_t at = old ? 4 : body.find('\0', 1);
  if (at == std::string_view::npos) return;
  if (!old) ++at;
  if (at >= body.size()) return;
  const auto kind = static_cast<unsigned char>(body[at++]);
  if (wide) {
    while (at + 1 < body.size() && (body[at] != '\0' || body[at + 1] != '\0')) at += 2;
    at += 2;
  } else {
    at = body.find('\0', at);
    if (at == std::string_view::npos) return;
    ++at;
  }
  if (at < body.size()) best.Offer(kind, std::string(body.substr(at)));
}

void ReadId3v2(const Bytes& file, Best& best) {
  const std::string header = file.Read(0, 10);
  if (header.size() != 10 || header.substr(0, 3) != "ID3") return;
  const unsigned version = static_cast<unsigned char>(header[3]);
  const auto flags = static_cast<unsigned char>(header[5]);
  const bool old = version == 2;
  if (version < 2 || version > 4 || (old && (flags & 0x40U) != 0)) return;
  const std::uint64_t size = std::min(Number(std::string_view(header).substr(6), 7), kMostBytes);
  std::string tag = file.Read(10, std::min(size, file.Size() - 10));
  const bool stuffed = (flags & 0x80U) != 0;
  if (stuffed && version < 4) tag = Synchronised(tag);
  const std::string_view all = tag;

  std::size_t at = 0;
  if ((flags & 0x40U) != 0 && all.size() >= 4) {
    at = version == 4 ? Number(all.substr(0, 4), 7) : 4 + Number(all.substr(0, 4));
  }
  const std::size_t head = old ? 6 : 10;
  for (int i = 0; i < kMostParts && !best.Done(); ++i) {
    if (at > all.size() || all.size() - at < head) return;
    const std::string_view name = all.substr(at, old ? 3 : 4);
    const std::uint64_t length = old            ? Number(all.substr(at + 3, 3))
                                 : version == 4 ? Number(all.substr(at + 4, 4), 7)
                                                : Number(all.substr(at + 4, 4));
    const unsigned frame_flags = old ? 0 : static_cast<unsigned char>(all[at + 9]);
    at += head;
    if (name[0] == '\0' || length > all.size() - at) return;
    std::string_view body = all.substr(at, length);
    at += length;
    if (name != (old ? "PIC" : "APIC")) continue;
    // Compressed or encrypted.
    if (!old && (frame_flags & (version == 4 ? 0x0CU : 0xC0U)) != 0) continue;
    // A length of the data in front.
    if (version == 4 && (frame_flags & 0x01U) != 0) body.remove_prefix(std::min(body.size(), 4UL));
    const bool frame_stuffed = version == 4 && (stuffed || (frame_flags & 0x02U) != 0);
    const std::string decoded = frame_stuffed ? Synchronised(body) : std::string();
    OfferFrame(frame_stuffed ? std::string_view(decoded) : body, old, best);
  }
}

// ---- FLAC (RFC 9639)

// The size that an ID3v2 tag in front of the stream takes.
std::uint64_t BytesOfId3v2(const Bytes& file) {
  const std::string header = file.Read(0, 10);
  if (header.size() != 10 || header.substr(0, 3) != "ID3") return 0;
  return 10 + Number(std::string_view(header).substr(6), 7);
}

void OfferFlacPicture(std::string_view block, Best& best) {
  // Kind, then type and description with their lengths, four numbers, the picture with its own.
  std::uint64_t at = 4;
  for (int text = 0; text < 2; ++text) {
    if (block.size() < at + 4) return;
    at += 4 + Number(block.substr(at, 4));
  }
  at += 16;
  if (block.size() < at + 4) return;
  const std::uint64_t length = Number(block.substr(at, 4));
  if (length > block.size() - at - 4) return;
  best.Offer(static_cast<unsigned>(Number(block.substr(0, 4))),
             std::string(block.substr(at + 4, length)));
}

void ReadFlac(const Bytes& file, Best& best) {
  constexpr unsigned kPicture = 6;
  std::uint64_t at = BytesOfId3v2(file);
  if (file.Read(at, 4) != "fLaC") return;
  at += 4;
  for (int i = 0; i < kMostParts && !best.Done(); ++i) {
    const std::string header = file.Read(at, 4);
    if (header.size() != 4) return;
    const auto first = static_cast<unsigned char>(header[0]);
    const std::uint64_t length = Number(std::string_view(header).substr(1));
    if ((first & 0x7FU) == kPicture) OfferFlacPicture(file.Read(at + 4, length), best);
    if ((first & 0x80U) != 0) return;
    at += 4 + length;
  }
}

// ---- MP4 (ISO/IEC 14496-12)

struct Box {
  std::uint64_t begin = 0;  // of the content
  std::uint64_t end = 0;
};

// The first box of this name between two places; an empty one when there is none.
Box FindBox(const Bytes& file, Box in, std::string_view name) {
  std::uint64_t at = in.begin;
  for (int i = 0; i < kMostParts && at < in.end && in.end - at >= 8; ++i) {
    const std::string header = file.Read(at, 8);
    if (header.size() != 8) return {};
    std::uint64_t head = 8;
    std::uint64_t length = Number(std::string_view(header).substr(0, 4));
    if (length == 1) {
      const std::string large = file.Read(at + 8, 8);
      if (large.size() != 8) return {};
      length = Number(large);
      head = 16;
    } else if (length == 0) {
      length = in.end - at;
    }
    if (length < head || length > in.end - at) return {};
    if (std::string_view(header).substr(4) == name) return {at + head, at + length};
    at += length;
  }
  return {};
}

void ReadMp4(const Bytes& file, Best& best) {
  if (file.Read(4, 4) != "ftyp") return;
  Box box{0, file.Size()};
  for (const std::string_view name : {"moov", "udta", "meta", "ilst", "covr", "data"}) {
    box = FindBox(file, box, name);
    if (box.end == 0) return;
    if (name == "meta") box.begin += 4;  // its version
  }
  constexpr std::uint64_t kTypeAndLocale = 8;
  if (box.end - box.begin <= kTypeAndLocale) return;
  best.Offer(kFrontCover,
             file.Read(box.begin + kTypeAndLocale, box.end - box.begin - kTypeAndLocale));
}

}  // namespace

std::string PictureExtension(const std::string& bytes) {
  struct Kind {
    std::string_view begin;
    std::string_view extension;
  };
  constexpr std::array kKinds = {Kind{"\xFF\xD8\xFF", ".jpg"}, Kind{"\x89PNG\r\n\x1A\n", ".png"},
                                 Kind{"GIF8", ".gif"}, Kind{"RIFF", ".webp"}};
  for (const Kind& kind : kKinds) {
    if (!bytes.starts_with(kind.begin)) continue;
    const std::string_view head = std::string_view(bytes).substr(0, 12);
    if (kind.extension == ".webp" && head.find("WEBP", 8) != 8) continue;
    return std::string(kind.extension);
  }
  return {};
}

CoverPicture FindEmbeddedCover(const std::string& path) {
  const Bytes file(path);
  if (file.Size() < 16) return {};
  Best best;
  ReadId3v2(file, best);
  if (!best.Done()) ReadFlac(file, best);
  if (!best.Done()) ReadMp4(file, best);
  return best.Take();
}

}  // namespace kv
