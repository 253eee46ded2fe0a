// The main window's menu: the model that commands work on, and the popup that shows it.
//
// Owned by `frmMain`; interface thread only.
#pragma once

#include "controls/smart_menu.h"
#include "state/settings.h"
#include "system/app_folder.h"
#include "system/text_platform.h"
#include "view/menu_model.h"

#include <QPoint>
#include <QWidget>

#include <array>
#include <cstdint>
#include <functional>

namespace kv {

class MainMenu : private SmartMenuSource, private MenuListener {
 public:
  // All must outlive this object. Captions are measured in the font of `form`, pictures are data
  // files of the program; one that is not there leaves its entry without.
  MainMenu(const Settings& settings, const MenuPlugins& plugins, const TextPlatform& text,
           const ProgramFolder& folder, QWidget& form);
  ~MainMenu() override;
  MainMenu(const MainMenu&) = delete;
  MainMenu& operator=(const MainMenu&) = delete;

  // `MENU` for the rules.
  MenuModel& Model() { return model_; }

  // Called with the id of the entry that the user picks.
  void SetOnClick(std::function<void(int id)> on_click);

  // Takes its colours from the slots of the menu.
  void ApplyColors(const std::array<std::int32_t, kColorSlots>& colors);

  // Shows the menu "M" at `position` of the desktop and returns when it is closed.
  void PopUp(QPoint position);
  void Close() { widget_.Close(); }

 private:
  // SmartMenuSource
  std::vector<SmartMenuItem> MenuItems() const override;
  void SetMenuItemChecked(int id, bool checked) override { model_.SetChecked(id, checked); }

  // MenuListener
  void MenuRebuilt() override { widget_.Rebuild(); }
  void MenuItemChanged(int id) override { widget_.ItemChanged(id); }

  MenuModel model_;
  SmartMenu widget_;
};

}  // namespace kv
