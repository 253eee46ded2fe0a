// What the tests of copying write, and in which blocks it is copied.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace kv {

inline constexpr std::int32_t kBlock = 1000;

// No two stretches of a block's length are alike.
inline std::string Content(std::size_t size) {
  std::string bytes(size, '\0');
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 7 + i / 251);
  return bytes;
}

}  // namespace kv
