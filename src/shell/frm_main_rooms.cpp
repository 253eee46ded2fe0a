// The calls of `frmMain` that lead to rooms which are not furnished yet. Each takes effect when its
// room stands; until then the player does without what it would bring.

#include "shell/frm_main.h"

namespace kv {

// Playlist and resume files
void frmMain::LoadPlaylist(const std::string& /*file*/) {}
void frmMain::OpenPlaylist(const std::string& /*Path*/) {}
void frmMain::OpenResumeFile(const std::string& /*Path*/, bool /*FromPlaylist*/,
                             bool /*StartPlaying*/) {}
kv::AsxInfo frmMain::ReadAsxFile(const std::string& /*Path*/) {
  return {};
}
int frmMain::PlaylistCount() const {
  return 0;
}
std::string frmMain::PlaylistItem(int /*index*/) const {
  return {};
}
void frmMain::SavePlaylist(const std::string& /*file*/) {}
void frmMain::SavePlaylistToggle() {}
void frmMain::PlaylistSetPrevious(bool /*to_first*/, bool /*immediate*/) {}
void frmMain::PlaylistSetNext(bool /*to_last*/, int /*index*/, bool /*immediate*/) {}
void frmMain::StartPlaylistTimer(bool /*immediate*/) {}
bool frmMain::PlayFromPlaylistEnabled() const {
  return timers_.Enabled(MainTimer::PlayFromPlaylist);
}
TransportDisplay::PlaylistWindow frmMain::StateOfPlaylistWindow() const {
  return PlaylistWindow::kNotLoaded;
}
void frmMain::ShowPlaylistWindow() {}
void frmMain::RestorePlaylistWindow() {}
void frmMain::FocusPlaylistWindow() {}

// Full screen, menu, tray, captions and the other windows
void frmMain::ToggleFullScreen() {}
void frmMain::SetCursor(bool /*show*/, bool /*force*/) {}
void frmMain::LoadIcons() {}
void frmMain::BuildMenu() {}
void frmMain::UpdateMenuChecks() {}
void frmMain::SetMenuEnabled(std::string_view /*key*/, bool /*enabled*/) {}
void frmMain::PopUpMainMenu() {}
void frmMain::ShowAbout() {}
void frmMain::UnloadOtherForms() {}
void frmMain::UpdateTraySettings() {}
void frmMain::SetTempWindowCaption(const std::string& /*text*/) {}

// Level meter, plug-ins and CPU graph
int frmMain::ScanPlugins() {
  return 0;
}
void frmMain::LoadExternalPlugin() {}
void frmMain::ShowMeterWindow() {}
void frmMain::SetMeterStyle(int /*style*/) {}
void frmMain::SetVumeterVisible() {}
void frmMain::SetMeterSampleRate(int /*hertz*/) {}
void frmMain::UpdateMeterWindow() {}
void frmMain::UpdateMainMeter() {}
void frmMain::AdjustView() {}
void frmMain::UpdateTrendChart() {}
bool frmMain::StopMeter() {
  return false;
}
void frmMain::StartMeter() {}
void frmMain::CyclePlugins() {}
void frmMain::ReleasePlugin() {}
void frmMain::PrepareVUStop() {}
void frmMain::PrepareVUStart() {}
void frmMain::SetVuMeter1Visible(bool /*visible*/) {}
void frmMain::PutAwayVuMeter1() {}
void frmMain::ExtPluginMediaChanged() {}

// Hooks of the desktop; the wheel comes by the toolkit's own event
void frmMain::StartWheelHook() {}
void frmMain::DockWindow() {}
void frmMain::UndockWindow() {}
void frmMain::StopWheelHook() {}

}  // namespace kv
