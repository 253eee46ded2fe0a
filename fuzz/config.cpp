// The settings record "config.dat".
#include "state/settings_file.h"
#include "support.h"

namespace kv::fuzz {

void Try(std::string_view input) {
  Settings settings;
  const bool whole = SettingsFromBytes(input, settings);
  const std::string bytes = SettingsToBytes(settings);
  if (whole) Require(input.starts_with(bytes), "a whole record is written as it was read");
  Settings again;
  Require(SettingsFromBytes(bytes, again), "what was written is whole");
  // Bytes and not members: a number may be none, which equals nothing.
  Require(SettingsToBytes(again) == bytes, "what was written reads back as itself");

  static MemoryFile file;
  Settings from_file;
  Require(ReadSettings(file.Holding(input), from_file) == whole, "a file says what its bytes say");
  ClearForFirstStart(settings);
  Require(SettingsFromBytes(SettingsToBytes(settings), again), "a first start's record is whole");
}

}  // namespace kv::fuzz
