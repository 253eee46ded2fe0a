// Wave files.
#include "support.h"
#include "system/wave_file.h"

#include <cmath>

namespace kv::fuzz {

void Try(std::string_view input) {
  const std::optional<WaveSound> sound = ReadWave(input);
  ReadWave(Stretched(input));
  if (!sound) return;
  Require(sound->channels >= 1 && sound->channels <= 8, "1 to 8 channels");
  Require(sound->rate >= 1000 && sound->rate <= 192000, "1000 to 192000 frames a second");
  Require(sound->frame_bytes >= sound->channels, "a frame holds a sample of each channel");
  Require(sound->frames.size() % sound->frame_bytes == 0, "whole frames");
  Require(sound->frames.size() <= input.size(), "no more sound than the file holds");
  Require(std::isfinite(sound->Seconds()) && sound->Seconds() >= 0, "a length");
}

}  // namespace kv::fuzz
