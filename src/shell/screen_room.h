// The main window as a thing on the screen: how movie and strip share it, full screen, the sliding
// strip, the pointer, the caption and the tray icon.
//
// The rules are those of the view's classes; this gives them the form, its widgets and the desktop.
// Owned by `frmMain`; lengths are device-independent pixels; interface thread only.
#pragma once

#include "engine/dshow_control.h"
#include "shell/main_timers.h"
#include "shell/main_view.h"
#include "shell/pointer_sight_qt.h"
#include "shell/settings_life.h"
#include "shell/tray_icon.h"
#include "shell/window_sizing_watch.h"
#include "state/session.h"
#include "state/settings.h"
#include "system/message_pump.h"
#include "system/text_platform.h"
#include "system/timers.h"
#include "system/window_services_qt.h"
#include "view/full_screen.h"
#include "view/movie_scale.h"
#include "view/panel_slide.h"
#include "view/pointer_watch.h"
#include "view/window_caption.h"
#include "view/window_zoom.h"

#include <QApplication>
#include <QTimer>
#include <QWidget>

#include <string>
#include <string_view>

namespace kv {

class ScreenRoomHost {
 public:
  virtual ~ScreenRoomHost() = default;
  virtual void BUtton_Click(int Index) = 0;
  virtual void MENU_Click(std::string_view key) = 0;
  virtual void SetMenuChecked(std::string_view key, bool checked) = 0;
  // Decides anew whether the meter in the main window runs and shows.
  virtual void SetVumeterVisible() = 0;
  virtual void PutAwayVuMeter1() = 0;
  // One of the windows is open that the tray icon has to wait for.
  virtual bool TrayMustWait() const = 0;
};

class ScreenRoom : private FullScreenHost,
                   private TrayHost,
                   private PanelSlideHost,
                   private PointerWorld,
                   private PointerActions,
                   private SizingView {
 public:
  // All must outlive this object.
  struct Parts {
    QWidget& form;
    MainView& view;
    clsDShowControl& Movie;
    Settings& settings;
    Session& session;
    MainTimers& timers;
    TimerSource& time;
    MessagePump& pump;
    WindowServicesQt& windows;
    const TextPlatform& text;
    std::string BaseCaption;
  };

  ScreenRoom(ScreenRoomHost& host, const Parts& parts);

  // --- Movie and window

  void ScaleMovie(bool ForcePanel) override;
  void ScaleWindow(float Factor);
  void Form_Resize() override;
  // Puts the stored place and size into force, kept on the screen.
  void PlaceWindow();
  WindowState State() const;
  WindowPlace Place() const;
  // The window is large enough for effects: width and height together at least 1500 pixels.
  bool MeEffectSize() const;
  WindowCaption& Caption() { return caption_; }
  // The user wants no animations: caption and strip change at once, menus and tips do not fade.
  void SetReducedMotion(bool reduced);

  // --- Full screen, strip and pointer

  void ToggleFullScreen() override { full_screen_.ToggleFullScreen(); }
  void SetAutoHideMode() { full_screen_.SetAutoHideMode(); }
  void SetPanelVisible(bool visible) override;
  // The strip while it is not built: one pixel.
  void CollapsePanel() { panel_height_ = 1; }
  void SetCursor(bool show, bool force) { pointer_.SetCursor(show, force); }

  // --- Tray

  void UpdateTraySettings();
  void TrayClick(int code);
  TrayIcon& Tray() { return tray_; }

  // --- Events of the form

  // True for a timer of this room.
  bool OnTimer(MainTimer timer);
  void Resized(bool by_user);
  void Moved() { sizing_.NewMessage(WindowMessage::kWindowPosChanging); }
  void MousePressed(Qt::MouseButton button);
  void StopTimers();

 private:
  MovieScale CurrentScale(bool panel_accounted) const;
  bool PanelAccounted(bool force) const;
  void KeepOnScreen();
  void RestorePlace();

  // FullScreenHost
  int FormState() const override { return static_cast<int>(State()); }
  FormPlace PlaceOfForm() const override;
  void SetActiveHwnd() override;
  void EnterFullScreen() override;
  void LeaveFullScreen(const std::optional<FormPlace>& place, int state) override;
  void SetPanelHeight(int pixels) override;
  void SetFullScreenChecked(bool checked) override;
  bool RenderVisible() const override;
  void ChangeTarget() override;

  // TrayHost
  bool DialogOpen() const override { return host_.TrayMustWait(); }
  bool FormVisible() const override { return parts_.form.isVisible(); }
  void ShowForm() override;
  void BUtton_Click(int Index) override { host_.BUtton_Click(Index); }

  // PanelSlideHost
  bool PanelVisible() const override { return panel_visible_; }
  int PanelHeight() const override { return panel_height_; }

  // PointerWorld
  Foreground ForegroundWindow() const override;
  bool FormMinimised() const override { return parts_.form.isMinimized(); }
  FormArea AreaOfForm() const override;
  bool DisplayVisible() const override { return panel_visible_; }
  std::optional<ScreenPoint> Pointer() const override;
  int MouseButtonDown() override;

  // PointerActions
  void ShowCursor(bool show) override;
  void SetTaskBarVisible(bool visible) override { parts_.windows.SetTaskBarVisible(visible); }
  void MENU_Click(std::string_view key) override { host_.MENU_Click(key); }
  void FocusDisplay() override { TakeFocus(); }
  void FocusRender() override { TakeFocus(); }
  void TakeFocus();

  // SizingView
  void SetVumeterVisible() override { host_.SetVumeterVisible(); }
  void SetRenderVisible(bool visible) override;
  WindowHandle RenderHandle() const override;
  void PutAwayVuMeter1() override { host_.PutAwayVuMeter1(); }
  void PrintCurScale() override;
  void LockWindowRedraw(bool lock) override;

  ScreenRoomHost& host_;
  Parts parts_;
  WindowCaption caption_;
  FullScreen full_screen_;
  PanelSlide slide_;
  PointerWatch pointer_;
  WindowSizingWatch sizing_;
  WindowZoom zoom_;
  TrayIcon tray_;
  mutable PointerSight sight_;
  QTimer sizing_quiet_;  // runs out when a drag of the frame has come to rest
  QTimer restore_;       // runs out when the desktop has taken the window out of full screen
  QTimer tray_watch_;    // runs while only the tray icon can bring the window back
  FormPlace normal_place_;

  const bool effects_ = QApplication::isEffectEnabled(Qt::UI_General);  // the desktop's own
  bool reduced_motion_ = false;
  int panel_height_ = 1;
  bool panel_visible_ = true;
  bool cursor_shown_ = true;
  int pressed_ = 0;  // button of a press on the form since the last question
  WindowState PreviousWindowState_ = WindowState::kNormal;
};

}  // namespace kv
