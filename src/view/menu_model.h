// `MENU`, the player's one popup menu as data: its entries, what is checked, enabled and visible.
//
// The tree of command_table.h, with recent files, plug-ins and tracks put in. Whoever shows it
// listens for changes. Owned by `frmMain` through `MainMenu`; interface thread only.
#pragma once

#include "state/settings.h"
#include "system/paths.h"
#include "system/text_platform.h"
#include "view/command_table.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

struct MenuItem {
  int id = 0;      // from 1; the same for the same key as long as the model lives
  int parent = 0;  // id of the entry whose submenu this stands in; 0 for the root
  std::string key;
  CommandType type = CommandType::kPlain;
  std::string caption;  // "&" is just that
  std::string picture;  // file of the program's data, empty for none
  std::int16_t shift = 0;
  std::int16_t key_code = 0;
  bool checked = false;
  bool enabled = true;
  bool visible = true;
};

// The catalogue of plug-ins, indexes from 0 to Count() - 1.
class MenuPlugins {
 public:
  virtual ~MenuPlugins() = default;
  virtual int Count() const = 0;
  virtual std::string Name(int index) const = 0;
  // What `Settings.PluginKey` holds when this one is chosen.
  virtual std::string Key(int index) const = 0;
};

class MenuListener {
 public:
  virtual ~MenuListener() = default;
  virtual void MenuRebuilt() = 0;
  virtual void MenuItemChanged(int id) = 0;
};

class MenuModel {
 public:
  static constexpr int kNoItem = -1;

  // All must outlive the model. `measure` tells the width of a caption in pixels. Empty until the
  // first BuildMenu().
  MenuModel(const Settings& settings, const MenuPlugins& plugins, const TextPlatform& text,
            MeasureText measure);
  MenuModel(const MenuModel&) = delete;
  MenuModel& operator=(const MenuModel&) = delete;

  // Index of the picture of a recent entry: 1 a file, 2 sound, 3 an address.
  static int GetIcon(std::string_view path);

  // Hears of every change from now on; null for nobody.
  void SetListener(MenuListener* listener) { listener_ = listener; }

  // Makes the whole tree anew; every entry is enabled again.
  void BuildMenu();

  // Puts `entries` first in the submenu of `parent`, in the place of those put there before; they
  // stay there when the tree is made anew. Ids come by their keys.
  void SetEntries(std::string_view parent, std::vector<MenuItem> entries);

  // Brings the check marks in line with the settings.
  void UpdateMenuChecks();

  // In the order of the menu, parents before what they hold.
  const std::vector<MenuItem>& Items() const { return items_; }

  // kNoItem for a key that is not in the menu now. Letter case counts.
  int IdOfKey(std::string_view key) const;
  // Null for an id that is not in the menu now; valid until the next BuildMenu().
  const MenuItem* Find(int id) const;

  // An id that is not in the menu now reads as false, and setting it does nothing.
  bool Checked(int id) const;
  bool Enabled(int id) const;
  void SetChecked(int id, bool checked);
  void SetEnabled(int id, bool enabled);

 private:
  void Add(const Command& command);
  void Add(MenuItem item, std::string_view parent);
  void AddRecentFiles();
  void AddPlugins();
  void AddEntries(std::string_view parent);
  int IdFor(const std::string& name);
  void SetCheckedByKey(std::string_view key, bool checked);

  void Set(int id, bool MenuItem::*field, bool value);

  const Settings& settings_;
  const MenuPlugins& plugins_;
  const TextPlatform& text_;
  MeasureText measure_;
  MenuListener* listener_ = nullptr;
  std::vector<MenuItem> items_;
  std::map<std::string, std::vector<MenuItem>, std::less<>> entries_;  // of SetEntries, by parent
  int separators_ = 0;                                                 // without a key, so far
  std::map<std::string, int, std::less<>> ids_;  // of every key there ever was
};

}  // namespace kv
