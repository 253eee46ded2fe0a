// Paths and names, and their shortening to a width.
#include "system/paths.h"

#include "support.h"
#include "system/name_tests.h"

namespace kv::fuzz {
namespace {

void TryWidth(std::string_view path, int width) {
  const MeasureText measure = [](std::string_view text) {
    return static_cast<int>(CountCharacters(text));
  };
  const std::string compact = CompactPathForWidth(path, measure, width);
  Require(measure(compact) <= width || compact == "...", "a shortened path fits");
  if (measure(path) <= width) Require(compact == path, "a path that fits stays");
  if (IsWellFormedUtf8(path)) Require(IsWellFormedUtf8(compact), "no character is cut");
}

}  // namespace

void Try(std::string_view input) {
  const std::string folder = FolderOfPath(input);
  const std::string name = FileNameOfPath(input);
  Require(input.starts_with(folder), "the folder is the beginning");
  Require(input.ends_with(name), "the name is the end");
  if (folder != input && name != input) Require(folder + name == input, "both are the whole");

  const std::string extension = GetFileExtension(input, false);
  const std::string dotted = GetFileExtension(input, true);
  Require(extension.size() <= input.size(), "an extension is a part");
  Require(dotted.empty() || dotted.size() == extension.size() + 1, "the dot is one character");
  ExtensionOfName(name);
  DriveRootOfPath(std::string(input));
  FileExists(std::string(input));
  FolderExists(std::string(input));

  Require(!IsUrl(input) || IsPlayableName(input, ""), "an address can be played");
  Require(!IsM3UFile(input) || !IsAsfFile(input), "a list is no metafile");
  const std::string scheme = UrlSchemeOf(input);
  Require(scheme == "\\\\" || IsUrl(input), "a scheme makes an address");

  if (input.size() < 4096) {
    for (const int width : {0, 3, 4, 17, 80}) TryWidth(input, width);
  }
  if (const std::string text = Stretched(input); !text.empty()) TryWidth(text, 300);
}

}  // namespace kv::fuzz
