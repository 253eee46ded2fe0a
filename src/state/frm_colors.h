// `frmColors`: chooses, makes and edits colour schemes; every change is seen at once everywhere.
//
// Not modal. Made at need and deletes itself when it is closed. What it does is ColorEditor's.
// Interface thread only.
#pragma once

#include "controls/smart_menu.h"
#include "state/color_editor.h"
#include "state/color_file.h"
#include "state/desktop_color_qt.h"
#include "state/dialog_look_qt.h"
#include "system/dialogs_qt.h"
#include "system/window_services_qt.h"

#include <QPointer>
#include <QWidget>

#include <functional>
#include <optional>
#include <string>
#include <vector>

class QComboBox;
class QPushButton;
class QTreeWidget;

namespace kv {

class frmColors : public QWidget, private ColorEditorHost, private SmartMenuSource {
  Q_OBJECT

 public:
  // All must outlive the window. `colors` is the table of the settings; `refresh` brings it to
  // every window, this one included (see SetColors).
  frmColors(ColorSchemes& schemes, ColorTable& colors, WindowServicesQt& windows,
            std::function<void()> refresh, QWidget* owner);
  ~frmColors() override;

  // Shows the window.
  void Form_Load();

  // Takes the window off the screen with all that it has opened; it deletes itself as soon as
  // nothing of it runs any more.
  void Form_Unload() { close(); }

  // Puts the colours of the table into force here.
  void SetColors(const ColorTable& colors);

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void LayOut();
  void BuildMenu();
  void FillColorList();
  void FillCombo1();
  void Combo1_Click(int index);
  void MENU_Click(int id);
  void ColorList_Menu(QPoint global);
  void ChangeColors();
  void CaptureColor();
  void SelectionChanged();
  std::vector<ColorSlot> Selected() const;
  // Runs what may ask something, and keeps the window alive meanwhile.
  void Ask(const std::function<void()>& work);

  // ColorEditorHost
  std::optional<std::string> InputBox(const std::string& prompt, const std::string& title,
                                      const std::string& text) override;
  void RefreshColors() override;
  void SchemesChanged() override;

  // SmartMenuSource
  std::vector<SmartMenuItem> MenuItems() const override;
  void SetMenuItemChecked(int /*id*/, bool /*checked*/) override {}

  ColorSchemes& schemes_;
  ColorTable& colors_;
  std::function<void()> refresh_;
  DialogsQt dialogs_;
  ColorEditor editor_;
  DesktopColor desktop_;
  DialogStyle style_;
  SmartMenu MENU_;
  std::vector<std::string> names_;  // of the lines of Combo1, byte for byte

  QComboBox* Combo1_;
  QTreeWidget* ColorList_;
  QPushButton* Command1_;  // new
  QPushButton* Command2_;  // rename
  QPushButton* Command3_;  // delete
  QPushButton* Command4_;  // close
  QPushButton* change_;
  QPushButton* capture_;
  int busy_ = 0;  // questions and menus that are open
  bool unloaded_ = false;
};

}  // namespace kv
