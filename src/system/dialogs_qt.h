// The questions as real windows: message boxes, file, folder and colour dialogs of the desktop.
//
// Whoever shows questions owns one. Interface thread only.
#pragma once

#include "system/dialogs.h"

#include <QHash>
#include <QPointer>
#include <QString>
#include <QWidget>

namespace kv {

class DialogsQt : public Dialogs {
 public:
  // The window that the questions belong to while none of the program's has the keyboard; none:
  // the program as a whole.
  explicit DialogsQt(QWidget* owner = nullptr);

  BoxAnswer ShowMessageBox(const MessageBoxRequest& request) override;
  FileDialogResult ShowFileDialog(const FileDialogRequest& request) override;
  ColorDialogResult ShowColorDialog(std::int32_t initial, const CustomColors& custom) override;
  std::string BrowseDirectorysOnly(const std::string& title, const std::string& start) override;

 private:
  QWidget* Owner() const;

  QPointer<QWidget> owner_;
  QHash<QString, QString> last_group_;  // what was last selected, by the filter that offered it
};

}  // namespace kv
