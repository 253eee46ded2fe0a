// Where plug-in libraries lie, and what "plugins.ini" says of them.
//
// A plug-in is a shared library in a folder "plugins"; the file "plugins.ini" beside it has a
// section [Plugins] with a line "library.so=ObjectName". Read and never written. Any thread.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kv {

struct PluginLibrary {
  std::string Folder;  // with a trailing "/"
  std::string File;    // its name in the folder
  std::string ProgId;
};

// The folders in the order of their say, each with a trailing "/": that of the user's program
// folder, that beside the executable, those of an installed program. `app_folder` ends in "/",
// `executable_path` is absolute; `installed_below_prefix` is a folder below the prefix
// ("lib/kestrelview/plugins"), `installed` the one fixed at build time.
std::vector<std::string> PluginFolders(const std::string& app_folder,
                                       const std::string& executable_path,
                                       std::string_view installed_below_prefix,
                                       const std::string& installed);

// The same for the running program.
std::vector<std::string> PluginFolders(const std::string& app_folder);

// All libraries that a line names, folder by folder, by name in each. A library of a name that an
// earlier folder has already is left out, so that the user's own stands before the installed one.
std::vector<PluginLibrary> ListPluginLibraries(const std::vector<std::string>& folders);

}  // namespace kv
