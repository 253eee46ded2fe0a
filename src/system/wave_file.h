// Sounds in wave files (RIFF), for the few that the player itself plays. Any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kv {

enum class WaveSample { kU8, kS16, kS24, kS32, kF32 };  // little endian

struct WaveSound {
  WaveSample sample = WaveSample::kS16;
  std::uint32_t channels = 0;     // 1 to 8
  std::uint32_t rate = 0;         // frames a second, 1000 to 192000
  std::uint32_t frame_bytes = 0;  // of all channels together
  std::string frames;             // whole frames

  double Seconds() const;
};

// Reads a wave file of plain or floating point samples. Nothing for any other content. A file that
// was cut short gives what is there.
std::optional<WaveSound> ReadWave(std::string_view bytes);

}  // namespace kv
