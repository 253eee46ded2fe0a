// `frmSaving`, the window of one save: how far it is, and a button that ends it.
//
// Not modal: the player goes on. Each save has a window of its own, which belongs to the main
// window, deletes itself at the end, and destroyed before ends what it does without leaving a
// partial file. Interface thread only.
#pragma once

#include "controls/file_copier.h"
#include "system/dialogs_qt.h"
#include "system/download_qt.h"
#include "system/text_platform.h"
#include "system/timers.h"

#include <QWidget>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

class QLabel;
class QProgressBar;
class QPushButton;

namespace kv {

class frmSaving : public QWidget {
  Q_OBJECT

 public:
  // Shows a window that copies a file, replacing the target.
  static void Copy(const std::string& source, const std::string& target, TimerSource& time,
                   const TextPlatform& text, QWidget* owner);

  // The same for a download. `done` is called at the end, false when it failed and not when it was
  // cancelled. `download` must outlive `owner`.
  static void Fetch(const std::string& url, const std::string& target, DownloadQt& download,
                    TimerSource& time, const TextPlatform& text, std::function<void(bool)> done,
                    QWidget* owner);

  // Ends every save of `owner`.
  static void UnloadAll(QWidget& owner);

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  frmSaving(const std::string& source, const std::string& target, TimerSource& time,
            const TextPlatform& text, QWidget* owner);
  void ShowProgress(std::int64_t done, std::int64_t total);
  void OnCopied(CopyResult result);
  void OnFetched(bool complete);
  void Unload();

  const TextPlatform& text_;
  DialogsQt dialogs_;
  FileCopier copier_;
  std::unique_ptr<FileFetch> fetch_;
  std::function<void(bool)> done_;
  QLabel* Label1_;
  QLabel* Label2_;
  QProgressBar* bar_;
  QPushButton* Command1_;
};

}  // namespace kv
