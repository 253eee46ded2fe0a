#include "system/ini_file.h"

#include "system/files.h"
#include "system/ini_text.h"
#include "system/save_file.h"
#include "system/utf8.h"

#include <cerrno>
#include <sys/stat.h>

namespace kv {
namespace {

std::string InBuffer(std::string_view value) {
  return std::string(Utf8Prefix(value, kIniValueBuffer - 1));
}

bool IsMissing(const std::string& file) {
  struct stat status {};
  return stat(file.c_str(), &status) != 0 && errno == ENOENT;
}

}  // namespace

std::string ReadIniString(const std::string& file, std::string_view section, std::string_view key,
                          std::string_view default_value) {
  std::string text;
  if (!ReadWholeFile(file, kMaxTextFileBytes, text)) return InBuffer(default_value);
  const auto value = FindIniValue(text, section, key);
  return InBuffer(value ? WithoutQuotes(*value) : default_value);
}

std::int32_t WriteIniString(const std::string& file, std::string_view section, std::string_view key,
                            std::string_view value, std::ostream* channel) {
  if (!CanStandInIni(channel != nullptr ? std::string_view() : section, key, value)) return 0;
  if (channel != nullptr) {
    *channel << IniLine(key, value) << kIniLineEnd;
    return channel->good() ? 1 : 0;
  }
  // A file that is there but cannot be read must not be taken for an empty one.
  std::string text;
  if (!ReadWholeFile(file, kMaxTextFileBytes, text) && !IsMissing(file)) return 0;
  SetIniValue(text, section, key, value);
  return text.size() <= kMaxTextFileBytes && SaveFileChecked(file, text) ? 1 : 0;
}

std::string GetIniSetting(const std::string& file, std::string_view section, std::string_view key,
                          std::string_view default_value) {
  std::string value = ReadIniString(file, section, key, "");
  return value.empty() ? std::string(default_value) : value;
}

void SetIniSetting(const std::string& file, std::string_view section, std::string_view key,
                   std::string_view value) {
  WriteIniString(file, section, key, value);
}

}  // namespace kv
