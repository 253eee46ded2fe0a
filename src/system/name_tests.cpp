#include "system/name_tests.h"

#include "system/ascii_text.h"
#include "system/paths.h"

#include <algorithm>
#include <array>

namespace kv {
namespace {

// "mms://" stands last: it makes a URL, but no scheme that is shown.
constexpr std::array<std::string_view, 4> kSchemes = {"https://", "http://", "ftp://", "mms://"};
constexpr std::size_t kShownSchemes = 3;
constexpr std::array<std::string_view, 3> kAsfExtensions = {".asf", ".asx", ".wax"};

}  // namespace

bool IsAsfFile(std::string_view path) {
  const std::string extension = LowerAscii(GetFileExtension(path, true));
  return std::find(kAsfExtensions.begin(), kAsfExtensions.end(), extension) != kAsfExtensions.end();
}

bool IsM3UFile(std::string_view path) {
  return EqualsIgnoringCase(GetFileExtension(path, true), ".m3u");
}

bool IsPlayableName(std::string_view path, std::string_view supported_extensions) {
  return IsUrl(path) || ContainsIgnoringCase(supported_extensions, GetFileExtension(path, true));
}

bool IsUrl(std::string_view text) {
  return std::any_of(kSchemes.begin(), kSchemes.end(), [text](std::string_view scheme) {
    return StartsWithIgnoringCase(text, scheme);
  });
}

bool IsUrlName(std::string_view text) {
  return IsUrl(text);
}

std::string UrlSchemeOf(std::string_view text) {
  for (std::size_t i = 0; i < kShownSchemes; ++i) {
    if (StartsWithIgnoringCase(text, kSchemes[i])) return std::string(kSchemes[i]);
  }
  return "\\\\";
}

}  // namespace kv
