// How media enter the playlist: single files, whole folders, what is dropped on a window.
//
// A folder walk pumps messages as it goes, so that its Cancel button and the program's end are
// heard, also where a network folder does not answer; what has been added by then stays. Names are
// bytes and reach the list as the file system gives them. Owned by `frmMain`; interface thread
// only.
#pragma once

#include "playlist/list_window.h"
#include "playlist/ost_list.h"
#include "state/session.h"
#include "system/dialogs.h"
#include "system/message_pump.h"

#include <string>
#include <vector>

namespace kv {

class ListAddingHost {
 public:
  virtual ~ListAddingHost() = default;
  // `frmPlaylist` and `frmScanning`; null while they are not loaded.
  virtual ListWindow* LoadedListWindow() = 0;
  virtual ScanWindow* OpenScanWindow() = 0;
  // Opens a playlist that was dropped alone.
  virtual void OpenFile(const std::string& path) = 0;
  virtual void UpdateFileDisp(const std::string& text) = 0;
  virtual void SetBusyPointer(bool busy) = 0;
};

class ListAdding {
 public:
  ListAdding(ListAddingHost& host, OSTList& playlist, Session& session, Dialogs& dialogs,
             MessagePump& pump);

  // Appends one path or URL, whether or not it exists, with its row. A playlist and a name that
  // cannot be played are left out without a word. The limit is for the caller to test. Pumps while
  // the scan window is open.
  void AddFileToList(const std::string& path);

  // Appends a file, or all playable files of a folder and of those below it: a folder's subfolders
  // come before its files, both in the order of the file system. Ends early at `ScanAbort`, at the
  // program's end and, without a word, at 9999 entries. A folder that leads back into itself by a
  // link is entered once. Sets `PlaylistDirty`. Pumps.
  void AddFolderToList(const std::string& path);

  // Appends what was dropped; a single playlist is opened instead. Tells when the list is full.
  // Pumps.
  void AddFilesOrFolders(std::vector<std::string> files);

 private:
  bool Full() const { return playlist_.Count() >= kPlaylistLimit; }
  bool Stopped() const { return session_.ScanAbort || session_.Unloading; }
  void PumpNowAndThen();
  // What the disk answers, asked aside; none when the walk is stopped meanwhile. Pumps.
  template <class Question>
  auto Ask(Question question);
  void AddTree(const std::string& top);
  void AddFilesOf(const std::string& folder);
  void AddEach(const std::vector<std::string>& files, bool tell_full);
  void TellFull();

  ListAddingHost& host_;
  OSTList& playlist_;
  Session& session_;
  Dialogs& dialogs_;
  MessagePump& pump_;
  int since_pump_ = 0;
};

}  // namespace kv
