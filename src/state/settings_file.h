// The settings record on the disk: "config.dat".
//
// The record is written field after field, without header, names or gaps, little-endian: 16-bit,
// 32-bit and IEEE 754 64-bit numbers, a text as a 16-bit length and its bytes, an array as its
// elements. An empty record takes 536 bytes. Any thread.
#pragma once

#include "state/settings.h"

#include <string>
#include <string_view>

namespace kv {

// Reads the record into `settings`. What a short or damaged file does not hold in full, from the
// first such field on, keeps its value; values are not checked, and what follows the record is
// ignored. Nothing is created: a file that is absent, or no plain file, changes nothing. True when
// the whole record was there.
bool ReadSettings(const std::string& path, Settings& settings);

// Replaces `path` by the record, also where it is marked read-only; on any failure the old file
// stays as it was and `error`, if given, tells why. A text above 65535 bytes is cut between two
// characters.
bool WriteSettings(const std::string& path, const Settings& settings, std::string* error = nullptr);

// The same record in memory.
bool SettingsFromBytes(std::string_view bytes, Settings& settings);
std::string SettingsToBytes(const Settings& settings);

}  // namespace kv
