// The timers of the main window, as one table.
//
// There is no loop in the program but the message loop: what looks like one is a timer here, and
// nearly all are one-shots that carry long work out of the event which asked for it. Owned by
// `frmMain`; interface thread only.
#pragma once

#include "system/timers.h"

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <string_view>

namespace kv {

enum class MainTimer {
  PosTimer,
  LinkExeTimer,
  PanelShowTimer,
  OpeningCMDDelay,
  LoadLast,
  MouseTimer,
  mnuTimer,
  UnloadTimer,
  PlayFromPlaylist,
  ToggleFullscreenTimer,
  PanelDelayTimer,
  DelayAutoHide,
  UpdateDispTimer,
  SetCaptionDelay,
  NormalizeCaption,
  tmrCheckBuffering,
  tmrCheckBufferingTimeout,
  DemoTimer,
  FadeInTimer,
  VolumeFlash,
  UpdateVuRunning,
};

struct MainTimerRow {
  MainTimer id;
  std::string_view name;
  TimerKind kind;
  int interval;  // milliseconds
};

inline constexpr int kFollowMilliseconds = 30;  // of the playback tick
inline constexpr int kIdleMilliseconds = 90;    // of the same, with nothing open

inline constexpr std::array kMainTimers = {
    // The playback tick, for the life of the form.
    MainTimerRow{MainTimer::PosTimer, "PosTimer", TimerKind::kHighResolution, kFollowMilliseconds},
    // Opens the file that a command line or another start has handed over.
    MainTimerRow{MainTimer::LinkExeTimer, "LinkExeTimer", TimerKind::kHighResolution, 50},
    // Slides the panel in and out.
    MainTimerRow{MainTimer::PanelShowTimer, "PanelShowTimer", TimerKind::kHighResolution, 10},
    // While it runs, a hand-over repeats the command line and is refused.
    MainTimerRow{MainTimer::OpeningCMDDelay, "OpeningCMDDelay", TimerKind::kOrdinary, 3000},
    // Reloads the last medium.
    MainTimerRow{MainTimer::LoadLast, "LoadLast", TimerKind::kOrdinary, 50},
    // Polls the pointer, for the life of the form.
    MainTimerRow{MainTimer::MouseTimer, "MouseTimer", TimerKind::kOrdinary, 50},
    // Runs the chosen menu command outside the menu's event.
    MainTimerRow{MainTimer::mnuTimer, "mnuTimer", TimerKind::kOrdinary, 25},
    // Unloads the form.
    MainTimerRow{MainTimer::UnloadTimer, "UnloadTimer", TimerKind::kOrdinary, 50},
    // Opens the playlist entry.
    MainTimerRow{MainTimer::PlayFromPlaylist, "PlayFromPlaylist", TimerKind::kOrdinary, 500},
    MainTimerRow{MainTimer::ToggleFullscreenTimer, "ToggleFullscreenTimer", TimerKind::kOrdinary,
                 10},
    // Enables `PanelShowTimer`.
    MainTimerRow{MainTimer::PanelDelayTimer, "PanelDelayTimer", TimerKind::kOrdinary, 500},
    // Waits before the panel is hidden.
    MainTimerRow{MainTimer::DelayAutoHide, "DelayAutoHide", TimerKind::kOrdinary, 1000},
    // Fits the title after a resize.
    MainTimerRow{MainTimer::UpdateDispTimer, "UpdateDispTimer", TimerKind::kOrdinary, 10},
    // Types the caption, a letter at a time.
    MainTimerRow{MainTimer::SetCaptionDelay, "SetCaptionDelay", TimerKind::kOrdinary, 5},
    // Ends a temporary caption.
    MainTimerRow{MainTimer::NormalizeCaption, "NormalizeCaption", TimerKind::kOrdinary, 3000},
    // Watches for the first position of a stream ...
    MainTimerRow{MainTimer::tmrCheckBuffering, "tmrCheckBuffering", TimerKind::kOrdinary, 250},
    // ... and gives up.
    MainTimerRow{MainTimer::tmrCheckBufferingTimeout, "tmrCheckBufferingTimeout",
                 TimerKind::kOrdinary, 15000},
    // Cycles the plug-ins.
    MainTimerRow{MainTimer::DemoTimer, "DemoTimer", TimerKind::kOrdinary, 1000},
    // Raises the volume to its top; nothing in the program starts it.
    MainTimerRow{MainTimer::FadeInTimer, "FadeInTimer", TimerKind::kOrdinary, 5},
    // These two stand on the form without a handler.
    MainTimerRow{MainTimer::VolumeFlash, "VolumeFlash", TimerKind::kOrdinary, 100},
    MainTimerRow{MainTimer::UpdateVuRunning, "UpdateVuRunning", TimerKind::kOrdinary, 50},
};

class MainTimers {
 public:
  // All timers, disabled. `on_fire` hears which one is due.
  MainTimers(TimerSource& source, std::function<void(MainTimer)> on_fire);
  MainTimers(const MainTimers&) = delete;
  MainTimers& operator=(const MainTimers&) = delete;

  Timer& operator[](MainTimer timer) { return *timers_[static_cast<std::size_t>(timer)]; }
  bool Enabled(MainTimer timer) const {
    return timers_[static_cast<std::size_t>(timer)]->Enabled();
  }

  // Disables every timer of the form.
  void StopAllTimers();

 private:
  std::function<void(MainTimer)> on_fire_;
  std::array<std::unique_ptr<Timer>, kMainTimers.size()> timers_;
};

}  // namespace kv
