#include "system/wave_file.h"

#include <algorithm>

namespace kv {
namespace {

constexpr std::uint32_t kPlain = 1;
constexpr std::uint32_t kFloat = 3;
constexpr std::uint32_t kExtensible = 0xFFFE;  // the real tag follows in the extension

std::uint32_t Number(std::string_view bytes, std::size_t at, std::size_t size) {
  std::uint32_t value = 0;
  for (std::size_t i = size; i > 0; --i) {
    value = (value << 8U) | static_cast<unsigned char>(bytes[at + i - 1]);
  }
  return value;
}

struct SampleRow {
  std::uint32_t tag;
  std::uint32_t bits;
  WaveSample sample;
};

constexpr SampleRow kSamples[] = {
    {kPlain, 8, WaveSample::kU8},   {kPlain, 16, WaveSample::kS16}, {kPlain, 24, WaveSample::kS24},
    {kPlain, 32, WaveSample::kS32}, {kFloat, 32, WaveSample::kF32},
};

// The "fmt " chunk.
bool ReadFormat(std::string_view chunk, WaveSound& sound) {
  if (chunk.size() < 16) return false;
  std::uint32_t tag = Number(chunk, 0, 2);
  if (tag == kExtensible && chunk.size() >= 26) tag = Number(chunk, 24, 2);
  sound.channels = Number(chunk, 2, 2);
  sound.rate = Number(chunk, 4, 4);
  const std::uint32_t bits = Number(chunk, 14, 2);
  const auto* const row =
      std::find_if(std::begin(kSamples), std::end(kSamples),
                   [&](const SampleRow& entry) { return entry.tag == tag && entry.bits == bits; });
  if (row == std::end(kSamples)) return false;
  sound.sample = row->sample;
  sound.frame_bytes = sound.channels * bits / 8;
  return sound.channels >= 1 && sound.channels <= 8 && sound.rate >= 1000 && sound.rate <= 192000;
}

}  // namespace

double WaveSound::Seconds() const {
  if (frame_bytes == 0 || rate == 0) return 0;
  return static_cast<double>(frames.size()) / frame_bytes / rate;
}

std::optional<WaveSound> ReadWave(std::string_view bytes) {
  constexpr std::size_t kHeader = 12;
  constexpr std::size_t kChunkHeader = 8;
  if (bytes.size() < kHeader) return {};
  if (!bytes.starts_with("RIFF") || bytes.substr(8, 4) != "WAVE") return {};
  WaveSound sound;
  bool has_format = false;
  for (std::size_t at = kHeader; at < bytes.size() && bytes.size() - at >= kChunkHeader;) {
    const std::string_view name = bytes.substr(at, 4);
    const std::size_t size = Number(bytes, at + 4, 4);
    const std::string_view chunk = bytes.substr(at + kChunkHeader, size);
    if (name == "fmt ") {
      if (!ReadFormat(chunk, sound)) return {};
      has_format = true;
    } else if (name == "data") {
      if (!has_format) return {};
      sound.frames = chunk.substr(0, chunk.size() - chunk.size() % sound.frame_bytes);
      return sound;
    }
    at += kChunkHeader + size + size % 2;  // chunks begin at even places
  }
  return {};
}

}  // namespace kv
