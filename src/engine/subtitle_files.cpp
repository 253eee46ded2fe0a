#include "engine/subtitle_files.h"

#include "system/ascii_text.h"
#include "system/paths.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>
#include <sys/stat.h>
#include <tuple>

namespace kv {
namespace {

constexpr std::size_t kMostFiles = 16;
// The longest films have a megabyte of text; pictures of text come to some tens.
constexpr std::int64_t kLargestText = 16'000'000;
constexpr std::int64_t kLargestPictures = 80'000'000;

struct Format {
  std::string_view extension;
  std::int64_t largest;  // bytes
};
constexpr std::array kFormats = {
    Format{".srt", kLargestText},     Format{".ass", kLargestText}, Format{".ssa", kLargestText},
    Format{".vtt", kLargestText},     Format{".sub", kLargestText}, Format{".idx", kLargestText},
    Format{".sup", kLargestPictures},
};

// Marks of a name that tell a kind and no language.
constexpr std::array<std::string_view, 6> kKinds = {"forced", "sdh", "cc", "hi", "full", "default"};

bool IsFile(const std::string& path, std::int64_t largest) {
  struct stat info {};
  return path.find('\0') == std::string::npos && stat(path.c_str(), &info) == 0 &&
         S_ISREG(info.st_mode) && info.st_size > 0 && info.st_size <= largest;
}

bool HasFormat(std::string_view lower_name) {
  return std::any_of(kFormats.begin(), kFormats.end(),
                     [&](const Format& format) { return lower_name.ends_with(format.extension); });
}

std::string WithExtension(const std::string& path, std::string_view extension) {
  return path.substr(0, path.rfind('.')) + std::string(extension);
}

bool AreLetters(std::string_view text, std::size_t least, std::size_t most) {
  return text.size() >= least && text.size() <= most &&
         std::all_of(text.begin(), text.end(), [](char c) { return c >= 'a' && c <= 'z'; });
}

// "de", "ger", "pt-br", "zh-hans".
bool IsLanguage(std::string_view mark) {
  const std::size_t dash = mark.find_first_of("-_");
  if (!AreLetters(mark.substr(0, dash), 2, 3)) return false;
  return dash == std::string_view::npos || AreLetters(mark.substr(dash + 1), 2, 4);
}

// The language that the marks behind the name tell (".de.forced"); nothing if there is anything
// else among them, since the file then belongs to another medium.
std::optional<std::string> LanguageOfMarks(std::string_view marks) {
  std::string language;
  while (!marks.empty()) {
    if (marks.front() != '.') return std::nullopt;
    const std::size_t end = std::min(marks.find('.', 1), marks.size());
    const std::string_view mark = marks.substr(1, end - 1);
    if (std::find(kKinds.begin(), kKinds.end(), mark) == kKinds.end()) {
      if (!language.empty() || !IsLanguage(mark)) return std::nullopt;
      language = mark;
    }
    marks.remove_prefix(end);
  }
  return language;
}

}  // namespace

bool MayBeSubtitles(const std::string& path) {
  const std::string lower = LowerAscii(path);
  std::int64_t largest = kLargestPictures;
  for (const Format& format : kFormats) {
    if (lower.ends_with(format.extension)) largest = format.largest;
  }
  if (!IsFile(path, largest)) return false;
  // An index is opened together with the pictures beside it.
  return !lower.ends_with(".idx") || IsFile(WithExtension(path, ".sub"), kLargestPictures);
}

std::vector<SubtitleFile> FindSubtitles(const std::string& medium, const std::string& language) {
  struct Found {
    int rank;
    std::string name;
    std::string language;
  };
  const std::string folder = FolderOfPath(medium);
  const std::string name = LowerAscii(FileNameOfPath(medium));
  const std::string stem = name.substr(0, name.rfind('.'));
  std::vector<Found> found;
  std::error_code error;
  for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    const std::string file = entry->path().filename().native();
    const std::string lower = LowerAscii(file);
    const std::size_t dot = lower.rfind('.');
    if (!lower.starts_with(stem) || !HasFormat(lower) || dot < stem.size()) continue;
    const std::string_view marks = std::string_view(lower).substr(stem.size(), dot - stem.size());
    const auto told = LanguageOfMarks(marks);
    if (!told) continue;
    const bool wanted = !language.empty() && told->starts_with(language);
    found.push_back({marks.empty() ? 0 : wanted ? 1 : 2, file, *told});
  }
  std::sort(found.begin(), found.end(), [](const Found& a, const Found& b) {
    return std::tie(a.rank, a.name) < std::tie(b.rank, b.name);
  });
  std::vector<SubtitleFile> files;
  for (const Found& one : found) {
    const std::string path = folder + one.name;
    // The pictures of an index come with it.
    const bool pictures =
        LowerAscii(path).ends_with(".sub") && IsFile(WithExtension(path, ".idx"), kLargestText);
    if (pictures) continue;
    if (MayBeSubtitles(path)) files.push_back({path, one.language});
    if (files.size() == kMostFiles) break;
  }
  return files;
}

}  // namespace kv
