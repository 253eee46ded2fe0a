// `frmSettings`, "Options": edits the settings by the table of options, and the file types.
//
// Modal; made for one use and shown by exec(). "&OK" stores every control; the slider of the level
// meter stores at once. The caller then applies the settings. Interface thread only.
#pragma once

#include "state/color_file.h"
#include "state/dialog_look_qt.h"
#include "state/file_types.h"
#include "state/options_table.h"
#include "state/settings.h"

#include <QDialog>

#include <functional>
#include <string>
#include <vector>

class QBoxLayout;
class QLabel;
class QTabWidget;
class QTreeWidget;
class QTreeWidgetItem;

namespace kv {

class Scroller;

class frmSettings : public QDialog {
  Q_OBJECT

 public:
  // All must outlive the window. `patterns`: line 1 of "filesupport.dat". `refresh_icons` has the
  // desktop draw its icons anew, after file types have changed owner.
  frmSettings(Settings& settings, FileTypes& types, const std::string& patterns,
              std::function<void()> refresh_icons, QWidget* parent);
  ~frmSettings() override;

  // True when the user has asked for the colours; `frmColors` is to be shown then.
  bool WantsColors() const { return wants_colors_; }

  void SetColors(const ColorTable& colors);

 private:
  // A control and its row of the table.
  struct Bound {
    const OptionRow* row;
    QWidget* widget;
  };

  void BuildPages();
  QBoxLayout* AddPage(QTabWidget& tabs, const OptionPageRow& page);
  void AddHeading(QBoxLayout& page, std::string_view text);
  QWidget* AddControl(QBoxLayout& page, const OptionRow& row);
  QWidget* AddList(QBoxLayout& page, const OptionRow& row);
  QWidget* AddSlider(QBoxLayout& page, const OptionRow& row);
  void AddNote(QBoxLayout& page, const QString& text);
  void AddNotes(QBoxLayout& page, const OptionRow& row);
  void AddFileTypes(QBoxLayout& page);
  void Follow(const Bound& bound);
  QWidget* ControlNamed(std::string_view name) const;
  void ShowSetting(const Bound& bound);
  void StoreSetting(const Bound& bound);
  void Scroller1_Scroll(double value);
  void SelectTypes(bool selected);
  void Command1_Click();
  void Command3_Click();
  void Size();

  Settings& settings_;
  FileTypes& types_;
  const FileTypeList type_list_;
  std::function<void()> refresh_icons_;
  DialogStyle style_;
  std::vector<Bound> bound_;
  std::vector<QLabel*> notes_;
  std::vector<QWidget*> pages_;
  Scroller* Scroller1_ = nullptr;
  QLabel* Label2_ = nullptr;
  QTreeWidget* List1_ = nullptr;
  const QTreeWidgetItem* pressed_ = nullptr;  // a line under the button, and its mark then
  Qt::CheckState pressed_state_ = Qt::Unchecked;
  bool wants_colors_ = false;
};

}  // namespace kv
