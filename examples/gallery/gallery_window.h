// The window of the gallery: one page for each control.
#pragma once

#include "controls/smart_menu.h"
#include "property_page.h"
#include "system/cpu_usage.h"
#include "system/dialogs_qt.h"
#include "system/registry.h"
#include "system/timers.h"

#include <QLabel>
#include <QTabWidget>
#include <QTemporaryDir>

#include <string>
#include <vector>

namespace kv {

class GalleryWindow : public QWidget, private SmartMenuSource {
 public:
  // `time` must outlive the window.
  explicit GalleryWindow(TimerSource& time);

  void ShowHotKey(const std::string& state);

 private:
  // A control above the page of its properties.
  QWidget* AddPage(const char* title, QWidget* control, PropertyPage* page);
  void AddChart(TimerSource& time);
  void AddColors();
  void AddLines();
  void AddSliders();
  void AddButtons();
  void AddCopying();

  std::vector<SmartMenuItem> MenuItems() const override;
  void SetMenuItemChecked(int id, bool checked) override;

  QTemporaryDir folder_;  // of the chooser's own colours
  DialogsQt dialogs_;
  Registry registry_;
  clsCPUUsageNT probe_;
  CpuGraphFeed feed_;
  SmartMenu menu_;
  bool menu_checked_ = true;
  QTabWidget* pages_;
  QLabel* hot_key_;
};

}  // namespace kv
