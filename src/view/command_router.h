// Where every menu command arrives: from the menu, a key, a button, a hot key or the tray.
//
// A click only notes the entry and arms `mnuTimer`; the command runs when that fires, so that
// nothing runs inside the menu's own message loop. What commands need of the rest of the player is
// told in narrow interfaces, by who has it. Owned by `frmMain`, which outlives it; interface thread
// only.
#pragma once

#include "state/session.h"
#include "state/settings.h"
#include "system/dialogs.h"
#include "system/message_pump.h"
#include "system/timers.h"
#include "view/menu_model.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

class CommandTransport {
 public:
  virtual ~CommandTransport() = default;
  virtual void BUtton_Click(int Index) = 0;
  virtual void PlaylistSetPrevious(bool to_first, bool immediate) = 0;
  // `index` -1 is a step, 0 or more a jump.
  virtual void PlaylistSetNext(bool to_last, int index, bool immediate) = 0;
};

// The medium: opening, copying, resume data.
class CommandMedium {
 public:
  virtual ~CommandMedium() = default;
  // Opens and plays; an empty name asks for one first.
  virtual void OpenFile(const std::string& path) = 0;
  // Opens an address that was typed, without starting it and without a new window size.
  virtual void OpenAddress(const std::string& address) = 0;
  virtual void SaveCurrentFile() = 0;
  virtual void SaveResumeFile(bool end_pos, bool clear_end) = 0;
  // Both resume positions become 0 and `picKVR` is hidden.
  virtual void ReleaseResumeData() = 0;
};

class CommandWindow {
 public:
  virtual ~CommandWindow() = default;
  virtual bool FormVisible() const = 0;
  // A click on the tray icon; code 1 brings the window up.
  virtual void TrayClick(int code) = 0;
  virtual void SetCursor(bool show, bool force) = 0;
  virtual void ScaleWindow(float Factor) = 0;
  // Makes the window follow the settings.
  virtual void UpdateSettings() = 0;
};

// The other windows. A modal one returns when it is closed.
class CommandForms {
 public:
  virtual ~CommandForms() = default;
  // `frmURL`, modal: the address that the user leaves in it, empty when cancelled.
  virtual std::string AskForUrl() = 0;
  // `frmSettings`, modal: true when the user asks for the colours. The request is then spent.
  virtual bool ShowOptions() = 0;
  virtual void ShowColors() = 0;
  virtual void ShowAbout() = 0;    // modal
  virtual void ShowPlugins() = 0;  // modal
  // `frmHelp`, not modal, made at need.
  virtual void ShowHelp() = 0;
  virtual void ShowPlaylistWindow() = 0;
  virtual void ClosePlaylistWindow() = 0;
};

class CommandVisuals {
 public:
  virtual ~CommandVisuals() = default;
  // Stops the meter inside the main window, if it runs.
  virtual void StopVuMeter1() = 0;
  // `frmVumeter`.
  virtual void ShowMeterWindow() = 0;
  // Lets go of the plug-in object.
  virtual void ReleasePlugin() = 0;
  // Makes the entry `Index` of the catalogue the plug-in in use.
  virtual void SetExPlugIn(int Index) = 0;
};

// Subtitles and sounds of the medium.
class CommandTracks {
 public:
  virtual ~CommandTracks() = default;
  // Plays what the entry of `key` stands for.
  virtual void PickTrack(std::string_view key) = 0;
  // Asks for a file of subtitles and shows them; modal.
  virtual void LoadSubtitles() = 0;
};

struct CommandHosts {
  CommandTransport& transport;
  CommandMedium& medium;
  CommandWindow& window;
  CommandForms& forms;
  CommandVisuals& visuals;
  CommandTracks& tracks;
};

// Timers of the main window.
struct CommandTimers {
  Timer& mnuTimer;  // 25 ms; fires OnmnuTimer()
  Timer& ToggleFullscreenTimer;
  Timer& UnloadTimer;
};

class CommandRouter {
 public:
  // All must outlive this object. `time` makes timers for clicks inside a command that takes long.
  CommandRouter(MenuModel& menu, Settings& settings, const Session& session, Dialogs& dialogs,
                MessagePump& pump, TimerSource& time, const CommandTimers& timers,
                const CommandHosts& hosts);
  CommandRouter(const CommandRouter&) = delete;
  CommandRouter& operator=(const CommandRouter&) = delete;

  // The click event. The command runs a moment later; of two clicks within that moment the last
  // counts. An entry that is disabled or not there does nothing. Pumps once.
  void MENU_Click(int id);

  // A click on the entry of `key`.
  void RunMenuCommand(std::string_view key);

  // The same for a check entry whose mark the user turns over without the menu.
  void FlipAndRun(std::string_view key);

  // Runs what was clicked. Pumps once; a modal window lasts as long as it is open.
  void OnmnuTimer();

  // The id of the last click that has not run yet, -1 for none.
  int PendingMenuId() const { return PendingMenuId_; }

 private:
  struct Row {
    std::string_view key;
    void (*run)(CommandRouter&);
  };
  static const std::vector<Row>& Rows();

  Timer& ClickTimer();
  void Dispatch(int id);
  void RunEntryMadeAtRunTime(const std::string& key);
  void OpenUrl();
  void Options();
  void TogglePlaylist();
  void ClearRecentFiles();
  void UseBuiltInMeter();
  void Store(SettingsBool Settings::*setting, std::string_view key);

  // False when there is one already, or when the form is closed meanwhile.
  template <class Show>
  bool ShowModal(Show show);

  MenuModel& menu_;
  Settings& settings_;
  const Session& session_;
  Dialogs& dialogs_;
  MessagePump& pump_;
  TimerSource& time_;
  CommandTimers timers_;
  CommandHosts hosts_;

  int PendingMenuId_ = MenuModel::kNoItem;
  std::size_t running_ = 0;  // commands that have not returned
  bool modal_ = false;       // one of them shows a window that must be closed first
  std::vector<std::unique_ptr<Timer>> inner_timers_;
};

}  // namespace kv
