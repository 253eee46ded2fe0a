#include "system/paths.h"

#include "system/utf8.h"

#include <filesystem>
#include <optional>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace kv {
namespace {

constexpr std::size_t kNone = std::string_view::npos;
constexpr std::string_view kEllipsis = "...";

// A NUL would cut the name short and ask about another file.
std::optional<struct stat> StatusOf(const std::string& path) {
  struct stat status {};
  if (path.empty() || path.find('\0') != kNone || stat(path.c_str(), &status) != 0) return {};
  return status;
}

// The character that separates in this text.
char SeparatorOf(std::string_view path) {
  if (IsNativePath(path)) return '/';
  return path.find('\\') == kNone && path.find('/') != kNone ? '/' : '\\';
}

// The beginnings of all characters of `text`, and its end.
std::vector<std::size_t> CharacterBounds(std::string_view text) {
  std::vector<std::size_t> bounds;
  bounds.reserve(text.size() + 1);
  for (std::size_t at = 0; at < text.size(); at += DecodeUtf8(text, at).size) bounds.push_back(at);
  bounds.push_back(text.size());
  return bounds;
}

// The longest beginning of `text` with which `before` + beginning + `after` fits; nothing when not
// even the empty one does. A longer text is taken to be wider, so a bisection finds it.
std::optional<std::string> LongestFit(std::string_view before, std::string_view text,
                                      std::string_view after, const MeasureText& measure,
                                      int pixels) {
  const auto join = [&](std::size_t size) {
    return std::string(before).append(text.substr(0, size)).append(after);
  };
  if (measure(join(0)) > pixels) return {};
  const std::vector<std::size_t> bounds = CharacterBounds(text);
  std::size_t fits = 0;
  std::size_t too_long = bounds.size();
  while (too_long - fits > 1) {
    const std::size_t middle = fits + (too_long - fits) / 2;
    (measure(join(bounds[middle])) <= pixels ? fits : too_long) = middle;
  }
  return join(bounds[fits]);
}

}  // namespace

bool IsNativePath(std::string_view path) {
  return path.starts_with('/');
}

bool FileExists(const std::string& path) {
  const auto status = StatusOf(path);
  return status && S_ISREG(status->st_mode);
}

bool FolderExists(const std::string& path) {
  const auto status = StatusOf(path);
  return status && S_ISDIR(status->st_mode) && access(path.c_str(), X_OK) == 0;
}

std::string FileNameOfPath(std::string_view path) {
  const bool native = IsNativePath(path);
  if (path.ends_with('/') || (!native && path.ends_with('\\'))) return std::string(path);
  const std::size_t separator = path.rfind(SeparatorOf(path));
  return std::string(separator == kNone ? path : path.substr(separator + 1));
}

std::string FolderOfPath(std::string_view path) {
  const std::size_t separator = path.rfind(SeparatorOf(path));
  return std::string(separator == kNone ? path : path.substr(0, separator + 1));
}

std::string GetParentFolder(std::string_view path) {
  return FolderOfPath(path);
}

std::string DriveRootOfPath(const std::string& path) {
  if (!IsNativePath(path)) return path.substr(0, path.find('\\') + 1);

  // From the nearest thing that exists upward, as long as it is the same file system.
  std::error_code error;
  std::filesystem::path at = path;
  while (at.has_relative_path() && !StatusOf(at.native())) at = at.parent_path();
  at = std::filesystem::canonical(at, error);
  const auto device = StatusOf(at.native());
  if (error || !device) return "/";
  while (at.has_relative_path()) {
    const auto above = StatusOf(at.parent_path().native());
    if (!above || above->st_dev != device->st_dev) break;
    at = at.parent_path();
  }
  return at.has_relative_path() ? at.native() + "/" : "/";
}

std::string ExtensionOfName(std::string_view name) {
  const std::size_t dot = name.rfind('.');
  return std::string(dot == kNone ? std::string_view() : name.substr(dot + 1));
}

std::string GetFileExtension(std::string_view path, bool with_dot) {
  const std::size_t slash = path.rfind(IsNativePath(path) ? '/' : '\\');
  const std::size_t dot = path.rfind('.');
  if (slash != kNone && (dot == kNone || slash > dot)) return {};
  if (dot == kNone) return std::string(path) + (with_dot ? "." : "");
  return std::string(path.substr(with_dot ? dot : dot + 1));
}

std::string CompactPathForWidth(std::string_view path, const MeasureText& measure, int pixels) {
  if (measure(path) <= pixels) return std::string(path);

  // A separator at the very end belongs to the name in front of it.
  const std::string_view searched = path.substr(0, path.empty() ? 0 : path.size() - 1);
  const std::size_t separator = searched.rfind(SeparatorOf(path));
  if (separator == kNone) {
    return LongestFit("", path, kEllipsis, measure, pixels).value_or(std::string(kEllipsis));
  }
  const std::string_view folder = path.substr(0, separator);
  std::string before(folder.empty() ? folder : kEllipsis);
  const std::string tail = before + std::string(path.substr(separator));
  if (auto compact = LongestFit("", folder, tail, measure, pixels)) return *compact;
  before += path[separator];
  return LongestFit(before, path.substr(separator + 1), kEllipsis, measure, pixels)
      .value_or(std::string(kEllipsis));
}

}  // namespace kv
