#include "state/color_file.h"

#include "system/files.h"
#include "system/save_file.h"

#include <algorithm>

namespace kv {
namespace {

constexpr std::size_t kColorBytes = 4;

}  // namespace

bool ReadColorFile(const std::string& path, ColorTable& colors) {
  std::string bytes;
  if (!ReadWholeFile(path, kMaxTextFileBytes, bytes)) return false;
  const std::size_t slots = std::min(bytes.size() / kColorBytes, kColorSlots);
  for (std::size_t slot = 0; slot < slots; ++slot) {
    std::uint32_t color = 0;
    for (std::size_t i = kColorBytes; i-- > 0;) {
      color = color << 8 | static_cast<unsigned char>(bytes[slot * kColorBytes + i]);
    }
    colors[slot] = static_cast<std::int32_t>(color);
  }
  return slots == kColorSlots;
}

bool WriteColorFile(const std::string& path, const ColorTable& colors) {
  std::string bytes;
  for (const std::int32_t color : colors) {
    for (std::size_t i = 0; i < kColorBytes; ++i) {
      bytes += static_cast<char>(static_cast<std::uint32_t>(color) >> (8 * i) & 0xFFU);
    }
  }
  return SaveFileChecked(path, bytes);
}

}  // namespace kv
