#include "visual/vu_trace.h"

#include "visual/audio_capture.h"

#include <algorithm>
#include <cmath>

namespace kv {
namespace {

constexpr double kFallPerSecond = 1.0 / 1.7;
// The swing below zero that makes a rise through it worth beginning at, of the highest one, and
// never as little as the noise of 8 bits.
constexpr float kSwingShare = 0.3F;
constexpr float kLeastSwing = 2.0F / 128.0F;

}  // namespace

void VuTrace::Reset(int samplespersec) {
  samplespersec_ = samplespersec;
  length_ = static_cast<std::size_t>(std::lround(kTraceSeconds * samplespersec));
  history_.assign(2 * length_ + 2, 0.0F);
  highest_ = lowest_ = 0.0;
  FindBegin();
}

void VuTrace::Feed(std::span<const std::uint8_t> sound) {
  if (sound.empty()) return;
  const double fall =
      static_cast<double>(sound.size()) / samplespersec_ * fall_back_ * kFallPerSecond;
  highest_ = std::max(0.0, highest_ - fall);
  lowest_ = std::min(0.0, lowest_ + fall);
  const auto [low, high] = std::minmax_element(sound.begin(), sound.end());
  highest_ = std::max(highest_, (*high - kSilentSample) / 128.0);
  lowest_ = std::min(lowest_, (*low - kSilentSample) / 128.0);

  sound = sound.last(std::min(sound.size(), history_.size()));
  const auto added = static_cast<std::ptrdiff_t>(sound.size());
  std::shift_left(history_.begin(), history_.end(), added);
  std::transform(sound.begin(), sound.end(), history_.end() - added, [](std::uint8_t sample) {
    return static_cast<float>(sample - kSilentSample) / 128.0F;
  });
  FindBegin();
}

void VuTrace::FindBegin() {
  begin_ = history_.size() - length_ - 2;
  shift_ = 0.0;
  const float deepest = *std::min_element(history_.begin(), history_.end());
  const float swing = std::min(deepest * kSwingShare, -kLeastSwing);
  std::size_t rise = 0;  // the newest candidate while going back in time; 0 for none
  for (std::size_t i = begin_ + 1; i > 0; --i) {
    const float before = history_[i - 1];
    if (before >= 0.0F) {
      rise = 0;
      continue;
    }
    if (history_[i] >= 0.0F) rise = i;
    if (rise != 0 && before <= swing) {
      begin_ = rise - 1;
      shift_ = history_[begin_] / (history_[begin_] - history_[rise]);
      return;
    }
  }
}

std::span<const float> VuTrace::Points() const {
  return std::span(history_).subspan(begin_, length_ + 2);
}

}  // namespace kv
