// The calls of `frmMain` by which one room reaches another: each hands on to the room that answers.

#include "playlist/asx_file.h"
#include "shell/frm_main.h"

namespace kv {

// --- Movie and window

void frmMain::ScaleMovie(bool ForcePanel) {
  screen_.ScaleMovie(ForcePanel);
}
void frmMain::ScaleWindow(float Factor) {
  screen_.ScaleWindow(Factor);
}
void frmMain::Form_Resize() {
  screen_.Form_Resize();
}
WindowState frmMain::State() const {
  return screen_.State();
}
WindowPlace frmMain::Place() const {
  return screen_.Place();
}
void frmMain::SetPanelVisible(bool visible) {
  screen_.SetPanelVisible(visible);
}
void frmMain::SetAutoHideMode() {
  screen_.SetAutoHideMode();
}
void frmMain::ToggleFullScreen() {
  screen_.ToggleFullScreen();
}
void frmMain::SetCursor(bool show, bool force) {
  screen_.SetCursor(show, force);
}
void frmMain::SetTempWindowCaption(const std::string& text) {
  screen_.Caption().SetTempWindowCaption(text);
}
void frmMain::UpdateTraySettings() {
  screen_.UpdateTraySettings();
}
void frmMain::TrayClick(int code) {
  screen_.TrayClick(code);
}
void frmMain::RestoreFromTray() {
  screen_.TrayClick(TrayIcon::kLeft);
}
void frmMain::ShowBusyPointer(bool busy) {
  windows_.ShowBusyPointer(busy);
}
void frmMain::ShowResumeMark(bool visible) {
  view_.ShowResumeMark(visible);
}
void frmMain::SetRenderVisible(bool visible) {
  view_.Surface().setVisible(visible);
}
void frmMain::SetLogoVisible(bool visible) {
  view_.SetLogoVisible(visible);
}
void frmMain::PrepareMedia() {
  movie_events_.Movie_PrepareMedia("");
}
void frmMain::SetDispPointer(DispLabel label, bool hand) {
  view_.SetDispPointer(label, hand);
}

// --- Playlist and resume files

void frmMain::OpenPlaylist(const std::string& Path, bool ByHand) {
  playlist_.Files().OpenPlaylist(Path, ByHand);
}
void frmMain::OpenResumeFile(const std::string& Path, bool& FromPlaylist, bool StartPlaying) {
  playlist_.Resume().OpenResumeFile(Path, FromPlaylist, StartPlaying);
}
kv::AsxInfo frmMain::ReadAsxFile(const std::string& Path) {
  return kv::ReadAsxFile(Path);
}
int frmMain::PlaylistCount() const {
  return playlist_.PlaylistCount();
}
std::string frmMain::PlaylistItem(int index) const {
  return playlist_.PlaylistItem(index);
}
void frmMain::SavePlaylist(const std::string& file) {
  playlist_.Files().SavePlaylist(file);
}
void frmMain::SavePlaylistToggle() {
  playlist_.Files().SavePlaylistToggle();
}
void frmMain::PlaylistSetPrevious(bool to_first, bool immediate) {
  playlist_.PlaylistSetPrevious(to_first, immediate);
}
void frmMain::PlaylistSetNext(bool to_last, int index, bool immediate) {
  playlist_.PlaylistSetNext(to_last, index, immediate);
}
void frmMain::SaveResumeFile(bool end_pos, bool clear_end) {
  playlist_.Resume().SaveResumeFile(end_pos, clear_end);
}
void frmMain::ReleaseResumeData() {
  playlist_.Resume().ReleaseResumeData();
}
void frmMain::OpenFile(const std::string& path) {
  OpenFile(path, {.StartPlaying = true});
}
void frmMain::OpenAddress(const std::string& address) {
  OpenFile(address, {.KeepWindowSize = true});
}
void frmMain::SaveCurrentFile() {
  medium_.SaveCurrentFile();
}
void frmMain::DeleteCurFile() {
  medium_.DeleteCurFile();
}

// --- Menu and commands

void frmMain::BuildMenu() {
  menu_.Model().BuildMenu();
}
void frmMain::UpdateMenuChecks() {
  menu_.Model().UpdateMenuChecks();
}
void frmMain::SetMenuEnabled(std::string_view key, bool enabled) {
  menu_.Model().SetEnabled(menu_.Model().IdOfKey(key), enabled);
}
void frmMain::SetMenuChecked(std::string_view key, bool checked) {
  menu_.Model().SetChecked(menu_.Model().IdOfKey(key), checked);
}
void frmMain::MENU_Click(std::string_view key) {
  commands_.RunMenuCommand(key);
}
void frmMain::RunMenuCommand(std::string_view key) {
  commands_.RunMenuCommand(key);
}
void frmMain::PopUpMainMenu() {
  tracks_.Update();
  menu_.PopUp(windows_.GetMouseScreenPos());
}
void frmMain::PopUpMenuAtWindow() {
  tracks_.Update();
  menu_.PopUp(frameGeometry().topLeft());
}
void frmMain::UpdateSettings() {
  settings_life_.UpdateSettings();
}

// --- The other windows

void frmMain::ShowAbout() {
  if (Ended()) return;  // while the welcome sound was waited for
  forms_.SetColors();   // a first run shows it before anything else has its colours
  forms_.ShowAbout();
}
void frmMain::ShowHelp() {
  forms_.ShowHelp();
}
bool frmMain::TrayMustWait() const {
  return forms_.DialogOpen() || session_.CopyWindowOpen;
}
void frmMain::UnloadOtherForms() {
  menu_.Close();
  list_windows_.UnloadAll();
  medium_.UnloadAll();
  visual_.UnloadAll();
  forms_.UnloadAll();
}
TransportDisplay::PlaylistWindow frmMain::StateOfPlaylistWindow() const {
  if (!list_windows_.PlaylistLoaded()) return PlaylistWindow::kNotLoaded;
  return list_windows_.PlaylistMinimised() ? PlaylistWindow::kMinimised : PlaylistWindow::kOpen;
}
void frmMain::ShowPlaylistWindow() {
  list_windows_.ShowPlaylist();
}
void frmMain::RestorePlaylistWindow() {
  list_windows_.FocusPlaylist();
}
void frmMain::FocusPlaylistWindow() {
  list_windows_.FocusPlaylist();
}
void frmMain::ClosePlaylistWindow() {
  list_windows_.ClosePlaylist();
}
void frmMain::ShowQuickSearch() {
  list_windows_.ShowQuickSearch();
}
ListWindow* frmMain::LoadedListWindow() {
  return list_windows_.LoadedListWindow();
}
ScanWindow* frmMain::OpenScanWindow() {
  return list_windows_.OpenScanWindow();
}
std::string frmMain::MainDisplayText() const {
  return view_.DispText(kDispTitle);
}
std::string frmMain::AskForUrl() {
  return medium_.AskForUrl();
}
bool frmMain::ShowOptions() {
  return forms_.ShowOptions();
}
void frmMain::ShowColors() {
  forms_.ShowColors();
}

// --- Level meter, plug-ins and CPU graph

void frmMain::ShowPlugins() {
  visual_.ShowPlugins();
}
void frmMain::ConfigPlugin() {
  visual_.ConfigPlugin();
}
void frmMain::SetVuMeterStyle() {
  visual_.Hosting().SetVuMeterStyle();
}
void frmMain::SetVumeterVisible() {
  visual_.SetVumeterVisible();
}
void frmMain::SetMeterSampleRate(int hertz) {
  visual_.MainMeter().SetSampleRate(hertz);
}
void frmMain::UpdateMeterWindow() {
  visual_.Hosting().UpdateMeterWindow();
}
void frmMain::UpdateMainMeter() {
  visual_.Hosting().UpdateMainMeter();
}
void frmMain::AdjustView() {
  if (State() != WindowState::kMinimised) {
    cpu_graph_.SetVisible(IsOn(settings_.CpuGraph));
    view_.Panel().SetGraphVisible(IsOn(settings_.CpuGraph));
  }
  visual_.MainMeter().SetStyle(settings_.VuMeterStyle + 1);
}
void frmMain::UpdateTrendChart() {
  cpu_graph_.UpdateTrendChart(settings_);
}
void frmMain::SetVuMeter1Visible(bool visible) {
  visual_.Hosting().ShowVuMeter1(visible);
}
void frmMain::PutAwayVuMeter1() {
  visual_.Hosting().PutAwayVuMeter1();
}
void frmMain::ExtPluginMediaChanged() {
  visual_.Hosting().ExtPluginMediaChanged();
}
void frmMain::WheelElsewhere(QWheelEvent& event) {
  wheelEvent(&event);
}
void frmMain::KeyUpElsewhere(QKeyEvent& event) {
  keyReleaseEvent(&event);
}
bool frmMain::FlipDemoTimer() {
  Timer& timer = timers_[MainTimer::DemoTimer];
  timer.SetEnabled(!timer.Enabled());
  return timer.Enabled();
}

// --- Hooks of the desktop; the wheel comes by the toolkit's own event

void frmMain::StartWheelHook() {}
void frmMain::DockWindow() {
  docking_.DockWindow(*this);
}
void frmMain::UndockWindow() {
  docking_.UndockWindow(*this);
}
void frmMain::StopWheelHook() {}

}  // namespace kv
