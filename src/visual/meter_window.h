// The rules of `frmVumeter`, the visualisation in a window of its own: its load and end, its keys,
// what the mouse on the meter does.
//
// Owned by the window; interface thread only.
#pragma once

#include "state/settings.h"
#include "system/dialogs.h"
#include "system/timers.h"
#include "visual/hosted_meter.h"
#include "visual/plugin_catalogue.h"
#include "visual/plugin_hosting.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace kv {

// A window's place, pixels of the desktop.
struct MeterWindowPlace {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
};

class MeterWindowForm {
 public:
  virtual ~MeterWindowForm() = default;
  virtual void SetCaption(const std::string& text) = 0;
  virtual void Move(const MeterWindowPlace& place) = 0;
  virtual MeterWindowPlace Place() const = 0;
  // Ends the window by the program's own doing.
  virtual void Unload() = 0;
  virtual void PopUpMenu() = 0;
  virtual void OpenPluginManager() = 0;
  // `ConfigPlugin` of the main window.
  virtual void ConfigMainPlugin() = 0;
  // Shows the pointer, should it be hidden.
  virtual void ShowPointer() = 0;
  // `UpdateVuRunning` of the main window.
  virtual void EnableUpdateVuRunning() = 0;
};

enum class MeterUnloadMode { kUser = 0, kProgram = 1, kSession = 2 };

class MeterWindow {
 public:
  // All must outlive this object, and the catalogue is that of `hosting`.
  struct Parts {
    MeterWindowForm& form;
    HostedMeter& VuMeter1;
    PluginHosting& hosting;
    Settings& settings;
    VisualState& state;
    Dialogs& dialogs;
    TimerSource& time;
    const HostedMeter& main_meter;
  };

  explicit MeterWindow(const Parts& parts);
  MeterWindow(const MeterWindow&) = delete;
  MeterWindow& operator=(const MeterWindow&) = delete;
  ~MeterWindow();

  // Tells when the sound cannot be had, and the window goes by itself then.
  void Form_Load();
  // The window ends; once.
  void Form_QueryUnload(MeterUnloadMode mode);

  // Virtual key code, and the sum of 1 Shift, 2 Ctrl, 4 Alt. True when the key means something.
  bool Form_KeyDown(int KeyCode, int Shift);

  void VuMeter1_Click();
  void VuMeter1_DblClick();
  void VuMeter1_MouseDown(PluginMouse mouse) { Forward("MouseDown", mouse); }
  void VuMeter1_MouseMove(PluginMouse mouse) { Forward("MouseMove", mouse); }
  void VuMeter1_MouseUp(PluginMouse mouse);

  void UpdateColors();

  // "Configure plugin..." can be chosen.
  bool CanConfigure() const;
  void ConfigPlugin();

  // The caption, by what is shown now.
  void UpdateCaption();

 private:
  void Forward(std::string_view member, PluginMouse& mouse);
  void SavePlace();

  Parts parts_;
  std::unique_ptr<Timer> UnloadTimer_;
  bool ClosedByEscape_ = false;
};

}  // namespace kv
