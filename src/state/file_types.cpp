#include "state/file_types.h"

#include "state/desktop_entry.h"
#include "state/mime_apps_text.h"
#include "system/app_folder.h"
#include "system/ascii_text.h"
#include "system/files.h"
#include "system/paths.h"
#include "system/save_file.h"
#include "system/special_folders.h"
#include "system/translation.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <iterator>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace kv {
namespace {

constexpr std::string_view kResumeExtension = "kvr";
constexpr const char* kEntry = "applications/kestrelview.desktop";
constexpr const char* kPackage = "mime/packages/kestrelview.xml";

// What can be a medium. Some extensions are shared with texts, which are none of ours.
bool IsMediaType(std::string_view type) {
  constexpr std::string_view kKinds[] = {"video/", "audio/", "application/"};
  return type != "application/octet-stream" &&
         std::any_of(std::begin(kKinds), std::end(kKinds),
                     [type](std::string_view kind) { return type.starts_with(kind); });
}

std::vector<std::string> Extensions(std::string_view patterns) {
  std::vector<std::string> result;
  while (!patterns.empty()) {
    const std::size_t end = std::min(patterns.find(';'), patterns.size());
    std::string_view pattern = TrimBlanks(patterns.substr(0, end));
    patterns.remove_prefix(std::min(end + 1, patterns.size()));
    if (pattern.starts_with('*')) pattern.remove_prefix(1);
    if (pattern.starts_with('.')) pattern.remove_prefix(1);
    std::string extension = LowerAscii(pattern);
    if (!extension.empty() && std::find(result.begin(), result.end(), extension) == result.end()) {
      result.push_back(std::move(extension));
    }
  }
  return result;
}

FileTypeLine* LineOf(std::vector<FileTypeLine>& lines, const std::string& type) {
  const auto line = std::find_if(lines.begin(), lines.end(), [&type](const FileTypeLine& each) {
    return std::find(each.types.begin(), each.types.end(), type) != each.types.end();
  });
  return line == lines.end() ? nullptr : &*line;
}

// True when the text could be had. A file that is not there is an empty one; one that is there and
// cannot be read must not be replaced.
bool ReadList(const std::string& path, std::string& text) {
  if (ReadWholeFile(path, kMaxTextFileBytes, text)) return true;
  text.clear();
  struct stat status {};
  return stat(path.c_str(), &status) != 0 && errno == ENOENT;
}

bool IsOurs(std::string_view text, const std::string& type) {
  return FirstProgram(DefaultPrograms(text, type).value_or("")) == kDesktopId;
}

bool HasAny(std::string_view text, const std::vector<FileTypeLine>& lines) {
  return std::any_of(lines.begin(), lines.end(), [text](const FileTypeLine& line) {
    return std::any_of(line.types.begin(), line.types.end(),
                       [text](const std::string& type) { return IsOurs(text, type); });
  });
}

std::string Variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

}  // namespace

FileTypePlaces FileTypePlaces::OfThisProcess(const std::string& icon) {
  FileTypePlaces places;
  places.config_home = GetSpecialFolder(kSpecialAppData);
  places.data_home = GetSpecialFolder(kSpecialLocalAppData);
  places.program = AppFolderSources::OfThisProcess().executable_path;
  places.icon = icon;
  std::string dirs = Variable("XDG_DATA_DIRS");
  if (dirs.empty()) dirs = "/usr/local/share/:/usr/share/";
  for (std::size_t at = 0; at < dirs.size();) {
    const std::size_t end = std::min(dirs.find(':', at), dirs.size());
    std::string folder = dirs.substr(at, end - at);
    at = end + 1;
    if (!IsNativePath(folder)) continue;
    if (!folder.ends_with('/')) folder += '/';
    places.data_dirs.push_back(std::move(folder));
  }
  return places;
}

FileTypes::FileTypes(MimeTypes& mime, FileTypePlaces places)
    : mime_(mime), places_(std::move(places)) {}

std::string FileTypes::ListFile() const {
  return places_.config_home + "mimeapps.list";
}

FileTypeList FileTypes::Lines(std::string_view patterns) const {
  FileTypeList list;
  std::vector<std::pair<std::string, std::string>> others;  // type, type of its line
  for (const std::string& extension : Extensions(patterns)) {
    std::vector<std::string> types = extension == kResumeExtension
                                         ? std::vector{std::string(kResumeType)}
                                         : mime_.TypesOf(extension);
    std::erase_if(types, [](const std::string& type) { return !IsMediaType(type); });
    if (types.empty()) {
      list.unknown.push_back(extension);
      continue;
    }
    FileTypeLine* line = LineOf(list.lines, types.front());
    if (line == nullptr) {
      std::string comment = mime_.Comment(types.front());
      if (comment.empty() && extension == kResumeExtension) comment = Tr("Kestrelview resume file");
      line = &list.lines.emplace_back(FileTypeLine{{types.front()}, {}, std::move(comment)});
    }
    line->extensions.push_back(extension);
    for (std::size_t i = 1; i < types.size(); ++i) others.emplace_back(types[i], types.front());
  }
  // A file is recognised by its content as well, which can tell the rarer of its types: that goes
  // with the line, unless it has one of its own.
  for (const auto& [type, line_type] : others) {
    if (LineOf(list.lines, type) == nullptr) LineOf(list.lines, line_type)->types.push_back(type);
  }

  std::string text;
  ReadList(ListFile(), text);
  for (FileTypeLine& line : list.lines) line.selected = IsOurs(text, line.types.front());
  return list;
}

bool FileTypes::UpdateFileTypes(const std::vector<FileTypeLine>& before,
                                const std::vector<FileTypeLine>& after) {
  std::string text;
  if (!ReadList(ListFile(), text)) return false;
  const std::string old_text = text;
  bool takes_resume = false;
  bool takes = false;
  for (std::size_t i = 0; i < std::min(before.size(), after.size()); ++i) {
    if (before[i].selected == after[i].selected) continue;
    for (const std::string& type : after[i].types) {
      if (!after[i].selected) {
        RemoveFirstProgram(text, type, kDesktopId);
      } else if (!IsOurs(text, type)) {
        PutProgramFirst(text, type, kDesktopId);
      }
      takes_resume = takes_resume || (after[i].selected && type == kResumeType);
    }
    takes = takes || after[i].selected;
  }
  // The entry is there whenever the list names it.
  if (takes) WriteOwnEntry(takes_resume);
  if (text == old_text) return false;
  const bool written = SaveFileChecked(ListFile(), text);
  if (!HasAny(written ? text : old_text, after)) RemoveOwnEntry();
  return written;
}

bool FileTypes::Installed(const std::string& name) const {
  return std::any_of(places_.data_dirs.begin(), places_.data_dirs.end(),
                     [&name](const std::string& folder) { return FileExists(folder + name); });
}

void FileTypes::WriteOwnEntry(bool resume) {
  const std::string entry = places_.data_home + kEntry;
  const bool free = !FileExists(entry) || IsOwnDesktopEntry(ReadTextFile(entry));
  if (free && !Installed(kEntry)) {
    SaveFileChecked(entry,
                    DesktopEntryFor(places_.program, FileExists(places_.icon) ? places_.icon : ""));
  }
  const std::string package = places_.data_home + kPackage;
  if (resume && !FileExists(package) && !Installed(kPackage) &&
      SaveFileChecked(package, MimePackage())) {
    mime_.Rebuild(places_.data_home + "mime/");
  }
}

void FileTypes::RemoveOwnEntry() {
  const std::string entry = places_.data_home + kEntry;
  if (!IsOwnDesktopEntry(ReadTextFile(entry))) return;
  unlink(entry.c_str());
  const std::string package = places_.data_home + kPackage;
  std::string text;
  if (ReadWholeFile(package, kMaxTextFileBytes, text) && text == MimePackage() &&
      unlink(package.c_str()) == 0) {
    mime_.Rebuild(places_.data_home + "mime/");
  }
}

}  // namespace kv
