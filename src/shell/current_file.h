// Saving and deleting the medium in hand.
//
// A copy or a download goes on beside everything else, in a window of its own; what it saves to is
// the whole new file or what stood there before. Deleting asks, holds the medium still meanwhile,
// and goes on with the next entry of the list. Owned by `frmMain`; interface thread only.
#pragma once

#include "engine/dshow_control.h"
#include "playlist/ost_list.h"
#include "state/session.h"
#include "state/settings.h"
#include "system/dialogs.h"
#include "system/message_pump.h"
#include "system/shell_services.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace kv {

class CurrentFileHost {
 public:
  // False: it failed. A copy that the user has cancelled is none that failed.
  using Saved = std::function<void(bool saved)>;

  virtual ~CurrentFileHost() = default;
  // Both begin to bring `source` to the name `target`, replacing what stands there, and return.
  // `saved` is called at the end, perhaps at once, and not at all when the program goes down.
  virtual void CopyToFile(const std::string& source, const std::string& target) = 0;
  virtual void DownloadToFile(const std::string& Url, const std::string& Target, Saved saved) = 0;

  virtual void BUtton_Click(int Index) = 0;
  virtual void RunMenuCommand(std::string_view key) = 0;
  // `index` as at Navigation; `immediate` true.
  virtual void PlaylistSetNext(int index) = 0;
  // Entry `index` has just left the list; the row of it must follow.
  virtual void EntryRemoved(int index) = 0;
};

// All must outlive the object that is made with them.
struct CurrentFileParts {
  clsDShowControl& Movie;
  OSTList& playlist;
  Settings& settings;
  const Session& session;
  Dialogs& dialogs;
  MessagePump& pump;
  ShellServices& services;
  const TextPlatform& text;
};

class CurrentFile {
 public:
  CurrentFile(CurrentFileHost& host, CurrentFileParts parts);

  // False while a metafile's stream plays: there is nothing to copy.
  bool MaySave() const { return parts_.session.AsxInfo.entry.empty(); }

  // Asks for a name and saves the medium under it. Returns when the copy or download has begun.
  void SaveCurrentFile();

  // Moves the medium's file to the trash, after the desktop's question, and takes it off the list.
  // An address is no file and stays as it is. Pumps.
  void DeleteCurFile();

 private:
  // The name to save `source` under; empty when the user leaves it.
  std::string AskForTarget(const std::string& source, bool remote);
  bool SameFile(const std::string& a, const std::string& b) const;
  // The entry that stands for `path`, 0 none.
  int EntryOf(const std::string& path) const;
  void RemoveFromList(const std::string& path);
  void GoOn(bool was_running);

  CurrentFileHost& host_;
  CurrentFileParts parts_;
  // Expires with this object, which a download may outlive.
  std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
};

}  // namespace kv
