// The player's other windows: which is open, and how each is brought up and taken down.
//
// A modal window's call returns when it is closed; of each modal kind there is one at a time. All
// go down with the main window. Owned by `frmMain`; interface thread only.
#pragma once

#include "state/color_scheme.h"
#include "state/dialog_look_qt.h"
#include "state/session.h"
#include "state/settings.h"
#include "system/app_folder.h"
#include "system/shell_services.h"
#include "system/window_services_qt.h"

#include <QPalette>
#include <QPointer>
#include <QWidget>

#include <functional>
#include <string>

namespace kv {

class frmAbout;
class frmColors;
class frmHelp;
class frmSettings;

class Forms {
 public:
  // All must outlive this object.
  struct Parts {
    QWidget& main;  // the owner of every window
    const ProgramFolder& folder;
    ShellServices& shell;
    WindowServicesQt& windows;
    Settings& settings;
    const Session& session;
    // Brings the colours of the settings to every window, by SetColors() to these.
    std::function<void()> refresh_colors;
    // Takes a new window among those of the program, which snap and hand the wheel on.
    std::function<void(QWidget& window)> adopt;
  };

  explicit Forms(Parts parts);
  Forms(const Forms&) = delete;
  Forms& operator=(const Forms&) = delete;
  ~Forms();

  void ShowAbout();  // modal
  void ShowHelp();
  // `frmSettings`, modal: true when the user asks for the colours.
  bool ShowOptions();
  void ShowColors();

  // One of those is open that the tray icon has to wait for.
  bool DialogOpen() const;

  // Reads the scheme of the settings into their colours.
  void LoadColorInfo() { schemes_.LoadColorInfo(); }

  // Takes a scheme into use, if there is one of that name.
  void UseScheme(const std::string& name);

  // The colours of the settings for the windows of this room, boxes included, from now on.
  void SetColors();

  void UnloadAll();

 private:
  Parts parts_;
  ColorSchemes schemes_;
  DialogStyle style_;
  QPalette theme_;  // the desktop's
  QPalette colors_;
  QPointer<frmAbout> about_;
  QPointer<frmColors> color_editor_;
  QPointer<frmSettings> options_;
  QPointer<frmHelp> help_;
};

}  // namespace kv
