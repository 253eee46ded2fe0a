// `frmPlugins`, the plug-in manager: which visualisations there are, what they look like and who
// made them; takes one into use and opens its configuration.
//
// Modal; the rules are in plugin_manager.h. Made for one use by the main window's forms, shown by
// exec(). Interface thread only.
#pragma once

#include "system/text_platform.h"
#include "visual/plugin_manager.h"

#include <QDialog>
#include <QPalette>
#include <QPixmap>

#include <array>
#include <functional>
#include <string>

class QLabel;
class QListWidget;
class QPlainTextEdit;
class QPushButton;

namespace kv {

class frmPlugins : public QDialog {
  Q_OBJECT

 public:
  // All references must outlive the window. `set_meter_caption` puts a caption on `frmVumeter` if
  // it is open.
  struct Parts {
    PluginCatalogue& catalogue;
    Settings& settings;
    VisualState& state;
    const TextPlatform& text;
    std::function<void(const std::string& caption)> set_meter_caption;
  };

  frmPlugins(const Parts& parts, const QPalette& colors, QWidget* parent);
  ~frmPlugins() override;

  void SetColors(const QPalette& colors);

 protected:
  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  QWidget* MakeList();
  QWidget* MakeFacts();
  void FillList();
  void List1_Click();
  void ShowMarkers();
  void ShowPicture(const PluginFacts& facts);
  void Command1_Click();
  void Command2_Click();
  std::size_t Row() const;
  void Unload();

  Parts parts_;
  PluginManager rules_;
  QListWidget* List1_ = nullptr;
  std::array<QLabel*, 6> Label4_{};
  QPlainTextEdit* Text1_ = nullptr;
  QLabel* Image1_ = nullptr;
  QPushButton* Command1_;
  QPushButton* Command2_;
  QPushButton* cmdClose_;
  bool unloaded_ = false;
};

}  // namespace kv
