// Plug-in libraries and their objects, reached by name through the toolkit's meta-object.
//
// A library is loaded when its object is first asked for and stays loaded. What a plug-in throws
// ends here; what it gives in the wrong type is as if missing, and so is a member of other
// arguments. A crash in a plug-in cannot be contained and ends the player. The contract that
// authors read is plugins/include/kestrelview/visual_plugin.h. Interface thread only.
#pragma once

#include "visual/plugin_folders.h"
#include "visual/plugin_object.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

class QObject;
class QPluginLoader;

namespace kv {

class PluginObjectsQt : public PluginObjects {
 public:
  // An object name is looked for in `libraries`, the first that has it gives the object. Plug-ins
  // may keep settings below `app_folder`.
  PluginObjectsQt(std::vector<PluginLibrary> libraries, const std::string& app_folder);
  ~PluginObjectsQt() override;

  const std::vector<PluginLibrary>& Libraries() const { return libraries_; }

  std::shared_ptr<PluginObject> CreateObject(const std::string& ProgId) override;

 private:
  QObject* RootOf(const PluginLibrary& library);

  std::vector<PluginLibrary> libraries_;
  std::map<std::string, std::unique_ptr<QPluginLoader>> loaders_;  // by path
};

// The object behind the interface; takes it over. For plug-ins that lie in no library.
std::shared_ptr<PluginObject> WrapPluginObject(std::unique_ptr<QObject> object);

}  // namespace kv
