// Names of subtitle files. The parts are a language, the medium's name, and the names beside it.
#include "engine/subtitle_files.h"

#include "support.h"
#include "system/ascii_text.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <system_error>

namespace kv::fuzz {
namespace {

constexpr std::size_t kMostNames = 24;
constexpr std::size_t kLongestName = 255;

bool IsName(std::string_view name) {
  return !name.empty() && name.size() <= kLongestName && name != "." && name != ".." &&
         name.find('/') == std::string_view::npos && name.find('\0') == std::string_view::npos;
}

// What goes into the options of a back end.
bool IsPlain(const std::string& language) {
  return std::all_of(language.begin(), language.end(),
                     [](char c) { return (c >= 'a' && c <= 'z') || c == '-' || c == '_'; });
}

}  // namespace

void Try(std::string_view input) {
  const Folder folder;
  Parts parts(input);
  const std::string language(parts.Next());
  const std::string_view medium = parts.Next();
  if (!IsName(medium)) return;
  std::set<std::string> names;
  while (!parts.Rest().empty() && names.size() < kMostNames) {
    // A name that begins with "?" is that of an empty file, which has no subtitles.
    const std::string_view name = parts.Next();
    if (!IsName(name)) continue;
    folder.Write(name, name.front() == '?' ? "" : "1");
    names.emplace(name);
  }

  const std::string path = folder.Path() + std::string(medium);
  const std::string stem = LowerAscii(medium.substr(0, medium.rfind('.')));
  std::set<std::string> found;
  for (const SubtitleFile& file : FindSubtitles(path, language)) {
    Require(file.path.starts_with(folder.Path()), "subtitles lie beside the medium");
    const std::string name = file.path.substr(folder.Path().size());
    Require(names.count(name) == 1, "a name keeps its bytes");
    Require(LowerAscii(name).starts_with(stem), "a name begins like the medium's");
    Require(MayBeSubtitles(file.path), "what was found can be opened");
    Require(IsPlain(file.language), "a language is a word");
    Require(found.insert(name).second, "each is found once");
  }
  Require(found.size() <= 16, "at most 16");
  for (const char* marks : {".srt", ".De.Forced.ASS"}) {
    const std::string beside = std::string(medium.substr(0, medium.rfind('.'))) + marks;
    if (beside.size() > kLongestName || names.size() > 8) continue;
    folder.Write(beside, "1");
    const std::vector<SubtitleFile> files = FindSubtitles(path, language);
    Require(
        std::any_of(files.begin(), files.end(),
                    [&](const SubtitleFile& file) { return file.path == folder.Path() + beside; }),
        "the file of that name is found");
  }
}

}  // namespace kv::fuzz
