#include "visual/plugin_hosting.h"

#include "system/translation.h"

#include <chrono>
#include <memory>

namespace kv {
namespace {

constexpr std::chrono::seconds kDemoPeriod{15};

std::string ModeName(int style) {
  return Fill(Tr("Default (mode %1)"), std::to_string(style + 1));
}

}  // namespace

PluginHosting::PluginHosting(HostingForm& form, const Parts& parts) : form_(form), parts_(parts) {
  parts_.catalogue.set_auto_redraw = [this](bool on) {
    parts_.VuMeter1.SetAutoRedraw(on);
    if (window_meter_ != nullptr) window_meter_->SetAutoRedraw(on);
  };
}

// --- Which one

void PluginHosting::LoadExternalPlugin() {
  if (!IsOn(parts_.settings.UseExternalPlugin) || parts_.settings.PluginProgId.empty()) return;
  parts_.catalogue.CreatePlugin(parts_.settings.PluginProgId);
}

void PluginHosting::SetExPlugIn(std::int32_t Index) {
  const PluginEntry* const entry = parts_.catalogue.Find(Index);
  if (entry == nullptr) return;
  parts_.catalogue.DestroyPlugin();
  parts_.pump.PumpOnce();
  parts_.settings.PluginKey = entry->File;
  parts_.settings.PluginProgId = entry->ProgId;
  parts_.settings.UseExternalPlugin = FromBool(true);
  parts_.settings.PluginName = entry->Name;
  parts_.catalogue.CreatePlugin(parts_.settings.PluginProgId);
}

void PluginHosting::CyclePlugins() {
  const std::string text =
      IsOn(parts_.settings.UseExternalPlugin) ? CycleFromPlugin() : CycleFromBuiltIn();
  form_.SetTempWindowCaption(Fill(Tr("Plugin:%1"), text));
  parts_.settings.PluginStyle = parts_.VuMeter1.Style();
}

std::string PluginHosting::CycleFromPlugin() {
  const std::vector<PluginEntry>& plugins = parts_.catalogue.Plugins();
  const PluginEntry* const here = parts_.catalogue.Find(CurrentPluginIndex_);
  if (here == nullptr || here->Name != parts_.settings.PluginName) {
    // Another one was picked elsewhere.
    for (std::size_t index = 0; index < plugins.size(); ++index) {
      if (plugins[index].Name != parts_.settings.PluginName) continue;
      CurrentPluginIndex_ = static_cast<std::int32_t>(index);
      break;
    }
  }
  if (CurrentPluginIndex_ < parts_.catalogue.PluginCount() - 1) {
    return TakeEntry(CurrentPluginIndex_ + 1);
  }
  parts_.VuMeter1.SetStyle(0);
  parts_.catalogue.DestroyPlugin();
  parts_.settings.UseExternalPlugin = FromBool(false);
  form_.UpdateMenuChecks();
  return ModeName(0);
}

std::string PluginHosting::CycleFromBuiltIn() {
  const int style = parts_.VuMeter1.Style();
  if (style < kLastMeterStyle) {
    parts_.VuMeter1.SetStyle(style + 1);
    return ModeName(style + 1);
  }
  // Without any plug-in the last display stays.
  return parts_.catalogue.PluginCount() > 0 ? TakeEntry(0) : ModeName(style);
}

std::string PluginHosting::TakeEntry(std::int32_t index) {
  CurrentPluginIndex_ = index;
  SetExPlugIn(index);
  form_.UpdateMenuChecks();
  const PluginEntry* const entry = parts_.catalogue.Find(index);
  return entry != nullptr ? entry->Name : std::string();
}

void PluginHosting::DemoTick() {
  if (!parts_.VuMeter1.Visible()) return;
  const TimerSource::TimePoint now = parts_.time.Now();
  if (DemoNextSwitch_ && *DemoNextSwitch_ > now) return;
  const bool armed = DemoNextSwitch_.has_value();
  DemoNextSwitch_ = now + kDemoPeriod;
  if (armed) CyclePlugins();
}

void PluginHosting::SetVuMeterStyle() {
  HostedMeter& meter = parts_.VuMeter1;
  if (!IsOn(parts_.settings.UseExternalPlugin)) {
    meter.SetStyle(meter.Style() < kLastMeterStyle ? meter.Style() + 1 : 0);
  }
  parts_.settings.VuMeterStyle = meter.Style();
}

// --- The meters

void PluginHosting::SetVumeterVisible() {
  if (IsOn(parts_.settings.VumeterVisible)) return;
  HostedMeter& meter = parts_.VuMeter1;
  if (Idle()) {
    StopVuMeter1();
    return;
  }
  if (form_.HasPicture()) {
    if (meter.Running()) {
      meter.Stop();
      parts_.pump.PumpOnce();
    }
    parts_.catalogue.DestroyPlugin();
    meter.SetVisible(false);
    return;
  }
  if (IsOn(parts_.settings.UseExternalPlugin) && !parts_.catalogue.CurrentPlugin()) {
    parts_.catalogue.CreatePlugin(parts_.settings.PluginProgId);
    // It pumped: the medium, or what there is to show, may be another one.
    if (Idle() || form_.HasPicture()) return;
  }
  if (!meter.Running()) meter.Start();
  meter.SetVisible(true);  // also when nothing can be heard
}

bool PluginHosting::Idle() const {
  return form_.FormMinimised() || parts_.state.VumeterOpen || !IsOn(parts_.settings.ShowVuMeter) ||
         form_.DS_IsPaused() || !form_.DS_IsRunning();
}

HostedMeter& PluginHosting::MeterInUse() {
  return parts_.state.VumeterOpen && window_meter_ != nullptr ? *window_meter_ : parts_.VuMeter1;
}

bool PluginHosting::StopMeter() {
  HostedMeter& meter = MeterInUse();
  const bool ran = meter.Running();
  meter.Stop();
  return ran;
}

void PluginHosting::StartMeter() {
  MeterInUse().Start();
}

void PluginHosting::PrepareVUStart() {
  if (MeterWasRunning_) StartMeter();
}

void PluginHosting::ShowVuMeter1(bool visible) {
  parts_.VuMeter1.SetVisible(visible && !form_.HasPicture());
}

void PluginHosting::StopVuMeter1() {
  if (parts_.VuMeter1.Running()) parts_.VuMeter1.Stop();
}

void PluginHosting::PutAwayVuMeter1() {
  StopVuMeter1();
  parts_.VuMeter1.SetVisible(false);
}

void PluginHosting::UpdateMainMeter() {
  StopVuMeter1();
  parts_.VuMeter1.SetRefreshRate(parts_.settings.VuRefreshRate);
  parts_.VuMeter1.SetCapture(parts_.settings);
}

void PluginHosting::UpdateMeterWindow() {
  if (!parts_.state.VumeterOpen || window_meter_ == nullptr) return;
  if (window_meter_->Running()) window_meter_->Stop();
  window_meter_->SetRefreshRate(parts_.settings.VuRefreshRate);
  window_meter_->SetCapture(parts_.settings);
  window_meter_->Start();
}

// --- The plug-in

void PluginHosting::Frame(HostedMeter& meter, bool on_view, std::vector<std::uint8_t>& Samples,
                          std::int32_t& Count, bool& Cancel) {
  Cancel = !on_view || IsOn(parts_.settings.UseExternalPlugin);
  if (!on_view || !Cancel) return;
  const std::shared_ptr<PluginObject> plugin = parts_.catalogue.CurrentPlugin();
  if (!plugin) return;
  auto& colors = parts_.settings.Colors;
  plugin->GetVuMeter({Samples, Count, meter.SurfaceHandle1(), meter.SurfaceHandle2(),
                      meter.SurfaceWidth(), meter.SurfaceHeight(), colors[kMeterForegroundSlot],
                      colors[kMeterBackgroundSlot], colors[kMeterPeakSlot]});
}

void PluginHosting::ExtPluginMediaChanged() {
  const std::shared_ptr<PluginObject> plugin = parts_.catalogue.CurrentPlugin();
  if (plugin) plugin->Call("MediaChanged");
}

void PluginHosting::ConfigPlugin() {
  const std::shared_ptr<PluginObject> plugin = parts_.catalogue.CurrentPlugin();
  if (!plugin || !plugin->ReadFlag("p_hasconfig").value_or(false)) return;
  form_.SetCursor(true, true);
  plugin->Call("OpenConfigDialog");
}

}  // namespace kv
