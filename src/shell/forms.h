// The player's other windows: which is open, and how each is brought up and taken down.
//
// A modal window's call returns when it is closed; of each modal kind there is one at a time. All
// go down with the main window. Owned by `frmMain`; interface thread only.
#pragma once

#include "state/session.h"
#include "state/settings.h"
#include "system/app_folder.h"
#include "system/shell_services.h"

#include <QPalette>
#include <QPointer>
#include <QWidget>

#include <functional>

namespace kv {

class frmAbout;
class frmHelp;

class Forms {
 public:
  // All must outlive this object; `main` is the owner of every window.
  Forms(QWidget& main, const ProgramFolder& folder, ShellServices& shell);
  Forms(const Forms&) = delete;
  Forms& operator=(const Forms&) = delete;
  ~Forms();

  void ShowAbout();  // modal
  void ShowHelp();

  bool AboutOpen() const;

  // The colours of the player's windows from now on, those open included.
  void SetColors(const QPalette& colors);

  void UnloadAll();

 private:
  QWidget& main_;
  const ProgramFolder& folder_;
  ShellServices& shell_;
  QPalette colors_;
  QPointer<frmAbout> about_;
  QPointer<frmHelp> help_;
};

}  // namespace kv
