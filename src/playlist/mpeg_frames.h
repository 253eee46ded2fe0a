// Headers of MPEG audio frames, and finding the first real one in a stretch of bytes.
//
// MPEG 1 (ISO/IEC 11172-3), MPEG 2 (ISO/IEC 13818-3) and the extension to lower rates that is known
// as 2.5; layers I to III; not the "free format", whose frames tell no length. Any thread.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace kv {

struct MpegFrame {
  // The order of the header's two bits.
  enum class Mode { kStereo, kJointStereo, kDualChannel, kMono };

  int version = 0;    // the header's two bits: 3 MPEG 1, 2 MPEG 2, 0 MPEG 2.5
  int layer = 0;      // 1 to 3
  int bitrate = 0;    // kbit/s
  int frequency = 0;  // Hz
  int samples = 0;    // of each channel
  Mode mode = Mode::kStereo;
  std::size_t length = 0;  // bytes, header included
  int second_byte = 0;     // version, layer and protection as they stand in the header
};

// The frame whose four-byte header stands at the beginning of `bytes`; nothing for anything else.
std::optional<MpegFrame> ReadMpegFrame(std::string_view bytes);

struct MpegStart {
  std::size_t offset = 0;  // of the first frame
  MpegFrame frame;
  double average_bitrate = 0;  // kbit/s over all frames seen, `bitrate` where all have the same
};

// Finds the first frame that others of its kind follow. Sync bits occur in any file by chance: at
// the beginning, padding aside, two frames in a row are proof, behind other bytes eight. Of the
// last frame the header is enough.
std::optional<MpegStart> FindMpegStart(std::string_view bytes);

// The bytes of a file of another kind, which may hold MPEG frames among others.
bool IsOtherContainer(std::string_view bytes);

}  // namespace kv
