// How the last medium comes back at the start, and how the program goes down.
//
// The decisions of `LoadLast` and `Form_QueryUnload`; what they act on is the form's. Owned by
// `frmMain`; interface thread only.
#pragma once

#include "engine/dshow_control.h"
#include "shell/media_opener.h"
#include "state/session.h"
#include "state/settings.h"
#include "system/dialogs.h"
#include "system/message_pump.h"
#include "system/timers.h"

#include <functional>
#include <string>

namespace kv {

// Why the form is asked to close.
enum class UnloadMode {
  kUser = 0,        // the window's close button, the menu, the program itself
  kSessionEnd = 2,  // the login session ends
};

class FormLifeHost {
 public:
  virtual ~FormLifeHost() = default;

  // While the last medium is loaded
  virtual void OpenFile(const std::string& File, OpenArguments arguments) = 0;
  virtual void BUtton_Click(int Index) = 0;
  virtual void UpdateFileDisp(const std::string& text) = 0;
  virtual void UpdateFileDataDisplay() = 0;
  virtual int PlaylistCount() const = 0;
  virtual std::string PlaylistItem(int index) const = 0;

  // While the form goes down
  virtual void SavePlaylist(const std::string& file) = 0;
  virtual void SavePlaylistToggle() = 0;  // asks where, and may be cancelled
  virtual void HideForm() = 0;
  virtual void StopAllTimers() = 0;
  virtual void AbandonOpen() = 0;
  // Unloads the other forms that are loaded: `frmAbout`, `frmBusy`, `frmCapture`, `frmColors`,
  // `frmCopy`, `frmPlaylist`, `frmPlugins`, `frmSettings`, `frmVumeter`, `frmHelp`.
  virtual void UnloadOtherForms() = 0;
  // Has the desktop start the program once at the next login.
  virtual void RegisterRestart() = 0;
  virtual void SaveSettings() = 0;
  virtual void StopWheelHook() = 0;
};

class FormLife {
 public:
  FormLife(FormLifeHost& host, clsDShowControl& movie, Settings& settings, Session& session,
           Dialogs& dialogs, MessagePump& pump);

  // The event of the timer of that name. `have_command_file`: a medium was given at the start,
  // which then is the one to play.
  void OnLoadLast(bool have_command_file);

  // False: the user wants to go on, and nothing has been stopped. Otherwise the form is hidden, all
  // timers stand, the medium is released and the settings are written.
  bool Form_QueryUnload(UnloadMode mode);

 private:
  // Answers what it has asked to open, empty for nothing.
  std::string OpenLast();
  bool Overtaken(const std::string& last) const;
  void ReturnToLastPosition();
  bool AskToSavePlaylist();

  FormLifeHost& host_;
  clsDShowControl& movie_;
  Settings& settings_;
  Session& session_;
  Dialogs& dialogs_;
  MessagePump& pump_;
  bool SettingsSaved_ = false;  // against a second write when the query comes twice
};

}  // namespace kv
