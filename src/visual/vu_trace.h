// What the oscilloscope shows: the newest twenty milliseconds of sound, held still.
//
// The trace begins where the sound rises through zero after a real swing below it, found between
// the samples, so that a tone stands; without such a place it runs free. Two marks tell how far the
// sound swung lately. Amplitudes are -1.0 to 1.0 of full scale. Owned by `VuMeter`; interface
// thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace kv {

inline constexpr double kTraceSeconds = 0.020;

class VuTrace {
 public:
  // Silence, for sound of `samplespersec`.
  void Reset(int samplespersec);

  // The marks fall back by the whole height in 1.7 s, and this many times as fast; 0 and they
  // stand.
  void SetFallBack(int times) { fall_back_ = times; }

  // 8-bit samples as `AudioCapture` gives them.
  void Feed(std::span<const std::uint8_t> sound);

  // The samples of the trace and one beyond each end: the first stands `Shift` of a sample (0.0 to
  // 1.0) before the trace's beginning.
  std::span<const float> Points() const;
  double Shift() const { return shift_; }
  // How many samples the trace's length holds.
  std::size_t Length() const { return length_; }

  // The marks, 0.0 to 1.0 and -1.0 to 0.0.
  double Highest() const { return highest_; }
  double Lowest() const { return lowest_; }

 private:
  void FindBegin();

  int samplespersec_ = 8000;
  int fall_back_ = 1;
  std::size_t length_ = 0;
  std::size_t begin_ = 0;
  double shift_ = 0.0;
  std::vector<float> history_;  // twice the trace, the newest last
  double highest_ = 0.0;
  double lowest_ = 0.0;
};

}  // namespace kv
