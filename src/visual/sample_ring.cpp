#include "visual/sample_ring.h"

#include <algorithm>

namespace kv {

SampleRing::SampleRing(const CaptureFormat& format)
    : capacity_(std::max(static_cast<std::size_t>(format.buffersizebytes) *
                             static_cast<std::size_t>(format.numberofbuffers),
                         static_cast<std::size_t>(format.samplespersec) / 4)) {}

std::size_t SampleRing::MakeRoom(std::size_t samples) {
  samples = std::min(samples, capacity_);
  const std::size_t kept = std::min(waiting_.size(), capacity_ - samples);
  waiting_.erase(waiting_.begin(), waiting_.end() - static_cast<std::ptrdiff_t>(kept));
  return samples;
}

void SampleRing::Write(std::span<const std::uint8_t> sound) {
  const std::lock_guard lock(mutex_);
  sound = sound.last(MakeRoom(sound.size()));
  waiting_.insert(waiting_.end(), sound.begin(), sound.end());
}

void SampleRing::WriteSilence(std::size_t samples) {
  const std::lock_guard lock(mutex_);
  waiting_.insert(waiting_.end(), MakeRoom(samples), kSilentSample);
}

void SampleRing::Take(std::vector<std::uint8_t>& sound) {
  sound.clear();
  const std::lock_guard lock(mutex_);
  waiting_.swap(sound);
}

}  // namespace kv
