// The rules of `frmPlugins`, the window that lists the visualisations, tells about them, takes one
// into use and configures it.
//
// Row 0 is the built-in meter, row i the entry i - 1 of the catalogue. Owned by the window;
// interface thread only.
#pragma once

#include "state/settings.h"
#include "system/text_platform.h"
#include "visual/plugin_catalogue.h"

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace kv {

// What is told of a row: `values` are type, has config, version, author, website and name.
struct PluginFacts {
  std::array<std::string, 6> values;
  std::string description;
  std::shared_ptr<const PluginPicture> picture;  // null for none, and for the built-in meter
  bool built_in = false;
  bool can_configure = false;
};

class PluginManager {
 public:
  // All must outlive this object.
  PluginManager(PluginCatalogue& catalogue, Settings& settings, VisualState& state,
                const TextPlatform& text);
  PluginManager(const PluginManager&) = delete;
  PluginManager& operator=(const PluginManager&) = delete;
  ~PluginManager();

  // Opens the manager; the active row is found, and is the one to select.
  void Form_Load();
  // Closes it. A plug-in that is being configured beside the live one is told to drop its dialog.
  void Form_QueryUnload();

  // The texts of the rows.
  std::vector<std::string> Rows() const;
  // The row with the marker.
  std::size_t ActiveRow() const { return active_; }

  PluginFacts FactsOf(std::size_t row) const;

  // Takes the row into use. `PluginName` stays as it was, whatever is chosen: captions and the
  // cycle know a plug-in that was chosen here from the next SetExPlugIn on.
  void UsePlugin(std::size_t row);

  // The caption that `frmVumeter` is to have after UsePlugin.
  std::string MeterCaption() const;

  // Opens the dialog of the row's plug-in, on the live object if it is that one, else on an object
  // of its own. Returns when the plug-in does; this manager can have ended meanwhile.
  void ConfigPlugin(std::size_t row);

  bool ConfigOpen() const { return ConfigOpen_; }

 private:
  const PluginEntry* EntryOf(std::size_t row) const;

  PluginCatalogue& catalogue_;
  Settings& settings_;
  VisualState& state_;
  const TextPlatform& text_;
  std::size_t active_ = 0;
  std::shared_ptr<PluginObject> ConfigObject_;
  bool ConfigOpen_ = false;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace kv
