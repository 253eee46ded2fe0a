// "plugins.ini" beside libraries.
#include "support.h"
#include "system/ini_file.h"
#include "visual/plugin_folders.h"

#include <set>

namespace kv::fuzz {

void Try(std::string_view input) {
  static const Folder folder;
  static const bool made = [] {
    for (const char* name : {"user/a.so", "user/B b.so", "user/\xFF=.so", "own/a.so", "own/c.so"}) {
      folder.Write(name, "");
    }
    folder.Write("own/plugins.ini", "[Plugins]\na.so=Installed\nc.so=Installed\n");
    return true;
  }();
  folder.Write("user/plugins.ini", input);
  std::set<std::string> names;
  for (const PluginLibrary& library :
       ListPluginLibraries({folder.Path() + "user/", folder.Path() + "own/"})) {
    Require(made && names.insert(library.File).second, "each library once");
    Require(!library.ProgId.empty() && library.ProgId.size() < kIniValueBuffer, "an object's name");
    Require(library.ProgId.find('\n') == std::string::npos, "of one line");
  }
  Require(names.count("c.so") == 1, "what the program brings stays");
}

}  // namespace kv::fuzz
