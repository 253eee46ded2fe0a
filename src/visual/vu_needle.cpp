#include "visual/vu_needle.h"

#include "visual/audio_capture.h"

#include <cmath>
#include <numbers>

namespace kv {
namespace {

// A second-order movement whose step response overshoots by 1.25 % passes 99 % at 4.0536 / omega.
constexpr double kDamping = 0.81272;
constexpr double kOmega = 4.0536 / 0.300;  // radians per second

// Just beyond the ends of the scale.
constexpr double kLowStop = 0.0;
constexpr double kHighStop = 1.47;

constexpr int kLampLevel = 114;  // of 128: -1 dBFS
constexpr double kLampSeconds = 0.5;

// From the mean of a rectified sine to its amplitude.
constexpr double kSineFactor = std::numbers::pi / 2.0;

}  // namespace

double DeflectionOfVu(double vu) {
  return std::pow(10.0, vu / 20.0);
}

void VuNeedle::Reset(int samplespersec) {
  *this = VuNeedle();
  seconds_per_sample_ = 1.0 / samplespersec;
  lamp_hold_ = static_cast<int>(kLampSeconds * samplespersec);
}

void VuNeedle::Feed(std::span<const std::uint8_t> sound) {
  const double scale = kSineFactor / (128.0 * std::pow(10.0, kReferenceLevel / 20.0));
  for (const std::uint8_t sample : sound) {
    const int size = std::abs(sample - kSilentSample);
    const double pull = kOmega * kOmega * (size * scale - deflection_);
    speed_ += seconds_per_sample_ * (pull - 2.0 * kDamping * kOmega * speed_);
    deflection_ += seconds_per_sample_ * speed_;
    if (deflection_ < kLowStop || deflection_ > kHighStop) {
      deflection_ = deflection_ < kLowStop ? kLowStop : kHighStop;
      speed_ = 0.0;
    }
    if (size >= kLampLevel) {
      lamp_samples_ = lamp_hold_;
    } else if (lamp_samples_ > 0) {
      --lamp_samples_;
    }
  }
}

}  // namespace kv
