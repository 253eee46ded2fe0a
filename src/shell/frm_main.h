// `frmMain`, the application's window.
//
// Owns the widgets, the objects that live as long as the process and the timers, and forwards
// events between them; what it does lives in the rooms' classes, each of which asks it for the few
// calls that lead elsewhere. Made once by the program's entry. Interface thread only.
#pragma once

#include "engine/dshow_control.h"
#include "engine/mpv_engine.h"
#include "shell/form_life.h"
#include "shell/hand_over.h"
#include "shell/main_timers.h"
#include "shell/main_view.h"
#include "shell/media_opener.h"
#include "shell/playback_tick.h"
#include "shell/run_once.h"
#include "shell/settings_life.h"
#include "shell/sliders.h"
#include "shell/start_up.h"
#include "shell/status_overlay.h"
#include "shell/time_display.h"
#include "shell/trace.h"
#include "shell/transport.h"
#include "shell/wheel_seek.h"
#include "shell/window_sizing_watch.h"
#include "state/session.h"
#include "state/settings.h"
#include "system/app_folder.h"
#include "system/dialogs_qt.h"
#include "system/shell_services_qt.h"
#include "system/text_platform.h"
#include "system/window_services_qt.h"
#include "view/information_display.h"
#include "view/movie_scale.h"
#include "view/window_zoom.h"

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
                private TransportNavigation,
                private TransportMenu,
                private TransportVisuals,
                private TransportDisplay,
                private SliderMeter,
                private TickNavigation,
                private MovieView,
                private SizingView {
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

 protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void changeEvent(QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  void ConnectPanel();
  void ReadFileSupport();
  void RefreshColors();
  void PlaceWindow();
  void KeepOnScreen();
  void Form_Unload();
  void OnTimer(MainTimer timer);
  void FadeIn();
  void TracePosition();
  MovieScale CurrentScale(bool force_panel) const;
  bool GetAutoHide() const { return false; }
  int PanelHeight() const;
  void SetTempWindowCaption(const std::string& text);
  void ToggleFullScreen();
  void SetCursor(bool show, bool force);
  int ScanPlugins();
  void LoadExternalPlugin();
  void LoadIcons();
  void LoadPlaylist(const std::string& file);
  void ShowMeterWindow();
  void SetMeterStyle(int style);
  void StartWheelHook();
  void DockWindow();
  void UndockWindow();

  // OpenerHost
  void OpenPlaylist(const std::string& Path) override;
  void OpenResumeFile(const std::string& Path, bool FromPlaylist, bool StartPlaying) override;
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
  void ShowAbout() override;
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

  // TransportNavigation, TickNavigation
  void PlaylistSetPrevious(bool to_first, bool immediate) override;
  void PlaylistSetNext(bool to_last, int index, bool immediate) override;
  void StartPlaylistTimer(bool immediate) override;
  bool PlayFromPlaylistEnabled() const override;

  // TransportMenu
  void RunMenuCommand(std::string_view key) override;
  void SetMenuEnabled(std::string_view key, bool enabled) override;
  void PopUpMainMenu() override;

  // TransportVisuals, SliderMeter
  bool StopMeter() override;
  void StartMeter() override;
  void CyclePlugins() override;
  void ReleasePlugin() override;
  void PrepareVUStop() override;
  void PrepareVUStart() override;

  // TransportDisplay
  void ShowStatus(int kind) override;
  void SetRepeatFace(int face) override;
  PlaylistWindow StateOfPlaylistWindow() const override;
  void ShowPlaylistWindow() override;
  void RestorePlaylistWindow() override;
  void FocusPlaylistWindow() override;

  // MovieView, SizingView
  void SetRenderVisible(bool visible) override;
  void SetVuMeter1Visible(bool visible) override;
  void SetLogoVisible(bool visible) override;
  void ExtPluginMediaChanged() override;
  bool RenderVisible() const override;
  WindowHandle RenderHandle() const override;
  void PutAwayVuMeter1() override;
  void PrintCurScale() override;
  void LockWindowRedraw(bool lock) override;

  ProgramParts parts_;
  Settings settings_;
  Session session_;
  DialogsQt dialogs_;
  ShellServicesQt shell_;
  WindowServicesQt windows_;
  MainTimers timers_;
  clsDShowControl Movie_;
  MainView view_;
  SliderModels models_;

  TimeDisplay time_display_;
  Sliders sliders_;
  StatusOverlay status_;
  InformationDisplay information_;
  Marks marks_;
  Transport transport_;
  WheelSeek wheel_;
  PlaybackTick tick_;
  MovieEvents movie_events_;
  WindowSizingWatch sizing_;
  MediaOpener opener_;
  HandOver hand_over_;
  SettingsLife settings_life_;
  FormLife form_life_;
  WindowZoom zoom_;
  RunOnce run_once_;

  QTimer sizing_quiet_;  // runs out when a drag of the frame has come to rest
  QTimer trace_timer_;
  std::string BaseCaption_;
  int panel_height_ = 1;
  bool panel_visible_ = true;
  int wheel_angle_ = 0;  // what is left over from whole notches, eighths of a degree
  bool shown_ = false;
};

}  // namespace kv
