#include "playlist/id3v2_texts.h"

#include "playlist/media_bytes.h"

#include <taglib/id3v2synchdata.h>
#include <taglib/tbytevectorstream.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace kv {
namespace {

constexpr long kMaxDecodedTag = 16L * 1024 * 1024;
constexpr long kMaxTextFrame = 1024L * 1024;
constexpr long kMaxCompressedFrame = 16L * 1024;
constexpr int kMostFrames = 4096;

constexpr unsigned kUnsynchronised = 0x80;
constexpr unsigned kExtendedHeader = 0x40;  // in 2.2 the whole tag is compressed, in no known way
constexpr unsigned kFooter = 0x10;

// The frames by their names from 2.3 on and in 2.2.
struct WantedFrame {
  std::string_view id;
  std::string_view old_id;
};
constexpr std::array kWantedFrames = {WantedFrame{"TIT2", "TT2"}, WantedFrame{"TPE1", "TP1"},
                                      WantedFrame{"TALB", "TAL"}, WantedFrame{"TCON", "TCO"}};

struct Frame {
  std::string id;
  long size = 0;  // of the body
  long body = 0;  // where it begins
  char flags[2] = {0, 0};
};

long Number(std::string_view bytes, long base) {
  long number = 0;
  for (const char c : bytes) number = number * base + static_cast<unsigned char>(c);
  return number;
}

std::string FourBytes(long number, unsigned bits) {
  std::string bytes;
  for (unsigned i = 4; i-- > 0;) {
    bytes +=
        static_cast<char>((static_cast<unsigned long>(number) >> (i * bits)) & ((1UL << bits) - 1));
  }
  return bytes;
}

bool IsFrameId(std::string_view id) {
  // Some write the three letters of 2.2 into a later tag and fill up with a NUL.
  if (id.size() == 4 && id[3] == '\0') id.remove_suffix(1);
  return id.size() >= 3 && std::all_of(id.begin(), id.end(), [](char c) {
           return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
         });
}

// The frames of one tag, one after the other.
class FrameWalk {
 public:
  FrameWalk(TagLib::IOStream& stream, long at, long end, int version)
      : stream_(stream), at_(at), end_(end), version_(version) {}

  std::optional<Frame> Next() {
    const bool old = version_ == 2;
    const long header_bytes = old ? 6 : 10;
    const std::size_t id_bytes = old ? 3 : 4;
    if (++count_ > kMostFrames || end_ - at_ < header_bytes) return {};
    const std::string bytes = ReadBytes(stream_, at_, static_cast<std::size_t>(header_bytes));
    const std::string_view header = bytes;
    if (bytes.size() != static_cast<std::size_t>(header_bytes) ||
        !IsFrameId(header.substr(0, id_bytes))) {
      return {};  // padding, or damage
    }
    Frame frame;
    frame.id = header.substr(0, id_bytes);
    frame.body = at_ + header_bytes;
    frame.size = old ? Number(header.substr(3, 3), 0x100) : Size(header.substr(4, 4), frame.body);
    if (!old) std::copy_n(header.begin() + 8, 2, frame.flags);
    if (frame.size > end_ - frame.body) return {};
    at_ = frame.body + frame.size;
    return frame;
  }

 private:
  // From 2.4 on a byte of a size holds seven bits; not all programs have kept to it.
  long Size(std::string_view bytes, long body) {
    const long plain = Number(bytes, 0x100);
    if (version_ == 3) return plain;
    const bool fits_seven =
        std::all_of(bytes.begin(), bytes.end(), [](char c) { return (c & 0x80) == 0; });
    const long sparse = Number(bytes, 0x80);
    if (!fits_seven) return plain;
    return sparse > 0x7F && !LeadsOn(body + sparse) && LeadsOn(body + plain) ? plain : sparse;
  }

  bool LeadsOn(long at) {
    if (at == end_) return true;
    if (at > end_) return false;
    const std::string id = ReadBytes(stream_, at, 4);
    return id.starts_with('\0') || IsFrameId(id);
  }

  TagLib::IOStream& stream_;
  long at_;
  long end_;
  int version_;
  int count_ = 0;
};

bool TooLarge(const Frame& frame, int version) {
  const unsigned compressed = version == 4 ? 0x08U : 0x80U;
  const bool is_compressed =
      version > 2 && (static_cast<unsigned char>(frame.flags[1]) & compressed) != 0;
  return frame.size > (is_compressed ? kMaxCompressedFrame : kMaxTextFrame);
}

// The wanted frames behind `at`, with the headers of `new_version`; nothing without any frame.
std::optional<std::string> WantedFrames(TagLib::IOStream& stream, long at, long end, int version) {
  FrameWalk walk(stream, at, end, version);
  std::array<bool, kWantedFrames.size()> found{};
  bool any = false;
  std::string result;
  while (const std::optional<Frame> frame = walk.Next()) {
    any = true;
    for (std::size_t i = 0; i < kWantedFrames.size(); ++i) {
      const WantedFrame& wanted = kWantedFrames[i];
      const bool named = frame->id == wanted.id || frame->id == wanted.old_id ||
                         frame->id == std::string(wanted.old_id) + '\0';
      if (!named || found[i] || frame->size == 0 || TooLarge(*frame, version)) continue;
      found[i] = true;
      result.append(wanted.id).append(FourBytes(frame->size, version == 4 ? 7 : 8));
      result.append(frame->flags, 2);
      result += ReadBytes(stream, frame->body, static_cast<std::size_t>(frame->size));
    }
  }
  return any ? std::optional<std::string>(result) : std::nullopt;
}

long BytesOfExtendedHeader(TagLib::IOStream& stream, long at, int version) {
  const std::string size = ReadBytes(stream, at, 4);
  return version == 4 ? Number(size, 0x80) : 4 + Number(size, 0x100);
}

}  // namespace

std::string TextsOfId3v2(TagLib::IOStream& stream) {
  const std::optional<Id3v2Header> tag = FindId3v2(stream);
  if (!tag) return {};
  const bool extended = (tag->flags & kExtendedHeader) != 0;
  if (tag->version == 2 && extended) return {};
  const bool footer = tag->version == 4 && (tag->flags & kFooter) != 0;
  long at = tag->body;
  long end = std::min(tag->end - (footer ? kId3v2HeaderBytes : 0), stream.length());

  // Before 2.4 the whole tag is unsynchronised, headers and all; from then on each frame.
  TagLib::ByteVectorStream decoded{TagLib::ByteVector()};
  TagLib::IOStream* source = &stream;
  const bool unsynchronised = (tag->flags & kUnsynchronised) != 0;
  if (unsynchronised && tag->version < 4) {
    const std::string raw =
        ReadBytes(stream, at, static_cast<std::size_t>(std::min(end - at, kMaxDecodedTag)));
    *decoded.data() = TagLib::ID3v2::SynchData::decode(
        TagLib::ByteVector(raw.data(), static_cast<unsigned>(raw.size())));
    source = &decoded;
    at = 0;
    end = decoded.length();
  }
  if (extended) at += BytesOfExtendedHeader(*source, at, tag->version);

  const std::optional<std::string> frames = WantedFrames(*source, at, end, tag->version);
  if (!frames) return {};
  const bool version4 = tag->version == 4;
  std::string small = "ID3";
  small += version4 ? '\4' : '\3';
  small += '\0';
  small += version4 && unsynchronised ? '\x80' : '\0';
  return small + FourBytes(static_cast<long>(frames->size()), 7) + *frames;
}

}  // namespace kv
