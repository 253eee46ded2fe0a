// Visualisations in the running player: the level meter over the movie area, the plug-ins, their
// window and their manager.
//
// The rules are those of the visual classes; this gives them the form, its widgets and the desktop.
// Owned by `frmMain`; interface thread only.
#pragma once

#include "engine/dshow_control.h"
#include "shell/playback_tick.h"
#include "shell/sliders.h"
#include "shell/transport.h"
#include "state/session.h"
#include "state/settings.h"
#include "system/app_folder.h"
#include "system/message_pump.h"
#include "system/text_platform.h"
#include "system/timers.h"
#include "system/window_services_qt.h"
#include "view/command_router.h"
#include "view/menu_model.h"
#include "visual/frm_plugins.h"
#include "visual/frm_vumeter.h"
#include "visual/hosted_meter_qt.h"
#include "visual/plugin_catalogue.h"
#include "visual/plugin_hosting.h"
#include "visual/plugin_object_qt.h"
#include "visual/vu_meter_widget.h"

#include <QPalette>
#include <QPointer>
#include <QWidget>

#include <functional>
#include <string>

namespace kv {

class VisualRoomHost {
 public:
  virtual ~VisualRoomHost() = default;
  virtual void UpdateMenuChecks() = 0;
  virtual void SetTempWindowCaption(const std::string& text) = 0;
  virtual void SetCursor(bool show, bool force) = 0;
  // The wheel and a key over the meter's window act as over the main one.
  virtual void WheelElsewhere(QWheelEvent& event) = 0;
  virtual void KeyUpElsewhere(QKeyEvent& event) = 0;
};

class VisualRoom : public MenuPlugins,
                   public TransportVisuals,
                   public SliderMeter,
                   public CommandVisuals,
                   private HostingForm,
                   private MeterFormHost {
 public:
  // All must outlive this object; `form` is the owner of every window.
  struct Parts {
    QWidget& form;
    clsDShowControl& Movie;
    Settings& settings;
    const Session& session;
    const ProgramFolder& folder;
    TimerSource& time;
    MessagePump& pump;
    WindowServicesQt& windows;
    const TextPlatform& text;
    Timer& UpdateVuRunning;
    // Takes a new window among those of the program, which snap and hand the wheel on.
    std::function<void(QWidget& window)> adopt;
  };

  VisualRoom(VisualRoomHost& host, const Parts& parts);
  VisualRoom(const VisualRoom&) = delete;
  VisualRoom& operator=(const VisualRoom&) = delete;
  ~VisualRoom() override;

  // `VuMeter1` of the main window.
  VuMeterWidget& VuMeter1() { return *VuMeter1_; }
  HostedMeterQt& MainMeter() { return main_meter_; }
  PluginHosting& Hosting() { return hosting_; }

  // Fills the catalogue; answers the number of plug-ins.
  int ScanPlugins();

  void ShowPlugins() override;  // `frmPlugins`, modal
  void SetColors(const QPalette& colors);
  void UnloadAll();
  // The login session ends, which unloads no window: the meter's comes back at the next start.
  void EndSession();

  // MenuPlugins
  int Count() const override { return catalogue_.PluginCount(); }
  std::string Name(int index) const override;
  std::string Key(int index) const override;

  // TransportVisuals, SliderMeter, CommandVisuals
  void SetVumeterVisible() override { hosting_.SetVumeterVisible(); }
  bool StopMeter() override { return hosting_.StopMeter(); }
  void StartMeter() override { hosting_.StartMeter(); }
  void CyclePlugins() override { hosting_.CyclePlugins(); }
  void ReleasePlugin() override { catalogue_.DestroyPlugin(); }
  void PrepareVUStop() override { hosting_.PrepareVUStop(); }
  void PrepareVUStart() override { hosting_.PrepareVUStart(); }
  void StopVuMeter1() override { hosting_.StopVuMeter1(); }
  void ShowMeterWindow() override;
  void SetExPlugIn(int Index) override { hosting_.SetExPlugIn(Index); }
  // Also for the meter's window.
  void ConfigPlugin() override { hosting_.ConfigPlugin(); }

 private:
  // HostingForm
  bool FormMinimised() const override { return parts_.form.isMinimized(); }
  bool DS_IsPaused() const override { return parts_.Movie.DS_IsPaused(); }
  bool DS_IsRunning() const override { return parts_.Movie.DS_IsRunning(); }
  bool HasPicture() const override;
  void UpdateMenuChecks() override { host_.UpdateMenuChecks(); }
  void SetTempWindowCaption(const std::string& text) override { host_.SetTempWindowCaption(text); }
  void SetCursor(bool show, bool force) override { host_.SetCursor(show, force); }

  // MeterFormHost
  void EnableUpdateVuRunning() override { parts_.UpdateVuRunning.SetEnabled(true); }
  void MeterWindowWheel(QWheelEvent& event) override { host_.WheelElsewhere(event); }
  void MeterWindowKeyUp(QKeyEvent& event) override { host_.KeyUpElsewhere(event); }

  VisualRoomHost& host_;
  Parts parts_;
  VisualState state_;
  PluginObjectsQt objects_;
  PluginCatalogue catalogue_;
  VuMeterWidget* VuMeter1_;  // a child of the form
  HostedMeterQt main_meter_;
  PluginHosting hosting_;
  QPalette colors_;
  QPointer<frmVumeter> window_;
  QPointer<frmPlugins> manager_;
};

}  // namespace kv
