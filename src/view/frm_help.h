// `frmHelp`: the program's help pages in a window of their own. Not modal.
//
// Alt+Left and Alt+Right go through the pages seen, Ctrl and the wheel change the size of the text,
// Esc closes. Pages of the help are shown here, everything else by the program that the user
// prefers for it. Interface thread only.
#pragma once

#include "system/shell_services.h"

#include <QString>
#include <QTextBrowser>
#include <QUrl>
#include <QWidget>

#include <string>

namespace kv {

class frmHelp : public QWidget {
  Q_OBJECT

 public:
  // Shows `page`, a file. `shell` must outlive the window.
  frmHelp(const std::string& page, ShellServices& shell, QWidget* parent);

  QTextBrowser& Browser() { return *WebBrowser1; }

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void Navigate(const QUrl& address);
  void ShowPage(const QUrl& page);

  ShellServices& shell_;
  QTextBrowser* WebBrowser1;  // a child
};

}  // namespace kv
