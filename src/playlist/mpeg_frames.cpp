#include "playlist/mpeg_frames.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace kv {
namespace {

constexpr std::size_t kHeaderBytes = 4;
constexpr int kMpeg1 = 3;
constexpr int kReserved = 1;  // of the version's values

constexpr int kProofAtStart = 2;
constexpr int kProofBehindOthers = 8;

// kbit/s by the header's index; 0 is the free format, 15 is forbidden.
using Bitrates = std::array<int, 15>;
constexpr std::array<Bitrates, 3> kBitratesMpeg1 = {
    Bitrates{0, 32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448},
    Bitrates{0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384},
    Bitrates{0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320}};
constexpr std::array<Bitrates, 3> kBitratesMpeg2 = {
    Bitrates{0, 32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256},
    Bitrates{0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160},
    Bitrates{0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160}};
constexpr std::array kFrequenciesMpeg1 = {44100, 48000, 32000};

unsigned ByteAt(std::string_view bytes, std::size_t position) {
  return static_cast<unsigned char>(bytes[position]);
}

// What all frames of one stream have in common.
bool SameKind(const MpegFrame& a, const MpegFrame& b) {
  return a.version == b.version && a.layer == b.layer && a.frequency == b.frequency;
}

// The frames from `offset` on, as far as they follow each other.
struct Chain {
  int count = 0;
  MpegFrame first;
  double kilobits = 0;
  double seconds = 0;
  bool constant = true;
};

Chain FollowFrames(std::string_view bytes, std::size_t offset) {
  Chain chain;
  while (offset < bytes.size()) {
    const std::optional<MpegFrame> frame = ReadMpegFrame(bytes.substr(offset));
    if (!frame || (chain.count > 0 && !SameKind(chain.first, *frame))) break;
    if (chain.count == 0) chain.first = *frame;
    chain.constant = chain.constant && frame->bitrate == chain.first.bitrate;
    const double seconds = static_cast<double>(frame->samples) / frame->frequency;
    chain.kilobits += frame->bitrate * seconds;
    chain.seconds += seconds;
    ++chain.count;
    offset += frame->length;
  }
  return chain;
}

struct Signature {
  std::size_t offset;
  std::string_view bytes;
};
using namespace std::string_view_literals;
constexpr std::array kOtherContainers = {
    Signature{0, "RIFF"sv},              // WAV, AVI
    Signature{0, "RF64"sv},              //
    Signature{0, "FORM"sv},              // AIFF
    Signature{0, "fLaC"sv},              //
    Signature{0, "OggS"sv},              //
    Signature{0, "MThd"sv},              // MIDI
    Signature{0, "FLV\1"sv},             //
    Signature{0, ".RMF"sv},              // RealMedia
    Signature{0, "MAC "sv},              // Monkey's Audio
    Signature{0, "wvpk"sv},              // WavPack
    Signature{0, "\x1A\x45\xDF\xA3"sv},  // Matroska
    Signature{0, "\x30\x26\xB2\x75"sv},  // ASF
    Signature{0, "\0\0\1\xBA"sv},        // MPEG program stream
    Signature{0, "\0\0\1\xB3"sv},        // MPEG video
    Signature{0, "PK\3\4"sv},            // ZIP
    Signature{0, "%PDF"sv},              //
    Signature{4, "ftyp"sv},              // MP4
    Signature{4, "moov"sv},              //
    Signature{4, "mdat"sv},              //
};

}  // namespace

std::optional<MpegFrame> ReadMpegFrame(std::string_view bytes) {
  if (bytes.size() < kHeaderBytes) return {};
  const unsigned second = ByteAt(bytes, 1);
  const unsigned third = ByteAt(bytes, 2);
  const unsigned fourth = ByteAt(bytes, 3);
  if (ByteAt(bytes, 0) != 0xFF || (second & 0xE0U) != 0xE0U) return {};

  const auto version = static_cast<int>((second >> 3U) & 3U);
  const auto layer_bits = static_cast<int>((second >> 1U) & 3U);
  const std::size_t bitrate_index = third >> 4U;
  const std::size_t frequency_index = (third >> 2U) & 3U;
  const bool reserved_emphasis = (fourth & 3U) == 2U;
  if (version == kReserved || layer_bits == 0 || bitrate_index == 0 || bitrate_index == 15 ||
      frequency_index == 3 || reserved_emphasis) {
    return {};
  }

  MpegFrame frame;
  frame.version = version;
  frame.layer = 4 - layer_bits;
  const auto layer_index = static_cast<std::size_t>(frame.layer - 1);
  const bool mpeg1 = version == kMpeg1;
  frame.bitrate = (mpeg1 ? kBitratesMpeg1 : kBitratesMpeg2)[layer_index][bitrate_index];
  frame.frequency = kFrequenciesMpeg1[frequency_index] / (mpeg1 ? 1 : version == 2 ? 2 : 4);
  frame.samples = frame.layer == 1 ? 384 : frame.layer == 3 && !mpeg1 ? 576 : 1152;
  frame.mode = static_cast<MpegFrame::Mode>(fourth >> 6U);
  frame.second_byte = static_cast<int>(second);
  // Whole slots, of four bytes in layer I and of one byte in the others, and one for padding.
  const std::size_t slot = frame.layer == 1 ? 4 : 1;
  const auto bytes_a_second = static_cast<std::size_t>(frame.bitrate * 1000 / 8);
  const std::size_t slots = bytes_a_second * static_cast<std::size_t>(frame.samples) /
                            static_cast<std::size_t>(frame.frequency) / slot;
  const std::size_t padding = (third & 2U) != 0 ? 1 : 0;
  frame.length = (slots + padding) * slot;
  return frame;
}

std::optional<MpegStart> FindMpegStart(std::string_view bytes) {
  const std::size_t padding = std::min(bytes.find_first_not_of('\0'), bytes.size());
  for (std::size_t at = bytes.find('\xFF'); at != std::string_view::npos;
       at = bytes.find('\xFF', at + 1)) {
    const Chain chain = FollowFrames(bytes, at);
    if (chain.count < (at <= padding ? kProofAtStart : kProofBehindOthers)) continue;
    return MpegStart{at, chain.first,
                     chain.constant ? chain.first.bitrate : chain.kilobits / chain.seconds};
  }
  return {};
}

bool IsOtherContainer(std::string_view bytes) {
  return std::any_of(kOtherContainers.begin(), kOtherContainers.end(), [&](const Signature& s) {
    return bytes.size() > s.offset && bytes.substr(s.offset).starts_with(s.bytes);
  });
}

}  // namespace kv
