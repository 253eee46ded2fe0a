#include "state/color_scheme.h"

#include "state/color_file.h"
#include "system/ascii_text.h"
#include "system/files.h"
#include "system/paths.h"
#include "system/translation.h"

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <tuple>
#include <unistd.h>
#include <utility>

namespace kv {
namespace {

constexpr std::string_view kFolder = "colorscemes/";

SchemeError Error(int code) {
  return {code, std::generic_category().message(code)};
}

// What the system has just said; a failure without a word is an input/output error.
SchemeError LastError() {
  return Error(errno != 0 ? errno : EIO);
}

// A name read from a damaged settings file must not lead to another folder.
bool CanBeName(const std::string& name) {
  return !name.empty() && name.find('/') == std::string::npos &&
         name.find('\0') == std::string::npos;
}

bool Before(const std::string& a, const std::string& b) {
  const bool a_first = a == kDefaultScheme;
  const bool b_first = b == kDefaultScheme;
  if (a_first != b_first) return a_first;
  const std::string a_folded = LowerAscii(a);
  const std::string b_folded = LowerAscii(b);
  return std::tie(a_folded, a) < std::tie(b_folded, b);
}

}  // namespace

ColorSchemes::ColorSchemes(Settings& settings, const ProgramFolder& folder)
    : settings_(settings), folder_(folder) {}

std::string ColorSchemes::InFolder(std::string_view folder, const std::string& name) const {
  return std::string(folder) + std::string(kFolder) + name + std::string(kSchemeEnding);
}

std::string ColorSchemes::FileOf(const std::string& name) const {
  if (!CanBeName(name)) return {};
  for (const std::string& folder : folder_.DataFolders()) {
    std::string file = InFolder(folder, name);
    if (FileExists(file)) return file;
  }
  return {};
}

std::string ColorSchemes::OwnFileOf(const std::string& name) const {
  return InFolder(folder_.AppFolder(), name);
}

void ColorSchemes::LoadColorInfo() {
  const std::string file = FileOf(Current());
  if (!file.empty()) ReadColorFile(file, settings_.Colors);
}

SchemeError ColorSchemes::SaveColorInfo() const {
  const std::string name = Current();
  if (!CanBeName(name)) return Error(EINVAL);
  errno = 0;
  return WriteColorFile(OwnFileOf(name), settings_.Colors) ? SchemeError{} : LastError();
}

std::vector<std::string> ColorSchemes::Names() const {
  std::vector<std::string> names;
  for (const std::string& folder : folder_.DataFolders()) {
    for (std::string& file : ListFilesInFolder(folder + std::string(kFolder), "*.*")) {
      if (file.size() <= kSchemeEnding.size() || !file.ends_with(kSchemeEnding)) continue;
      file.resize(file.size() - kSchemeEnding.size());
      names.push_back(std::move(file));
    }
  }
  std::sort(names.begin(), names.end(), Before);
  names.erase(std::unique(names.begin(), names.end()), names.end());
  return names;
}

std::string ColorSchemes::Current() const {
  std::string_view name = settings_.ColorScheme;
  if (name.ends_with(kSchemeEnding)) name.remove_suffix(kSchemeEnding.size());
  return std::string(name.empty() ? kDefaultScheme : name);
}

void ColorSchemes::SetCurrent(const std::string& name) {
  settings_.ColorScheme = name + std::string(kSchemeEnding);
}

bool ColorSchemes::Exists(const std::string& name) const {
  return !FileOf(name).empty();
}

SchemeError ColorSchemes::Copy(const std::string& new_name) const {
  const std::string file = FileOf(Current());
  if (file.empty()) return Error(ENOENT);
  if (Exists(new_name)) return Error(EEXIST);
  // A file that was cut short becomes a whole one.
  ColorTable colors = settings_.Colors;
  ReadColorFile(file, colors);
  errno = 0;
  return WriteColorFile(OwnFileOf(new_name), colors) ? SchemeError{} : LastError();
}

SchemeError ColorSchemes::Rename(const std::string& new_name) const {
  if (!Exists(Current())) return Error(ENOENT);
  const std::string file = OwnFileOf(Current());
  if (!FileExists(file)) {
    return {EROFS,
            Tr("This scheme belongs to Kestrelview and can't be renamed. New makes a copy.")};
  }
  if (Exists(new_name)) return Error(EEXIST);
  errno = 0;
  return MoveFileApi(file, OwnFileOf(new_name)) ? SchemeError{} : LastError();
}

SchemeError ColorSchemes::Delete() const {
  if (!Exists(Current())) return Error(ENOENT);
  const std::string file = OwnFileOf(Current());
  if (!FileExists(file)) {
    return {EROFS, Tr("This scheme belongs to Kestrelview and can't be deleted.")};
  }
  return unlink(file.c_str()) == 0 ? SchemeError{} : LastError();
}

}  // namespace kv
