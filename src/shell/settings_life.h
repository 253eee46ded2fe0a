// The settings' way into the program at its start and out of it at its end.
//
// Reads "config.dat" and brings what must reach controls there; gathers what lives in controls and
// writes the file; applies the whole record to the live window. Reports nothing: a missing file is
// an empty record, a folder that cannot be written loses this run's settings. Owned by `frmMain`;
// interface thread only.
#pragma once

#include "shell/sliders.h"
#include "state/settings.h"
#include "system/app_folder.h"
#include "system/message_pump.h"
#include "system/shell_services.h"

#include <string>

namespace kv {

// A window's place in twips, 15 to a pixel.
struct WindowPlace {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
};

enum class WindowState { kNormal = 0, kMinimised = 1, kMaximised = 2 };

// What the settings are applied to. `UpdateSettings` calls these in the order of its steps.
class SettingsHost {
 public:
  virtual ~SettingsHost() = default;

  // While loading
  virtual void ShowAbout() = 0;  // modal
  virtual void SetMeterSampleRate(int hertz) = 0;
  virtual void LoadColorInfo() = 0;

  // While saving
  virtual WindowState State() const = 0;
  virtual WindowPlace Place() const = 0;

  // While updating
  virtual void SetBusyPointer(bool busy) = 0;
  virtual void UpdateMeterWindow() = 0;  // the meter of `frmVumeter`, restarted with the settings
  virtual void UpdateMenuChecks() = 0;
  virtual void UpdateFileDisp(const std::string& text) = 0;
  virtual void SetAutoHideMode() = 0;
  virtual void AdjustView() = 0;
  virtual void ScaleMovie(bool ForcePanel) = 0;
  virtual void UpdateTrendChart() = 0;
  virtual void UpdateTraySettings() = 0;
  virtual void UpdateMainMeter() = 0;  // `VuMeter1`, stopped, with the settings
  virtual void SetVumeterVisible() = 0;
  virtual void SetPanelVisible(bool visible) = 0;
  virtual void Form_Resize() = 0;
};

class SettingsLife {
 public:
  SettingsLife(SettingsHost& host, Settings& settings, const SliderModels& models,
               const ProgramFolder& folder, ShellServices& shell, MessagePump& pump);

  // Called once, from the form's load, after the sliders have their marks and the plug-ins were
  // scanned. A first run plays the welcome sound, which then is the first medium, and shows the
  // About box.
  void LoadSettings();

  // Called once, at the end; does nothing for a record that was never read, as it would replace the
  // user's by an empty one. With the "-clear" switch on `command_line` the state of this run is
  // forgotten, no option is.
  void SaveSettings(const std::string& command_line);

  // The same without a look at the window, which may be gone.
  void SaveAtOnce();

  // Applies all settings to the live window.
  void UpdateSettings();

 private:
  SettingsHost& host_;
  Settings& settings_;
  SliderModels models_;
  const ProgramFolder& folder_;
  ShellServices& shell_;
  MessagePump& pump_;
  bool loaded_ = false;
};

}  // namespace kv
