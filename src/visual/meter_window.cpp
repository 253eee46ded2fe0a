#include "visual/meter_window.h"

#include "system/translation.h"

#include <cmath>
#include <memory>

namespace kv {
namespace {

constexpr int kTwipsPerPixel = 15;
constexpr int kUnloadMilliseconds = 50;
constexpr std::int16_t kRightButton = 2;

constexpr int kNoModifier = 0;
constexpr int kShiftCtrl = 3;
constexpr int kAlt = 4;
constexpr int kKeyEscape = 27;
constexpr int kKeyF = 70;
constexpr int kKeyK = 75;
constexpr int kKeyP = 80;

int ToPixels(std::int32_t twips) {
  return static_cast<int>(std::lround(static_cast<double>(twips) / kTwipsPerPixel));
}

}  // namespace

MeterWindow::MeterWindow(const Parts& parts)
    : parts_(parts),
      UnloadTimer_(parts.time.MakeTimer(TimerKind::kOrdinary, kUnloadMilliseconds, [this] {
        UnloadTimer_->SetEnabled(false);
        parts_.form.Unload();
      })) {}

MeterWindow::~MeterWindow() {
  parts_.hosting.SetWindowMeter(nullptr);
}

void MeterWindow::Form_Load() {
  Settings& settings = parts_.settings;
  PluginCatalogue& catalogue = parts_.hosting.Catalogue();
  HostedMeter& meter = parts_.VuMeter1;
  parts_.state.VumeterOpen = true;
  parts_.hosting.SetWindowMeter(&meter);
  if (IsOn(settings.UseExternalPlugin) && !catalogue.CurrentPlugin()) {
    catalogue.CreatePlugin(settings.PluginProgId);
    if (!parts_.state.VumeterOpen) return;  // closed while it pumped
  }
  meter.SetCapture(settings);
  meter.SetAutoRedraw(parts_.main_meter.AutoRedraw());
  if (settings.VumeterWidth > 0) {
    parts_.form.Move({ToPixels(settings.VumeterLeft), ToPixels(settings.VumeterTop),
                      ToPixels(settings.VumeterWidth), ToPixels(settings.VumeterHeight)});
  }
  meter.SetStyle(settings.VuMeterStyle);
  UpdateColors();
  if (meter.Start().empty()) {
    UpdateCaption();
    return;
  }
  MessageBoxRequest request;
  request.text = Tr("Unable to initialize Scope!");
  parts_.dialogs.ShowMessageBox(request);
  if (parts_.state.VumeterOpen) UnloadTimer_->SetEnabled(true);
}

void MeterWindow::Form_QueryUnload(MeterUnloadMode mode) {
  Settings& settings = parts_.settings;
  PluginCatalogue& catalogue = parts_.hosting.Catalogue();
  UnloadTimer_->SetEnabled(false);
  parts_.state.VumeterOpen = false;
  settings.VumeterVisible = FromBool(mode != MeterUnloadMode::kUser && !ClosedByEscape_);
  parts_.VuMeter1.Stop();
  parts_.hosting.SetWindowMeter(nullptr);
  if (mode == MeterUnloadMode::kUser && IsOn(settings.ShowVuMeter))
    parts_.form.EnableUpdateVuRunning();
  // The place is read before anything pumps: the window may be gone afterwards.
  SavePlace();
  if (!IsOn(settings.ShowVuMeter) && IsOn(settings.UseExternalPlugin) &&
      catalogue.CurrentPlugin()) {
    catalogue.DestroyPlugin();
  }
  if (mode == MeterUnloadMode::kUser) parts_.hosting.SetVumeterVisible();
}

void MeterWindow::SavePlace() {
  const MeterWindowPlace place = parts_.form.Place();
  parts_.settings.VumeterLeft = place.left * kTwipsPerPixel;
  parts_.settings.VumeterTop = place.top * kTwipsPerPixel;
  parts_.settings.VumeterWidth = place.width * kTwipsPerPixel;
  parts_.settings.VumeterHeight = place.height * kTwipsPerPixel;
}

bool MeterWindow::Form_KeyDown(int KeyCode, int Shift) {
  if (KeyCode == kKeyP && Shift == kAlt) {
    parts_.form.OpenPluginManager();
  } else if (KeyCode == kKeyF && Shift == kNoModifier) {
    if (parts_.VuMeter1.Running()) {
      parts_.VuMeter1.Stop();
    } else {
      parts_.VuMeter1.Start();
    }
  } else if (KeyCode == kKeyEscape && Shift == kNoModifier) {
    ClosedByEscape_ = true;
    parts_.form.Unload();
  } else if (KeyCode == kKeyK && Shift == kShiftCtrl) {
    parts_.form.ConfigMainPlugin();
  } else {
    return false;
  }
  return true;
}

void MeterWindow::VuMeter1_Click() {
  if (IsOn(parts_.settings.UseExternalPlugin)) return;
  HostedMeter& meter = parts_.VuMeter1;
  meter.SetStyle(meter.Style() < kLastMeterStyle ? meter.Style() + 1 : 0);
  parts_.settings.VuMeterStyle = meter.Style();
}

void MeterWindow::VuMeter1_DblClick() {
  const std::shared_ptr<PluginObject> plugin = parts_.hosting.Catalogue().CurrentPlugin();
  if (IsOn(parts_.settings.UseExternalPlugin) && plugin) plugin->Call("DoubleClick");
}

void MeterWindow::VuMeter1_MouseUp(PluginMouse mouse) {
  const std::int16_t button = mouse.Button;
  Forward("MouseUp", mouse);
  if (button == kRightButton) parts_.form.PopUpMenu();
}

void MeterWindow::Forward(std::string_view member, PluginMouse& mouse) {
  const std::shared_ptr<PluginObject> plugin = parts_.hosting.Catalogue().CurrentPlugin();
  if (IsOn(parts_.settings.UseExternalPlugin) && plugin) plugin->CallMouse(member, mouse);
}

void MeterWindow::UpdateColors() {
  parts_.VuMeter1.SetRefreshRate(parts_.settings.VuRefreshRate);
  parts_.VuMeter1.SetColors(parts_.settings);
}

bool MeterWindow::CanConfigure() const {
  return IsOn(parts_.settings.UseExternalPlugin) && parts_.hosting.Catalogue().CurrentHasConfig();
}

void MeterWindow::ConfigPlugin() {
  const std::shared_ptr<PluginObject> plugin = parts_.hosting.Catalogue().CurrentPlugin();
  if (!plugin || !plugin->ReadFlag("p_hasconfig").value_or(false)) return;
  parts_.form.ShowPointer();
  plugin->Call("OpenConfigDialog");
}

void MeterWindow::UpdateCaption() {
  const Settings& settings = parts_.settings;
  parts_.form.SetCaption(
      (IsOn(settings.UseExternalPlugin) ? settings.PluginName : std::string(Tr("VuMeter"))) +
      " - Kestrelview");
}

}  // namespace kv
