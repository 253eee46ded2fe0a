// The sound between the thread that captures it and the meter that shows it: holds a bounded amount
// and lets the oldest go first. Any thread.
#pragma once

#include "visual/audio_capture.h"

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <span>
#include <vector>

namespace kv {

class SampleRing {
 public:
  // Holds the buffers of `format`, and at least a quarter of a second: the smallest buffers that
  // can be chosen hold less than the time between two frames.
  explicit SampleRing(const CaptureFormat& format);

  void Write(std::span<const std::uint8_t> sound);
  void WriteSilence(std::size_t samples);

  // See AudioCapture::Take.
  void Take(std::vector<std::uint8_t>& sound);

 private:
  // Room for `samples` more; answers how many of them fit.
  std::size_t MakeRoom(std::size_t samples);

  std::mutex mutex_;
  std::size_t capacity_;
  std::vector<std::uint8_t> waiting_;
};

}  // namespace kv
