// The buttons of the strip: `BUtton_Click` is the one road of every transport command, whether it
// comes from the mouse, the keyboard, the menu, the tray or the playback tick.
//
// What the buttons need of the rest of the player is told in four narrow interfaces, by who has it.
// Owned by `frmMain`, which outlives it; interface thread only.
#pragma once

#include "engine/dshow_control.h"
#include "shell/marks.h"
#include "state/session.h"
#include "state/settings.h"
#include "system/message_pump.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace kv {

// The playlist and the steps through it. Indexes count from 1 to the length of the list.
class TransportNavigation {
 public:
  virtual ~TransportNavigation() = default;
  // Empty for an index outside the list.
  virtual std::string PlaylistItem(int index) const = 0;
  virtual void PlaylistSetPrevious(bool to_first, bool immediate) = 0;
  // `index` -1 is a step, 0 or more a jump.
  virtual void PlaylistSetNext(bool to_last, int index, bool immediate) = 0;
  virtual void StartPlaylistTimer(bool immediate) = 0;
};

class TransportMenu {
 public:
  virtual ~TransportMenu() = default;
  virtual void RunMenuCommand(std::string_view key) = 0;
  virtual void SetMenuEnabled(std::string_view key, bool enabled) = 0;
  // Shows the main menu, "M", at the pointer and returns when it is closed.
  virtual void PopUpMainMenu() = 0;
};

// The level meter and the plug-ins.
class TransportVisuals {
 public:
  virtual ~TransportVisuals() = default;
  // Decides anew whether the meter in the main window runs and shows.
  virtual void SetVumeterVisible() = 0;
  // Stops the meter in use, which is that of the meter window while it is open; true if it ran.
  virtual bool StopMeter() = 0;
  // Starts the meter that the last StopMeter has stopped.
  virtual void StartMeter() = 0;
  virtual void CyclePlugins() = 0;
  // Lets go of the plug-in object.
  virtual void ReleasePlugin() = 0;
};

// What is written and shown in the main window, and the window of the list.
class TransportDisplay {
 public:
  enum class PlaylistWindow { kNotLoaded, kMinimised, kOpen };

  virtual ~TransportDisplay() = default;
  virtual void UpdateFileDisp(const std::string& text) = 0;
  virtual void UpdateFileDataDisplay() = 0;
  // The overlay; 0 is buffering.
  virtual void ShowStatus(int kind) = 0;
  // Puts a face of the row `Rpt` on the repeat button: 0 off, 1 the medium, 2 the list.
  virtual void SetRepeatFace(int face) = 0;
  virtual PlaylistWindow StateOfPlaylistWindow() const = 0;
  virtual void ShowPlaylistWindow() = 0;  // not modal
  virtual void RestorePlaylistWindow() = 0;
  virtual void FocusPlaylistWindow() = 0;
};

class Transport {
 public:
  // The array `Button` of the strip, by index.
  enum Button : int {
    kPlay,
    kPause,
    kStop,
    kPrevious,
    kNext,
    kMarks,
    kRepeat,
    kMenu,
    kFirst,
    kLast,
    kPlaylist,
    kCyclePlugins,
  };

  // All must outlive this object.
  Transport(clsDShowControl& movie, Settings& settings, const Session& session, Marks& marks,
            MessagePump& pump, TransportNavigation& navigation, TransportMenu& menu,
            TransportVisuals& visuals, TransportDisplay& display);

  // Presses a button; an index that no button has does nothing.
  void BUtton_Click(int Index);

  // The second press of a quick pair. It counts for Previous and Next, so that fast stepping misses
  // none; elsewhere it does nothing.
  void Button_DblClick(int Index);

  // A button of the mouse was let go over the strip: the right one opens the menu.
  void BottonPanel_MouseUp(std::int16_t MouseButton);

  // Shows `RepeatMode` on its button; what is no mode shows as off.
  void SetRepeatButtonColor();

 private:
  void Play();
  void PlayFromList();
  void Pause();
  void Stop();
  void Previous();
  void Next();
  void StepMarks();
  void StepRepeat();
  void Menu();
  void First();
  void Last();
  void Playlist();
  void CyclePlugins();

  bool Playing() const { return movie_.DS_IsRunning() && !movie_.DS_IsPaused(); }

  clsDShowControl& movie_;
  Settings& settings_;
  const Session& session_;
  Marks& marks_;
  MessagePump& pump_;
  TransportNavigation& navigation_;
  TransportMenu& menu_;
  TransportVisuals& visuals_;
  TransportDisplay& display_;
};

}  // namespace kv
