#include "visual/plugin_folders.h"

#include "system/app_folder.h"
#include "system/files.h"
#include "system/ini_file.h"
#include "system/paths.h"

#include <algorithm>

namespace kv {
namespace {

constexpr std::string_view kPattern = ".so";
constexpr std::string_view kFolder = "plugins/";
constexpr std::string_view kSection = "Plugins";

void AddFolder(std::vector<std::string>& folders, std::string folder) {
  if (!folder.ends_with('/')) folder += '/';
  if (std::find(folders.begin(), folders.end(), folder) == folders.end()) {
    folders.push_back(std::move(folder));
  }
}

}  // namespace

std::vector<std::string> PluginFolders(const std::string& app_folder,
                                       const std::string& executable_path,
                                       std::string_view installed_below_prefix,
                                       const std::string& installed) {
  std::vector<std::string> folders;
  AddFolder(folders, app_folder + std::string(kFolder));
  const std::string beside = FolderOfPath(executable_path);
  if (!beside.empty()) {
    AddFolder(folders, beside + std::string(kFolder));
    AddFolder(folders, beside + "../" + std::string(installed_below_prefix));
  }
  if (!installed.empty()) AddFolder(folders, installed);
  return folders;
}

std::vector<std::string> PluginFolders(const std::string& app_folder) {
  return PluginFolders(app_folder, AppFolderSources::OfThisProcess().executable_path,
                       KV_PLUGINS_BELOW_PREFIX, KV_PLUGINS_INSTALLED);
}

std::vector<PluginLibrary> ListPluginLibraries(const std::vector<std::string>& folders) {
  std::vector<PluginLibrary> libraries;
  std::vector<std::string> seen;
  for (const std::string& folder : folders) {
    std::vector<std::string> names = ListFilesInFolder(folder, kPattern);
    std::sort(names.begin(), names.end());
    for (const std::string& name : names) {
      std::string prog_id = ReadIniString(folder + "plugins.ini", kSection, name, "");
      if (prog_id.empty() || std::find(seen.begin(), seen.end(), name) != seen.end()) continue;
      seen.push_back(name);
      libraries.push_back({folder, name, std::move(prog_id)});
    }
  }
  return libraries;
}

}  // namespace kv
