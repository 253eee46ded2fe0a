// `frmMain`, the application's window.
//
// Owns the widgets, the objects that live as long as the process and the timers, and forwards
// events between them; what it does lives in the rooms' classes, each of which asks it for the few
// calls that lead elsewhere. Made once by the program's entry. Interface thread only.
#pragma once

#include "engine/dshow_control.h"
#include "engine/mpv_engine.h"
#include "playlist/tag_readers_taglib.h"
#include "shell/cpu_graph.h"
#include "shell/desktop_room.h"
#include "shell/form_life.h"
#include "shell/forms.h"
#include "shell/hand_over.h"
#include "shell/icon_loader.h"
#include "shell/list_windows.h"
#include "shell/main_menu.h"
#include "shell/main_timers.h"
#include "shell/main_view.h"
#include "shell/media_opener.h"
#include "shell/medium_room.h"
#include "shell/playback_tick.h"
#include "shell/playlist_room.h"
#include "shell/run_once.h"
#include "shell/screen_room.h"
#include "shell/settings_life.h"
#include "shell/sliders.h"
#include "shell/start_up.h"
#include "shell/status_overlay.h"
#include "shell/time_display.h"
#include "shell/trace.h"
#include "shell/transport.h"
#include "shell/visual_room.h"
#include "shell/wheel_seek.h"
#include "state/session.h"
#include "state/settings.h"
#include "system/app_folder.h"
#include "system/desktop_wishes_qt.h"
#include "system/dialogs_qt.h"
#include "system/docking_qt.h"
#include "system/shell_services_qt.h"
#include "system/text_platform.h"
#include "system/window_services_qt.h"
#include "view/command_router.h"
#include "view/information_display.h"
#include "view/key_router.h"
#include "view/track_menu.h"

#include <QTimer>
#include <QWidget>

#include <string>

namespace kv {

// What the program's entry has made before the window.
struct ProgramParts {
  MpvEngine& engine;
  MessagePump& pump;
  TimerSource& time;
  const TextPlatform& text;
  const ProgramFolder& folder;
  const StartUp& start_up;
  Trace& trace;
};

class frmMain : public QWidget,
                private OpenerHost,
                private HandOverHost,
                private SettingsHost,
                private FormLifeHost,
                private PlaylistRoomHost,
                private ListWindowsHost,
                private MediumRoomHost,
                private ScreenRoomHost,
                private TransportMenu,
                private VisualRoomHost,
                private TransportDisplay,
                private MovieView,
                private CommandTransport,
                private CommandMedium,
                private CommandWindow,
                private CommandForms,
                private DesktopRoomHost,
                private KeyHost,
                private DispHost {
  Q_OBJECT

 public:
  explicit frmMain(const ProgramParts& parts);
  ~frmMain() override;

  // Brings the form up: reads everything, places and shows the window, and arms what opens the
  // first medium.
  void Form_Load();

  // True once the program goes down, which can begin inside `Form_Load`.
  bool Ended() const { return session_.Unloading; }

  // Another start asks for a file; false when it is refused.
  bool Form_LinkExecute(const std::string& CmdStr) { return hand_over_.Form_LinkExecute(CmdStr); }
  void Form_LinkError(int LinkErr) { hand_over_.Form_LinkError(LinkErr); }

  // The login session ends, or the process is told to: everything is saved.
  void EndSession();
  // The process is being torn down: saves without a window, a question or a pump.
  void SaveAtOnce();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void changeEvent(QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void ConnectPanel();
  void ReadFileSupport();
  void RefreshColors();
  void FollowWishes(const DesktopWishes& wishes);
  void OpenFromOutside(const std::string& path, bool unattended);
  void Form_Unload();
  void OnTimer(MainTimer timer);
  void PosTick();
  void FadeIn();
  void TracePosition();
  void StartWheelHook();
  void Adopt(QWidget& window);
  void DockWindow();
  void UndockWindow();

  // OpenerHost
  void OpenPlaylist(const std::string& Path, bool ByHand) override;
  void OpenResumeFile(const std::string& Path, bool& FromPlaylist, bool StartPlaying) override;
  kv::AsxInfo ReadAsxFile(const std::string& Path) override;
  void UpdateFileDisp(const std::string& text) override;
  void UpdateFileDataDisplay() override;
  void ScaleMovie(bool ForcePanel) override;
  void ScaleWindow(float Factor) override;
  void BuildMenu() override;
  void SetVumeterVisible() override;
  void ResetAB() override;
  void BUtton_Click(int Index) override;
  void RestoreFromTray() override;

  // HandOverHost
  void OpenCommandFile(const std::string& path) override;
  void AbandonOpen() override;

  // SettingsHost
  void SetMeterSampleRate(int hertz) override;
  void LoadColorInfo() override;
  WindowState State() const override;
  WindowPlace Place() const override;
  void SetBusyPointer(bool busy) override;
  void UpdateMeterWindow() override;
  void UpdateMenuChecks() override;
  void SetAutoHideMode() override;
  void AdjustView() override;
  void UpdateTrendChart() override;
  void UpdateTraySettings() override;
  void UpdateMainMeter() override;
  void SetPanelVisible(bool visible) override;
  void Form_Resize() override;

  // FormLifeHost
  void OpenFile(const std::string& File, OpenArguments arguments) override;
  int PlaylistCount() const override;
  std::string PlaylistItem(int index) const override;
  void SavePlaylist(const std::string& file) override;
  void SavePlaylistToggle() override;
  void HideForm() override;
  void StopAllTimers() override;
  void UnloadOtherForms() override;
  void RegisterRestart() override;
  void SaveSettings() override;
  void StopWheelHook() override;

  // PlaylistRoomHost
  void ShowResumeMark(bool visible) override;
  void ShowBusyPointer(bool busy) override;
  ListWindow* LoadedListWindow() override;
  ScanWindow* OpenScanWindow() override;

  // ListWindowsHost
  std::string MainDisplayText() const override;

  // ScreenRoomHost
  void MENU_Click(std::string_view key) override;
  void SetMenuChecked(std::string_view key, bool checked) override;
  void PutAwayVuMeter1() override;
  bool TrayMustWait() const override;

  // TransportMenu
  void RunMenuCommand(std::string_view key) override;
  void SetMenuEnabled(std::string_view key, bool enabled) override;
  void PopUpMainMenu() override;

  // VisualRoomHost
  void WheelElsewhere(QWheelEvent& event) override;
  void KeyUpElsewhere(QKeyEvent& event) override;

  // TransportDisplay
  void ShowStatus(int kind) override;
  void SetRepeatFace(int face) override;
  PlaylistWindow StateOfPlaylistWindow() const override;
  void ShowPlaylistWindow() override;
  void RestorePlaylistWindow() override;
  void FocusPlaylistWindow() override;

  // MovieView
  void SetRenderVisible(bool visible) override;
  void SetVuMeter1Visible(bool visible) override;
  void SetLogoVisible(bool visible) override;
  void ExtPluginMediaChanged() override;

  // CommandTransport
  void PlaylistSetPrevious(bool to_first, bool immediate) override;
  void PlaylistSetNext(bool to_last, int index, bool immediate) override;

  // CommandMedium
  void OpenFile(const std::string& path) override;
  void OpenAddress(const std::string& address) override;
  void SaveCurrentFile() override;
  void SaveResumeFile(bool end_pos, bool clear_end) override;
  void ReleaseResumeData() override;

  // CommandWindow
  bool FormVisible() const override { return isVisible(); }
  void TrayClick(int code) override;
  void SetCursor(bool show, bool force) override;
  void UpdateSettings() override;

  // CommandForms
  std::string AskForUrl() override;
  bool ShowOptions() override;
  void ShowColors() override;
  void ShowAbout() override;
  void ShowPlugins() override;
  void ShowHelp() override;
  void ClosePlaylistWindow() override;

  // KeyHost
  void PrepareMedia() override;
  void DeleteCurFile() override;
  void ShowQuickSearch() override;
  void ConfigPlugin() override;
  void SetVuMeterStyle() override;
  void ToggleFullScreen() override;
  bool FlipDemoTimer() override;
  void SetTempWindowCaption(const std::string& text) override;
  void PopUpMenuAtWindow() override;

  // DesktopRoomHost
  void OpenForProgram(const std::string& path) override;
  void ShowRepeatMode() override;

  // DispHost
  void SetDispPointer(DispLabel label, bool hand) override;

  ProgramParts parts_;
  Settings settings_;
  Session session_;
  DialogsQt dialogs_;
  ShellServicesQt shell_;
  WindowServicesQt windows_;
  Docking docking_;
  TagLibReaders readers_;
  MainTimers timers_;
  clsDShowControl Movie_;
  MainView view_;
  SliderModels models_;
  CpuGraph cpu_graph_;

  PlaylistRoom playlist_;
  ListWindows list_windows_;
  MediumRoom medium_;
  VisualRoom visual_;
  TimeDisplay time_display_;
  Sliders sliders_;
  StatusOverlay status_;
  InformationDisplay information_;
  DispEvents disp_events_;
  Marks marks_;
  Transport transport_;
  WheelSeek wheel_;
  PlaybackTick tick_;
  MovieEvents movie_events_;
  ScreenRoom screen_;
  MediaOpener opener_;
  HandOver hand_over_;
  SettingsLife settings_life_;
  FormLife form_life_;
  RunOnce run_once_;
  Forms forms_;
  MainMenu menu_;
  TrackMenu tracks_;
  CommandRouter commands_;
  KeyRouter keys_;

  IconLoader icons_;
  DesktopRoom desktop_;
  DesktopWishesQt wishes_;

  QTimer trace_timer_;
  int wheel_angle_ = 0;  // what is left over from whole notches, eighths of a degree
  bool shown_ = false;
  bool first_run_ = false;  // of this program folder
};

}  // namespace kv
