#include "engine/media_gate.h"

#include "system/ascii_text.h"

#include <algorithm>
#include <array>
#include <climits>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace kv {
namespace {

constexpr std::array<std::string_view, 4> kSchemes = {"http://", "https://", "ftp://", "mms://"};

bool HasControlCharacter(std::string_view text) {
  return std::any_of(text.begin(), text.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte == 0x7f;
  });
}

std::string Absolute(const std::string& path) {
  if (path.starts_with('/')) return path;
  std::array<char, PATH_MAX> folder{};
  if (getcwd(folder.data(), folder.size()) == nullptr) return {};
  return std::string(folder.data()) + "/" + path;
}

}  // namespace

GateVerdict CheckMedium(const std::string& target) {
  const auto scheme = std::find_if(kSchemes.begin(), kSchemes.end(), [&](std::string_view s) {
    return StartsWithIgnoringCase(target, s);
  });
  if (scheme != kSchemes.end()) {
    if (HasControlCharacter(target)) return {};
    // Back ends know their schemes in lower case only.
    return {true, true, std::string(*scheme) + target.substr(scheme->size())};
  }
  // A NUL would end the name early at the system's door and open another file.
  if (target.empty() || target.find('\0') != std::string::npos) return {};
  const std::string path = Absolute(target);
  struct stat info {};
  if (path.empty() || stat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) return {};
  return {true, false, path};
}

}  // namespace kv
