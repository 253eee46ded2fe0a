// `frmScanning`: how far a long adding has come, with a button to end it. Not modal.
//
// Closing it in any way is Cancel: what has been added stays. `ScanWindowOpen` is true as long as
// it lives. Made and destroyed by `frmPlaylist`; interface thread only.
#pragma once

#include "playlist/list_window.h"
#include "playlist/text_line.h"
#include "state/session.h"

#include <QPushButton>
#include <QWidget>

#include <string>

namespace kv {

class frmScanning : public QWidget, public ScanWindow {
  Q_OBJECT

 public:
  // `session` must outlive the window.
  frmScanning(Session& session, QWidget* owner);
  ~frmScanning() override;
  frmScanning(const frmScanning&) = delete;
  frmScanning& operator=(const frmScanning&) = delete;

  // Ends the walk at its next file or folder.
  void Command1_Click();

  // ScanWindow
  void ShowPath(const std::string& path) override { path_->SetText(path); }
  void ShowCount(const std::string& text) override { count_->SetText(text); }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  Session& session_;
  TextLine* path_;
  TextLine* count_;
  QPushButton* Command1_;
};

}  // namespace kv
