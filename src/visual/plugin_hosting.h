// Visualisations: which one shows where and when, and what it gets.
//
// The meter in the main window covers the movie area while sound plays without a picture; the meter
// of `frmVumeter` has a window of its own. Either shows its own display or what the live plug-in
// paints. All errors of plug-ins are ignored. Many of these calls pump messages. Owned by the main
// window; interface thread only.
#pragma once

#include "state/settings.h"
#include "system/message_pump.h"
#include "system/timers.h"
#include "visual/hosted_meter.h"
#include "visual/plugin_catalogue.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kv {

// What visualisations ask of the main window.
class HostingForm {
 public:
  virtual ~HostingForm() = default;
  virtual bool FormMinimised() const = 0;
  virtual bool DS_IsPaused() const = 0;
  virtual bool DS_IsRunning() const = 0;
  // The medium has a picture: width or height of the movie is not 0.
  virtual bool HasPicture() const = 0;
  virtual void UpdateMenuChecks() = 0;
  virtual void SetTempWindowCaption(const std::string& text) = 0;
  virtual void SetCursor(bool show, bool force) = 0;
};

class PluginHosting {
 public:
  // All must outlive this object. `VuMeter1` is the meter of the main window.
  struct Parts {
    PluginCatalogue& catalogue;
    HostedMeter& VuMeter1;
    Settings& settings;
    const VisualState& state;
    MessagePump& pump;
    const TimerSource& time;
  };

  PluginHosting(HostingForm& form, const Parts& parts);
  PluginHosting(const PluginHosting&) = delete;
  PluginHosting& operator=(const PluginHosting&) = delete;

  // `frmVumeter` tells of its meter while it is loaded, and null when it goes.
  void SetWindowMeter(HostedMeter* meter) { window_meter_ = meter; }

  // --- Which one

  // At the start, when the settings are read: the chosen plug-in becomes live, if one is chosen.
  void LoadExternalPlugin();

  // Makes the entry the plug-in in use; nothing for an index that is none.
  void SetExPlugIn(std::int32_t Index);

  // The three built-in displays, then every plug-in, then the first display again.
  void CyclePlugins();

  // `DemoTimer`, each second while the demo mode is on: another visualisation every 15 seconds
  // while the meter of the main window is on view.
  void DemoTick();

  // Next display of the meter in the main window, unless a plug-in is in use.
  void SetVuMeterStyle();

  // --- The meters

  // Decides anew whether the meter in the main window runs and shows.
  void SetVumeterVisible();

  // Stops the meter in use, that of the window while it is open; true when it ran.
  bool StopMeter();
  // Starts the meter in use.
  void StartMeter();

  // Around a popup menu of a slider, so that the menu does not stutter.
  void PrepareVUStop() { MeterWasRunning_ = StopMeter(); }
  void PrepareVUStart();

  // Shows or hides the meter of the main window, which never covers a picture.
  void ShowVuMeter1(bool visible);
  // Stops the meter of the main window, hidden or not.
  void StopVuMeter1();
  // Hides it, too.
  void PutAwayVuMeter1();

  // The meter of the main window with the settings, stopped; SetVumeterVisible starts it.
  void UpdateMainMeter();
  // The meter of `frmVumeter`, if it is open, with the settings, started anew.
  void UpdateMeterWindow();

  // --- The plug-in

  // A frame of `meter`, on the form that is on view or not. `Cancel` becomes true when the meter is
  // to paint nothing of its own.
  void Frame(HostedMeter& meter, bool on_view, std::vector<std::uint8_t>& Samples,
             std::int32_t& Count, bool& Cancel);

  // A medium has been opened.
  void ExtPluginMediaChanged();

  // Opens the dialog of the live plug-in, if it has one. Returns when the plug-in does.
  void ConfigPlugin();

  PluginCatalogue& Catalogue() { return parts_.catalogue; }

 private:
  // There is nothing for the meter in the main window to show.
  bool Idle() const;
  HostedMeter& MeterInUse();
  std::string CycleFromPlugin();
  std::string CycleFromBuiltIn();
  std::string TakeEntry(std::int32_t index);

  HostingForm& form_;
  Parts parts_;
  HostedMeter* window_meter_ = nullptr;
  std::int32_t CurrentPluginIndex_ = 0;
  std::optional<TimerSource::TimePoint> DemoNextSwitch_;
  bool MeterWasRunning_ = false;
};

}  // namespace kv
