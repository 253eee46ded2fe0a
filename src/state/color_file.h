// Colour scheme files: the 33 slots in index order, each a 32-bit little-endian colour 0x00BBGGRR,
// 132 bytes and nothing else. Any thread.
#pragma once

#include "state/settings.h"

#include <array>
#include <cstdint>
#include <string>

namespace kv {

using ColorTable = std::array<std::int32_t, kColorSlots>;

// Reads a scheme; a shorter file fills the slots that it holds in full and leaves the rest as it
// was. True when the whole scheme was there. What is no plain file changes nothing.
bool ReadColorFile(const std::string& path, ColorTable& colors);

// Replaces the file by the table; false, and the old file whole, when it cannot be written.
bool WriteColorFile(const std::string& path, const ColorTable& colors);

}  // namespace kv
