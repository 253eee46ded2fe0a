// The bytes of WAV files, put together from their chunks.
#pragma once

#include <cstdint>
#include <string>

namespace kv {

inline std::string Little(std::uint32_t value, int size) {
  std::string bytes;
  for (int i = 0; i < size; ++i) bytes += static_cast<char>(value >> (8 * i));
  return bytes;
}

inline std::string Chunk(const std::string& name, const std::string& content) {
  const auto size = static_cast<std::uint32_t>(content.size());
  return name + Little(size, 4) + content + std::string(size % 2, '\0');
}

inline std::string Format(std::uint32_t tag, std::uint32_t channels, std::uint32_t rate,
                          std::uint32_t bits) {
  const std::uint32_t frame = channels * bits / 8;
  return Chunk("fmt ", Little(tag, 2) + Little(channels, 2) + Little(rate, 4) +
                           Little(rate * frame, 4) + Little(frame, 2) + Little(bits, 2));
}

inline std::string Wave(const std::string& chunks) {
  return Chunk("RIFF", "WAVE" + chunks);
}

}  // namespace kv
