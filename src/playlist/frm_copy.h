// `frmCopy`, the window that copies files to a folder of the user's choice and shows how far it is.
//
// It does not hold up the player: the files are copied by a thread, and everything else goes on.
// Owned by the window it belongs to, and deletes itself when all is over. Interface thread only.
#pragma once

#include "controls/copy_files.h"
#include "controls/file_copier.h"
#include "system/dialogs_qt.h"
#include "system/text_platform.h"
#include "system/timers.h"

#include <QWidget>

#include <memory>
#include <string>
#include <vector>

class QLabel;
class QPushButton;

namespace kv {

class FileCopierBar;
class ElidedLabel;

class frmCopy : public QWidget, private CopyFilesWindow {
  Q_OBJECT

 public:
  // `files`: the paths to copy, in their order. `owner` may be null; with it the window is
  // destroyed, too, which waits until the piece on its way is written and the temporary file gone.
  // `open` is true as long as this object lives. All references must outlive it.
  frmCopy(std::vector<std::string> files, TimerSource& time, const TextPlatform& text, bool& open,
          QWidget* owner);
  ~frmCopy() override;

  // Shows the window; the question for the folder follows when it is on the screen.
  void Form_Load();

  // As Command1, and takes the window off the screen at once.
  void Form_Unload() { close(); }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void CopyStartTimer();
  void Command1_Click();

  // CopyFilesWindow
  void ShowLabels(const std::string& label1, const std::string& label2,
                  const std::string& label3) override;
  bool AskRetry(const std::string& text) override;
  void Unload() override;

  bool& open_;
  DialogsQt dialogs_;
  FileCopier copier_;
  CopyFiles files_;
  ElidedLabel* Label1_;
  QLabel* Label2_;
  ElidedLabel* Label3_;
  std::unique_ptr<FileCopierBar> FileCopier1_;  // goes before its copier
  QPushButton* Command1_;
  std::unique_ptr<Timer> CopyStartTimer_;
  bool started_ = false;  // the folder was asked for, so that `files_` brings the end
};

}  // namespace kv
