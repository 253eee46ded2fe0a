#include "shell/form_life.h"

#include "system/translation.h"

#include <exception>

namespace kv {

FormLife::FormLife(FormLifeHost& host, clsDShowControl& movie, Settings& settings, Session& session,
                   Dialogs& dialogs, MessagePump& pump)
    : host_(host),
      movie_(movie),
      settings_(settings),
      session_(session),
      dialogs_(dialogs),
      pump_(pump) {}

void FormLife::OnLoadLast(bool have_command_file) {
  if (!have_command_file) {
    const std::string last = movie_.DS_IsOpen() ? std::string() : OpenLast();
    // The open can have taken long enough for the user to close the program ...
    if (session_.Unloading) return;
    if (!movie_.DS_IsOpen()) {
      settings_.CurrentFile.clear();
    } else if (!Overtaken(last)) {
      ReturnToLastPosition();
    }
    host_.UpdateFileDisp("");
  }
  settings_.RestartPlaying = FromBool(false);
}

// ... or to open another medium, which is not to be moved to where the last one stood. A resume
// file leads to a medium of another name, and tells by its section.
bool FormLife::Overtaken(const std::string& last) const {
  return !last.empty() && settings_.CurrentFile != last && session_.ResumePosition == kNoPosition;
}

void FormLife::ReturnToLastPosition() {
  if (IsOn(settings_.StorePos) || session_.ResumePosition > 0.0) {
    movie_.DS_SetPosition(settings_.LastPosition);
  }
  if (IsOn(settings_.InitLastFrame)) {
    int width = 0;
    int height = 0;
    movie_.DS_GetMovieSize(width, height);
    if (width >= 1 && height >= 1) {
      movie_.DS_Play();
      movie_.DS_Pause();
    }
  }
  if (IsOn(settings_.AutoStart) || IsOn(settings_.RestartPlaying)) host_.BUtton_Click(0);
}

std::string FormLife::OpenLast() {
  std::string last;
  if (settings_.PlaylistIndex >= 1 && IsOn(settings_.PlayingFromPlaylist)) {
    if (host_.PlaylistCount() == 0) {
      settings_.PlaylistIndex = 0;
      settings_.PreviousItemPosition = kNoPosition;
    } else {
      last = host_.PlaylistItem(settings_.PlaylistIndex);
      if (!last.empty()) host_.OpenFile(last, {.FromPlaylist = true, .KeepWindowSize = true});
    }
    host_.UpdateFileDataDisplay();
  } else if (settings_.CurrentFile.empty()) {
    host_.UpdateFileDataDisplay();
  } else {
    last = settings_.CurrentFile;
    host_.OpenFile(last, {.KeepWindowSize = true, .Unattended = true});
  }
  return last;
}

bool FormLife::AskToSavePlaylist() {
  const BoxAnswer answer = dialogs_.ShowMessageBox(
      {Tr("Current playlist is not saved!\n\nDo you want to save it before you quit ?"),
       BoxIcon::kQuestion, BoxButtons::kYesNoCancel, ""});
  if (answer == BoxAnswer::kCancel) return false;
  if (answer != BoxAnswer::kYes) return true;
  host_.SavePlaylistToggle();
  return !session_.PlaylistDirty;
}

bool FormLife::Form_QueryUnload(UnloadMode mode) {
  if (session_.Unloading) return true;
  try {
    if (IsOn(settings_.SavePlaylist) && !SettingsSaved_) {
      host_.SavePlaylist(settings_.PlaylistFile);
      // What could not be saved is not given up without a word, as long as there is one to ask.
      if (session_.PlaylistDirty && mode == UnloadMode::kUser && !AskToSavePlaylist()) return false;
    } else if (session_.PlaylistDirty && !AskToSavePlaylist()) {
      return false;
    }
    host_.HideForm();
    pump_.PumpOnce();
    session_.Unloading = true;
    host_.StopAllTimers();
    host_.AbandonOpen();
    if (mode != UnloadMode::kSessionEnd) {
      host_.UnloadOtherForms();
      settings_.RestartPlaying = FromBool(false);
    } else if (IsOn(settings_.AutoRestart) && !SettingsSaved_) {
      settings_.RestartPlaying = FromBool(movie_.DS_IsRunning() && !movie_.DS_IsPaused());
      host_.RegisterRestart();
    }
    session_.FormLoaded = false;
    movie_.DS_Remove();
    if (!SettingsSaved_) {
      SettingsSaved_ = true;
      host_.SaveSettings();
    }
    host_.StopWheelHook();
  } catch (const std::exception& error) {
    dialogs_.ShowMessageBox({Fill(Tr("Error terminating Kestrelview:\n\n%1\nCode:0"), error.what()),
                             BoxIcon::kStop, BoxButtons::kOk, ""});
  }
  return true;
}

}  // namespace kv
