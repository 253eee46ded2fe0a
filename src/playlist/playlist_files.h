// Loading and saving of the playlist: M3U files here and on servers, and the questions about them.
//
// Fetching, message boxes and a load that is watched by the scan window pump messages, so another
// load, or the end of the program, can come in the middle: the load that began last wins, the other
// ends without another word. Nothing is ever written over a file whose entries the list does not
// hold: while a load is half done, and over a playlist that could not be read, saving does nothing.
// A list that another program has written in its own way is read in full only when the user says
// so. Owned by `frmMain`; interface thread only.
#pragma once

#include "playlist/foreign_list.h"
#include "playlist/list_adding.h"
#include "playlist/list_window.h"
#include "playlist/ost_list.h"
#include "state/session.h"
#include "state/settings.h"
#include "system/dialogs.h"
#include "system/download.h"
#include "system/message_pump.h"
#include "system/registry.h"
#include "system/text_platform.h"

#include <cstdint>
#include <set>
#include <string>
#include <string_view>

namespace kv {

class PlaylistFilesHost {
 public:
  virtual ~PlaylistFilesHost() = default;
  // `frmPlaylist` and `frmScanning`; null while they are not loaded.
  virtual ListWindow* LoadedListWindow() = 0;
  virtual ScanWindow* OpenScanWindow() = 0;
  virtual void OpenFile(const std::string& path, bool from_playlist, bool start_playing) = 0;
  virtual bool EngineRunning() const = 0;
  virtual void PressPlay() = 0;
  virtual void UpdateFileDisp(const std::string& text) = 0;
  // Must not pump: what is saved is the list of this moment.
  virtual void SetBusyPointer(bool busy) = 0;
};

struct PlaylistFilesParts {
  OSTList& playlist;
  ListAdding& adding;
  Settings& settings;
  Session& session;
  Dialogs& dialogs;
  MessagePump& pump;
  Download& download;
  Registry& registry;
  const TextPlatform& text;
  std::string app_folder;    // where the open dialog starts the first time
  std::string locale = "C";  // the user's; tells the code page of a text that is not UTF-8
};

class PlaylistFiles {
 public:
  // The registry key, under the current user, of the folders and texts that dialogs remember.
  static constexpr std::string_view kGeneralKey = "Software\\Kestrelview\\General";

  PlaylistFiles(PlaylistFilesHost& host, PlaylistFilesParts parts);

  // Replaces the list by the entries of an M3U file or URL, which becomes `PlaylistFile`. A file
  // that is not there leaves the list alone and ends playing from it; one that cannot be read
  // changes nothing at all; a URL that cannot be fetched is told and leaves an empty list.
  void LoadPlaylist(const std::string& path);

  // Writes the list to `path`, which becomes `PlaylistFile`, all or nothing and also over a file
  // that is write-protected. A URL, and any failure, changes nothing: `PlaylistDirty` tells.
  void SavePlaylist(const std::string& path);

  // Asks for a name and saves; then asks whether the new file is the playlist from now on.
  void SavePlaylistAs();

  // Saves under `PlaylistFile` where that file exists; otherwise asks for a name.
  void SavePlaylistToggle();

  // Makes an M3U file the new list and opens its first entry. Asks first about a list that has
  // changes, and for the file when `path` is empty. `by_hand`: the user is there and is asked how
  // to read a list of another kind (foreign_list.h); one that is read as lines counts as changed.
  void OpenPlaylist(const std::string& path, bool by_hand = true);

  // The list window's save: a list from a server is saved as a local copy, if the user wants one.
  // True when something may have been saved, so that the window's buttons are to follow.
  bool SaveList();

 private:
  enum class Outcome { kDone, kUnreadable, kCancelled, kOvertaken };

  bool Overtaken(std::uint64_t number) const;
  Outcome Load(const std::string& path, bool by_hand);
  Outcome Fetch(const std::string& url, std::uint64_t number, std::string& text);
  BoxAnswer AskHowToRead(const std::string& path, const LineTest& names_file, std::string& text,
                         bool& complete);
  Outcome Fill(const std::string& path, const std::string& text, std::uint64_t number);
  void ShowProgress(const std::string& path, int piece);
  bool MaySaveTo(const std::string& path) const;
  bool SaveTo(const std::string& path);
  bool AskToKeepChanges();
  std::string LastFolder() const;

  PlaylistFilesHost& host_;
  PlaylistFilesParts parts_;
  std::uint64_t last_load_ = 0;  // number of the load that began last
  bool filling_ = false;         // the list holds a part of what it was loaded from
  bool asked_to_load_ = false;   // before that an empty list only means that nothing is loaded yet
  // Playlists that could not be read, or not in full: saving the list would lose what they hold.
  std::set<std::string> unread_files_;
};

}  // namespace kv
