// `frmVumeter`, the window that a visualisation has for itself.
//
// A frame of the window manager's with the meter in it; the rules are in meter_window.h. Owned by
// the main window's forms, which make it, call Form_Load() and drop it when it is gone (it deletes
// itself once it is closed). Interface thread only.
#pragma once

#include "state/settings.h"
#include "system/dialogs_qt.h"
#include "system/timers.h"
#include "system/window_services_qt.h"
#include "visual/hosted_meter_qt.h"
#include "visual/meter_window.h"
#include "visual/plugin_hosting.h"
#include "visual/vu_meter_widget.h"

#include <QWidget>

#include <memory>
#include <string>

class QKeyEvent;
class QWheelEvent;

namespace kv {

// What the window asks of the main window.
class MeterFormHost {
 public:
  virtual ~MeterFormHost() = default;
  // `frmPlugins`, modal.
  virtual void ShowPlugins() = 0;
  virtual void ConfigPlugin() = 0;
  virtual void EnableUpdateVuRunning() = 0;
  // The wheel acts as over the main window, and so does the release of a key that went with it.
  virtual void MeterWindowWheel(QWheelEvent& event) = 0;
  virtual void MeterWindowKeyUp(QKeyEvent& event) = 0;
};

class frmVumeter : public QWidget, private MeterWindowForm {
  Q_OBJECT

 public:
  // All must outlive the window.
  struct Parts {
    MeterFormHost& host;
    PluginHosting& hosting;
    const HostedMeter& main_meter;
    Settings& settings;
    VisualState& state;
    TimerSource& time;
    WindowServicesQt& windows;
  };

  // `capture` is the meter's own. `owner` may be null.
  frmVumeter(const Parts& parts, std::unique_ptr<AudioCapture> capture, QWidget* owner);
  ~frmVumeter() override;

  // Shows the window and starts the meter.
  void Form_Load();

  // Ends the window because the program, or with `session` the login session, does.
  void Form_Unload(bool session = false);

  void UpdateColors() { rules_.UpdateColors(); }
  void ConfigPlugin() { rules_.ConfigPlugin(); }
  void OpenPluginManager() override;
  void SetCaption(const std::string& text) override;
  VuMeterWidget& VuMeter1() { return *VuMeter1_; }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  // MeterWindowForm
  void Move(const MeterWindowPlace& place) override;
  MeterWindowPlace Place() const override;
  void Unload() override { Form_Unload(); }
  void PopUpMenu() override;
  void ConfigMainPlugin() override { parts_.host.ConfigPlugin(); }
  void ShowPointer() override { parts_.windows.SetCursorHidden(false); }
  void EnableUpdateVuRunning() override { parts_.host.EnableUpdateVuRunning(); }

  void QueryUnload(MeterUnloadMode mode);

  Parts parts_;
  DialogsQt dialogs_;
  VuMeterWidget* VuMeter1_;
  HostedMeterQt meter_;
  MeterWindow rules_;
  bool unloaded_ = false;
};

}  // namespace kv
