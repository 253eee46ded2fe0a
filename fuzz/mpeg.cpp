// MPEG audio frames.
#include "playlist/mpeg_frames.h"
#include "support.h"

#include <string>

namespace kv::fuzz {
namespace {

void RequireFrame(const MpegFrame& frame) {
  Require(frame.layer >= 1 && frame.layer <= 3, "three layers");
  Require(frame.bitrate >= 8 && frame.bitrate <= 448, "8 to 448 kbit/s");
  Require(frame.frequency >= 8000 && frame.frequency <= 48000, "8000 to 48000 Hz");
  Require(frame.length >= 4 && frame.length < 8192, "a frame holds its header");
}

}  // namespace

void Try(std::string_view input) {
  if (const auto frame = ReadMpegFrame(input)) RequireFrame(*frame);
  IsOtherContainer(input);
  FindMpegStart(Stretched(input));
  const std::optional<MpegStart> start = FindMpegStart(input);
  if (!start) return;
  RequireFrame(start->frame);
  Require(start->offset < input.size() && input[start->offset] == '\xFF', "a frame begins there");
  Require(start->average_bitrate >= 8 && start->average_bitrate <= 448, "an average lies between");
  const auto again = FindMpegStart(input.substr(start->offset));
  Require(again && again->offset == 0 && again->average_bitrate == start->average_bitrate,
          "what stands before the first frame does not count");
}

}  // namespace kv::fuzz
