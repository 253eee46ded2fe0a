// The movement of the needle instrument: a standard volume indicator after IEC 60268-17.
//
// The needle shows the mean of the rectified sound on a scale of voltage: put on a steady tone it
// reaches 99 % of its deflection in 300 ms and overshoots by 1 to 1.5 %; it falls back as it rises.
// 0 VU is a sine of -9 dBFS, the permitted maximum level of EBU R 68. Beside it a lamp tells peaks
// that the needle is too slow for. Owned by `VuMeter`; interface thread.
#pragma once

#include <cstdint>
#include <span>

namespace kv {

inline constexpr double kReferenceLevel = -9.0;  // decibels below full scale that 0 VU stands for

// Deflection at `vu`, -20 to +3: 1.0 at 0 VU, proportional to the voltage.
double DeflectionOfVu(double vu);

class VuNeedle {
 public:
  // At rest, for sound of `samplespersec`.
  void Reset(int samplespersec);

  // 8-bit samples as `AudioCapture` gives them.
  void Feed(std::span<const std::uint8_t> sound);

  // 0.0 at rest, 1.0 at 0 VU; between the two stops.
  double Deflection() const { return deflection_; }

  // A sample came within 1 dB of full scale, not long ago.
  bool PeakLamp() const { return lamp_samples_ > 0; }

 private:
  double seconds_per_sample_ = 0.0;
  double deflection_ = 0.0;
  double speed_ = 0.0;  // deflection per second
  int lamp_hold_ = 0;   // samples
  int lamp_samples_ = 0;
};

}  // namespace kv
