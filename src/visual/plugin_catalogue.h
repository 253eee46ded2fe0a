// The catalogue of plug-ins and the one plug-in that is live.
//
// Filled once a run, from the libraries that "plugins.ini" lists; nothing scans again. Making and
// letting go of the live object pumps messages, in which frames arrive and anything else can
// happen: whoever uses `CurrentPlugin` looks at it anew each time, and holds it while calling it.
// Owned by the main window; interface thread only.
#pragma once

#include "state/settings.h"
#include "system/message_pump.h"
#include "visual/plugin_folders.h"
#include "visual/plugin_object.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kv {

// What a plug-in told at the scan; empty or 0 what it did not.
struct PluginEntry {
  std::string Description;
  std::int16_t Type = 0;  // 0 "Audio visualization"
  bool HasConfig = false;
  std::string Version;
  std::string Author;
  std::string AuthorUrl;
  std::string Name;
  std::shared_ptr<const PluginPicture> Picture;
  std::string File;  // the library's name
  std::string Reserved;
  std::string ProgId;
};

// What the rooms of the visualisations share at run time.
struct VisualState {
  bool VumeterOpen = false;        // `frmVumeter` is loaded; written by that window
  bool PluginManagerOpen = false;  // `frmPlugins` is loaded; written by that window
};

class PluginCatalogue {
 public:
  // All must outlive the catalogue.
  PluginCatalogue(PluginObjects& objects, const Settings& settings, const VisualState& state,
                  MessagePump& pump);
  PluginCatalogue(const PluginCatalogue&) = delete;
  PluginCatalogue& operator=(const PluginCatalogue&) = delete;

  // Sets the automatic redraw of the meters; may be empty.
  std::function<void(bool on)> set_auto_redraw;

  // Fills the catalogue, with a fresh object of each library for the time of its reading. A library
  // without an object is left out.
  void ScanPlugins(const std::vector<PluginLibrary>& libraries);

  const std::vector<PluginEntry>& Plugins() const { return plugins_; }
  std::int32_t PluginCount() const { return static_cast<std::int32_t>(plugins_.size()); }
  // Null for an index that is none.
  const PluginEntry* Find(std::int32_t index) const;

  // The live object, or null.
  std::shared_ptr<PluginObject> CurrentPlugin() const { return current_; }

  // Makes the plug-in live in place of the one before, unless no meter is to be seen. True when it
  // could not be made.
  bool CreatePlugin(const std::string& ProgId);

  // The meter's own redraw goes off for a plug-in that paints all by itself, and on for others.
  void ApplyPluginRedraw();

  void DestroyPlugin();

  // An object beside the live one, for its configuration; null when it cannot be made.
  std::shared_ptr<PluginObject> CreateObject(const std::string& ProgId) {
    return objects_.CreateObject(ProgId);
  }

  // The live plug-in says that it has a dialog.
  bool CurrentHasConfig() const;

 private:
  PluginObjects& objects_;
  const Settings& settings_;
  const VisualState& state_;
  MessagePump& pump_;
  std::vector<PluginEntry> plugins_;
  std::shared_ptr<PluginObject> current_;
};

}  // namespace kv
