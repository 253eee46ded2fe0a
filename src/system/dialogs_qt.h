// The questions as real windows: message boxes, file, folder and colour dialogs of the desktop.
//
// File and folder dialogs are the desktop's own where it offers them, else the toolkit's. Whoever
// shows questions owns one. Interface thread only.
#pragma once

#include "system/dialogs.h"
#include "system/portal_file_dialog_qt.h"

#include <QDBusConnection>
#include <QHash>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <optional>
#include <string>

namespace kv {

class DialogsQt : public Dialogs {
 public:
  // The window that the questions belong to while none of the program's has the keyboard; none:
  // the program as a whole.
  explicit DialogsQt(QWidget* owner = nullptr);

  // From now on files and folders are asked for by the portal on this bus, if there is one.
  void UsePortal(const QDBusConnection& bus) { portal_.emplace(bus); }

  BoxAnswer ShowMessageBox(const MessageBoxRequest& request) override;
  FileDialogResult ShowFileDialog(const FileDialogRequest& request) override;
  ColorDialogResult ShowColorDialog(std::int32_t initial, const CustomColors& custom) override;
  std::string BrowseDirectorysOnly(const std::string& title, const std::string& start) override;

 private:
  QWidget* Owner() const;
  PortalFileAnswer AskPortal(const PortalFileQuestion& question);

  QPointer<QWidget> owner_;
  std::optional<PortalFileDialog> portal_;
  QHash<QString, QString> last_group_;  // what was last selected, by the filter that offered it
};

}  // namespace kv
