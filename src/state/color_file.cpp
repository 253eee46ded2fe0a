#include "state/color_file.h"

#include "system/save_file.h"

#include <fstream>

namespace kv {
namespace {

constexpr std::size_t kColorBytes = 4;
constexpr std::size_t kFileBytes = kColorSlots * kColorBytes;

}  // namespace

bool ReadColorFile(const std::string& path, ColorTable& colors) {
  std::ifstream file(path, std::ios::binary);
  std::array<unsigned char, kFileBytes> bytes{};
  if (!file.read(reinterpret_cast<char*>(bytes.data()), kFileBytes)) return false;
  for (std::size_t slot = 0; slot < kColorSlots; ++slot) {
    std::uint32_t color = 0;
    for (std::size_t i = kColorBytes; i-- > 0;) color = color << 8 | bytes[slot * kColorBytes + i];
    colors[slot] = static_cast<std::int32_t>(color);
  }
  return true;
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
