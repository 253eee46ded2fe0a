#include "shell/settings_life.h"

#include "shell/command_line.h"
#include "state/settings_file.h"
#include "system/paths.h"

#include <cmath>

namespace kv {
namespace {

constexpr const char* kConfigFile = "config.dat";
constexpr const char* kWelcomeSound = "welcome_to_ostrand.wav";

}  // namespace

SettingsLife::SettingsLife(SettingsHost& host, Settings& settings, const SliderModels& models,
                           const ProgramFolder& folder, ShellServices& shell, MessagePump& pump)
    : host_(host),
      settings_(settings),
      models_(models),
      folder_(folder),
      shell_(shell),
      pump_(pump) {}

void SettingsLife::LoadSettings() {
  ReadSettings(folder_.DataFile(kConfigFile), settings_);
  loaded_ = true;
  if (IsOn(settings_.FirstRun)) {
    const std::string sound = folder_.DataFile(kWelcomeSound);
    if (FileExists(sound)) {
      // The start waits for its end.
      shell_.PlaySoundEx(sound, true, false, false, false);
      settings_.CurrentFile = sound;
      settings_.FirstRun = FromBool(false);
      settings_.PlaylistIndex = 0;
    }
    host_.ShowAbout();
  }
  if (settings_.ColorScheme.empty()) settings_.ColorScheme = "default.dat";
  host_.SetMeterSampleRate(settings_.AudioSampleRate);
  host_.LoadColorInfo();
  // Taken first: each slider writes what it gets back into the settings.
  const auto volume = settings_.Volume;
  const auto rate = settings_.PlayRate;
  const auto balance = settings_.Balance;
  models_.Scroller2.SetValue(volume);
  models_.Scroller3.SetValue(rate);
  models_.Scroller4.SetValue(balance);
  if (!IsOn(settings_.AutoLoadLast) && !IsOn(settings_.RestartPlaying)) {
    settings_.PlaylistFile.clear();
    settings_.CurrentFile.clear();
  }
}

void SettingsLife::SaveSettings(const std::string& command_line) {
  // A message before the load can be up when the login session ends.
  if (!loaded_) return;
  if (HasClearSwitch(command_line)) ClearForFirstStart(settings_);
  pump_.PumpOnce();
  const WindowState state = host_.State();
  if (state == WindowState::kNormal && !IsOn(settings_.FullScreen)) {
    const WindowPlace place = host_.Place();
    settings_.WindowHeight = place.height;
    settings_.WindowLeft = place.left;
    settings_.WindowTop = place.top;
    settings_.WindowWidth = place.width;
  }
  settings_.LastWindowState = static_cast<std::int16_t>(state);
  SaveAtOnce();
}

void SettingsLife::SaveAtOnce() {
  if (!loaded_) return;
  settings_.LastPosition = models_.Scroller1.Value();
  WriteSettings(folder_.AppFolder() + kConfigFile, settings_);
}

void SettingsLife::UpdateSettings() {
  host_.SetBusyPointer(true);
  host_.UpdateMeterWindow();
  host_.UpdateMenuChecks();
  host_.UpdateFileDisp("");
  host_.SetAutoHideMode();
  host_.AdjustView();
  host_.ScaleMovie(false);
  host_.UpdateTrendChart();
  host_.UpdateTraySettings();
  host_.UpdateMainMeter();
  host_.SetVumeterVisible();
  if (IsOn(settings_.FullScreen)) {
    host_.SetPanelVisible(!IsOn(settings_.HideControlsInFullscreen));
  }
  host_.Form_Resize();
  host_.SetBusyPointer(false);
}

}  // namespace kv
