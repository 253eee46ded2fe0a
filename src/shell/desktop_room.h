// What the desktop and the running player know of each other: media keys and controllers (MPRIS),
// the screen that must not go blank while a video plays, and the desktop's own file dialogs.
//
// Comes up a moment after the window, when nothing waits for it any more; without a session bus it
// never does. Gives the rules of the desktop's classes the player. Owned by `frmMain`; interface
// thread only.
#pragma once

#include "desktop/blanking_guard.h"
#include "desktop/blanking_services_qt.h"
#include "desktop/cover_art.h"
#include "desktop/mpris_player.h"
#include "desktop/mpris_service_qt.h"
#include "engine/dshow_control.h"
#include "shell/sliders.h"
#include "state/session.h"
#include "state/settings.h"
#include "system/dialogs_qt.h"
#include "system/timers.h"

#include <QWidget>

#include <functional>
#include <memory>
#include <string>

namespace kv {

class DesktopRoomHost {
 public:
  virtual ~DesktopRoomHost() = default;
  virtual void BUtton_Click(int Index) = 0;
  virtual void PlaylistSetNext(bool to_last, int index, bool immediate) = 0;
  virtual int PlaylistCount() const = 0;
  // Opens and starts what another program asks for; nobody is there to be asked about it.
  virtual void OpenForProgram(const std::string& path) = 0;
  virtual void ToggleFullScreen() = 0;
  // Shows `RepeatMode` on its button.
  virtual void ShowRepeatMode() = 0;
};

class DesktopRoom : private MprisHost {
 public:
  // All must outlive this object.
  struct Parts {
    QWidget& form;
    clsDShowControl& Movie;
    Settings& settings;
    const Session& session;
    SliderModels models;
    TimerSource& time;
    Timer& UnloadTimer;
    DialogsQt& dialogs;
    std::string runtime_folder;  // the user's own, with a trailing "/"; may be empty
  };

  DesktopRoom(DesktopRoomHost& host, const Parts& parts);
  ~DesktopRoom() override;
  DesktopRoom(const DesktopRoom&) = delete;
  DesktopRoom& operator=(const DesktopRoom&) = delete;

  // The window is up.
  void Begin() { begin_->SetEnabled(true); }
  // The window goes down.
  void End();

 private:
  struct Services;

  void Connect();
  void Later(std::function<void()> work);

  // MprisHost
  PlayerState State() const override;
  std::string ArtUrl(const PlayerState& state) override { return art_.Of(state.target); }
  void PressPlay() override;
  void PressPause() override;
  void PressStop() override;
  void PressPrevious() override;
  void PressNext() override;
  void PlayEntry(int index) override { host_.PlaylistSetNext(false, index, true); }
  void MoveTo(double seconds) override { parts_.Movie.DS_SetPosition(seconds); }
  void SetVolume(double volume) override;
  void SetRate(double rate) override;
  void SetRepeatMode(int mode) override;
  void SetFullScreen(bool on) override;
  bool OpenUri(const std::string& uri) override;
  void RaiseWindow() override;
  void CloseWindow() override;

  DesktopRoomHost& host_;
  Parts parts_;
  CoverArt art_;
  std::unique_ptr<Timer> begin_;
  std::unique_ptr<Timer> watch_;
  std::unique_ptr<Services> services_;  // once there is a bus
};

}  // namespace kv
