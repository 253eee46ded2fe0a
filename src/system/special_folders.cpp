#include "system/special_folders.h"

#include "system/ascii_text.h"
#include "system/files.h"
#include "system/paths.h"

#include <cstdlib>
#include <pwd.h>
#include <string_view>
#include <unistd.h>

namespace kv {
namespace {

// How a folder is found: `variable` in the environment or, for the user's own kind of folder, in
// the list that the desktop keeps; else `fallback` below the home folder.
struct SpecialFolder {
  int id;
  bool user_folder;
  std::string_view variable;
  std::string_view fallback;
  std::string_view below;
};

constexpr SpecialFolder kFolders[] = {
    {kSpecialDesktop, true, "XDG_DESKTOP_DIR", "Desktop/", ""},
    {kSpecialDesktopDirectory, true, "XDG_DESKTOP_DIR", "Desktop/", ""},
    {kSpecialPersonal, true, "XDG_DOCUMENTS_DIR", "Documents/", ""},
    {kSpecialMyMusic, true, "XDG_MUSIC_DIR", "Music/", ""},
    {kSpecialMyVideo, true, "XDG_VIDEOS_DIR", "Videos/", ""},
    {kSpecialMyPictures, true, "XDG_PICTURES_DIR", "Pictures/", ""},
    {kSpecialTemplates, true, "XDG_TEMPLATES_DIR", "Templates/", ""},
    {kSpecialStartup, false, "XDG_CONFIG_HOME", ".config/", "autostart/"},
    {kSpecialAppData, false, "XDG_CONFIG_HOME", ".config/", ""},
    {kSpecialLocalAppData, false, "XDG_DATA_HOME", ".local/share/", ""},
    {kSpecialInternetCache, false, "XDG_CACHE_HOME", ".cache/", ""},
    {kSpecialProfile, false, "HOME", "", ""},
};

std::string Variable(std::string_view name) {
  const char* value = std::getenv(std::string(name).c_str());
  return value == nullptr ? std::string() : std::string(value);
}

std::string WithSlash(std::string folder) {
  if (!folder.ends_with('/')) folder += '/';
  return folder;
}

// The base directories count only when absolute (XDG Base Directory Specification).
std::string BaseFolder(std::string_view variable, std::string_view fallback) {
  std::string value = Variable(variable);
  return IsNativePath(value) ? WithSlash(std::move(value)) : HomeFolder() + std::string(fallback);
}

// Lines of user-dirs.dirs read XDG_MUSIC_DIR="$HOME/Music" or XDG_MUSIC_DIR="/absolute".
std::string UserFolder(std::string_view variable) {
  const std::string list =
      ReadTextFile(BaseFolder("XDG_CONFIG_HOME", ".config/") + "user-dirs.dirs");
  std::string found;
  for (std::size_t at = 0; at < list.size();) {
    const std::size_t end = std::min(list.find('\n', at), list.size());
    std::string_view line = TrimBlanks(std::string_view(list).substr(at, end - at));
    at = end + 1;
    if (!line.starts_with(variable)) continue;
    line.remove_prefix(variable.size());
    if (!line.starts_with("=\"") || !line.ends_with('"') || line.size() < 3) continue;
    line = line.substr(2, line.size() - 3);
    constexpr std::string_view kHome = "$HOME/";
    if (line.starts_with(kHome)) {
      found = WithSlash(HomeFolder() + std::string(line.substr(kHome.size())));
    } else if (IsNativePath(line)) {
      found = WithSlash(std::string(line));
    }
  }
  return found;
}

}  // namespace

std::string HomeFolder() {
  std::string home = Variable("HOME");
  if (IsNativePath(home)) return WithSlash(std::move(home));
  const passwd* entry = getpwuid(getuid());
  return entry != nullptr && entry->pw_dir != nullptr ? WithSlash(entry->pw_dir) : "/";
}

std::string GetTempFolder() {
  std::string folder = Variable("TMPDIR");
  return IsNativePath(folder) && FolderExists(folder) ? WithSlash(std::move(folder)) : "/tmp/";
}

std::string GetSpecialFolder(int folder_id) {
  for (const SpecialFolder& folder : kFolders) {
    if (folder.id != folder_id) continue;
    if (folder.id == kSpecialProfile) return HomeFolder();
    if (!folder.user_folder) {
      return BaseFolder(folder.variable, folder.fallback) + std::string(folder.below);
    }
    std::string listed = UserFolder(folder.variable);
    return listed.empty() ? HomeFolder() + std::string(folder.fallback) : listed;
  }
  return {};
}

}  // namespace kv
