#include "system/app_folder.h"

#include "system/files.h"
#include "system/paths.h"
#include "system/special_folders.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <unistd.h>

#ifndef KV_DATA_FOLDER
#define KV_DATA_FOLDER ""
#endif
#ifndef KV_LOCALE_FOLDER
#define KV_LOCALE_FOLDER ""
#endif

namespace kv {
namespace {

std::string Environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

std::string WithSlash(std::string folder) {
  if (!folder.ends_with('/')) folder += '/';
  return folder;
}

std::string ChooseAppFolder(const AppFolderSources& sources) {
  if (!sources.kestrelview_home.empty()) {
    std::error_code error;
    const auto absolute = std::filesystem::absolute(sources.kestrelview_home, error);
    return WithSlash(error ? sources.kestrelview_home : absolute.native());
  }
  std::string beside = FolderOfPath(sources.executable_path);
  if (IsNativePath(beside) && FileExists(beside + "config.dat") &&
      access(beside.c_str(), W_OK | X_OK) == 0) {
    return beside;
  }
  if (IsNativePath(sources.xdg_data_home)) return WithSlash(sources.xdg_data_home) + "kestrelview/";
  return WithSlash(sources.user_home) + ".local/share/kestrelview/";
}

}  // namespace

AppFolderSources AppFolderSources::OfThisProcess() {
  std::error_code error;
  const auto executable = std::filesystem::read_symlink("/proc/self/exe", error);
  return {Environment("KESTRELVIEW_HOME"),
          Environment("XDG_DATA_HOME"),
          HomeFolder(),
          error ? std::string() : executable.native(),
          KV_DATA_FOLDER,
          KV_LOCALE_FOLDER};
}

ProgramFolder::ProgramFolder(const AppFolderSources& sources)
    : app_folder_(ChooseAppFolder(sources)), locale_folder_(sources.locale_folder) {
  CreateFolders(app_folder_);
  data_folders_.push_back(app_folder_);
  if (IsNativePath(sources.executable_path)) {
    const std::filesystem::path beside = FolderOfPath(sources.executable_path);
    data_folders_.push_back((beside / "../share/kestrelview/").lexically_normal().native());
    const std::string installed = (beside / "../share/locale").lexically_normal().native();
    if (FolderExists(installed)) locale_folder_ = installed;
  }
  if (!sources.data_folder.empty()) data_folders_.push_back(WithSlash(sources.data_folder));
}

std::string ProgramFolder::DataFile(std::string_view name) const {
  for (const std::string& folder : data_folders_) {
    std::string path = folder + std::string(name);
    if (access(path.c_str(), F_OK) == 0) return path;
  }
  return app_folder_ + std::string(name);
}

}  // namespace kv
