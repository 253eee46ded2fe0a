#include "state/file_support.h"

#include "system/files.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace kv {
namespace {

constexpr std::size_t kMaxBytes = std::size_t{1024} * 1024;

std::string TakeLine(std::string_view& text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  while (line.ends_with('\r')) line.remove_suffix(1);
  return std::string(line);
}

}  // namespace

FileSupport ReadFileSupport(const std::string& path) {
  const std::string bytes = ReadTextFile(path, kMaxBytes);
  std::string_view text = bytes;
  FileSupport support;
  support.SupportedExtensions = TakeLine(text);
  support.OpenFilter = TakeLine(text);
  return support;
}

}  // namespace kv
