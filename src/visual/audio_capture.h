// Where the level meter gets its sound from: what this player is sounding, as 8-bit mono.
//
// A sample is an unsigned byte, 128 is silence, 0 and 255 are full scale. The sound is collected by
// a thread of the capture's own and fetched by the meter whenever it makes a frame, so that a slow
// painter loses frames and never holds up the sound. Owned by the meter's widget; the functions
// belong to the interface thread and never wait.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kv {

inline constexpr std::uint8_t kSilentSample = 128;

struct CaptureFormat {
  int samplespersec = 8000;  // Hz, 1000 to 192000
  int buffersizebytes = 128;
  int numberofbuffers = 32;
};

class AudioCapture {
 public:
  virtual ~AudioCapture() = default;

  // Starts collecting, from nothing. An empty text, or the reason why this machine can never do it.
  // A sound server that is absent or does not answer is no reason: it is waited for.
  virtual std::string Start(const CaptureFormat& format) = 0;

  // Ends it; what was collected and not fetched is forgotten.
  virtual void Stop() = 0;

  // Replaces `sound` by all that came since the last call, the oldest first. Empty while nothing
  // sounds. What is not fetched in time gives way to what is newer.
  virtual void Take(std::vector<std::uint8_t>& sound) = 0;
};

}  // namespace kv
