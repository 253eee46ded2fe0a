#include "playlist/media_bytes.h"

#include <algorithm>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace kv {
namespace {

constexpr long kApeFooterBytes = 32;
constexpr int kMostTags = 16;  // one behind the other
constexpr unsigned kFooterFlag = 0x10;

unsigned ByteAt(std::string_view bytes, std::size_t position) {
  return static_cast<unsigned char>(bytes[position]);
}

// Header or footer; they differ in the first three letters alone.
std::optional<Id3v2Header> ParseId3v2(std::string_view bytes, std::string_view letters) {
  if (bytes.size() < kId3v2HeaderBytes || !bytes.starts_with(letters)) return {};
  Id3v2Header header;
  header.version = static_cast<int>(ByteAt(bytes, 3));
  header.flags = ByteAt(bytes, 5);
  if (header.version < 2 || header.version > 4 || ByteAt(bytes, 4) == 0xFF) return {};
  long size = 0;
  for (std::size_t i = 6; i < kId3v2HeaderBytes; ++i) {
    if (ByteAt(bytes, i) >= 0x80) return {};
    size = size * 0x80 + static_cast<long>(ByteAt(bytes, i));
  }
  const bool footer = header.version == 4 && (header.flags & kFooterFlag) != 0;
  header.body = kId3v2HeaderBytes;
  header.end = header.body + size + (footer ? kId3v2HeaderBytes : 0);
  return header;
}

Id3v2Header MovedTo(Id3v2Header header, long begin) {
  header.begin = begin;
  header.body += begin;
  header.end += begin;
  return header;
}

// The tag whose footer ends at `end`.
std::optional<Id3v2Header> ReadId3v2Footer(TagLib::IOStream& stream, long end) {
  if (end < 2 * kId3v2HeaderBytes) return {};
  const long at = end - kId3v2HeaderBytes;
  const auto footer = ParseId3v2(ReadBytes(stream, at, kId3v2HeaderBytes), "3DI");
  if (!footer || footer->end > end) return {};
  return MovedTo(*footer, end - footer->end);
}

// Where the APE tag that ends at `end` begins; `end` itself without one.
long BeginOfApe(TagLib::IOStream& stream, long end) {
  if (end < kApeFooterBytes) return end;
  const std::string footer = ReadBytes(stream, end - kApeFooterBytes, kApeFooterBytes);
  if (!std::string_view(footer).starts_with("APETAGEX")) return end;
  long size = 0;
  for (std::size_t i = 4; i-- > 0;) size = size * 0x100 + static_cast<long>(ByteAt(footer, 12 + i));
  if ((ByteAt(footer, 23) & 0x80U) != 0) size += kApeFooterBytes;  // it has a header too
  return size >= kApeFooterBytes && size <= end ? end - size : end;
}

}  // namespace

std::unique_ptr<TagLib::FileStream> OpenMedia(const std::string& path) {
  if (path.find('\0') != std::string::npos) return nullptr;
  const int file = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
  if (file < 0) return nullptr;
  struct stat status {};
  if (fstat(file, &status) != 0 || !S_ISREG(status.st_mode)) {
    close(file);
    return nullptr;
  }
  return std::make_unique<TagLib::FileStream>(file, true);
}

std::string ReadBytes(TagLib::IOStream& stream, long offset, std::size_t size) {
  stream.seek(offset);
  const TagLib::ByteVector bytes = stream.readBlock(size);
  return {bytes.data(), bytes.size()};
}

std::optional<long> FindId3v1(TagLib::IOStream& stream) {
  const long at = stream.length() - kId3v1Bytes;
  if (at < 0) return {};
  // The footer of an APE tag can lie so that its name looks like one.
  const long before = std::min(at, 3L);
  const std::string bytes = ReadBytes(stream, at - before, 8);
  const std::string_view here = std::string_view(bytes).substr(static_cast<std::size_t>(before));
  if (!here.starts_with("TAG") || bytes == "APETAGEX") return {};
  return at;
}

std::optional<Id3v2Header> ReadId3v2Header(TagLib::IOStream& stream, long offset) {
  const auto header = ParseId3v2(ReadBytes(stream, offset, kId3v2HeaderBytes), "ID3");
  if (!header) return {};
  return MovedTo(*header, offset);
}

std::optional<Id3v2Header> FindId3v2(TagLib::IOStream& stream) {
  if (const auto front = ReadId3v2Header(stream, 0)) return front;
  return ReadId3v2Footer(stream, FindId3v1(stream).value_or(stream.length()));
}

SoundRange FindSound(TagLib::IOStream& stream) {
  SoundRange range{0, FindId3v1(stream).value_or(stream.length())};
  for (int i = 0; i < kMostTags; ++i) {
    const auto tag = ReadId3v2Header(stream, range.begin);
    if (!tag) break;
    // A tag that claims more than there is has a wrong size: the sound is sought behind its header.
    const bool wrong = tag->end >= range.end;
    range.begin = wrong ? tag->body : tag->end;
    if (wrong) break;
  }
  for (int i = 0; i < kMostTags; ++i) {
    const long before = range.end;
    range.end = BeginOfApe(stream, range.end);
    if (const auto tag = ReadId3v2Footer(stream, range.end)) range.end = tag->begin;
    if (range.end == before) break;
  }
  range.end = std::max(range.begin, range.end);
  return range;
}

}  // namespace kv
