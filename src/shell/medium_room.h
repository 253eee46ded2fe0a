// What the user does with a medium from outside and with the one in hand: drops, typed addresses,
// saving, deleting.
//
// Gives the rules of these their windows and the desktop. Owned by `frmMain`; interface thread
// only.
#pragma once

#include "shell/current_file.h"
#include "shell/drops.h"
#include "shell/frm_url.h"
#include "shell/list_windows.h"
#include "shell/playlist_room.h"

#include <QDropEvent>
#include <QPalette>
#include <QPointer>
#include <QWidget>

#include <string>
#include <string_view>

namespace kv {

class MediumRoomHost {
 public:
  virtual ~MediumRoomHost() = default;
  virtual void OpenFile(const std::string& File, OpenArguments arguments) = 0;
  virtual void BUtton_Click(int Index) = 0;
  virtual void RunMenuCommand(std::string_view key) = 0;
};

class MediumRoom : private DropsHost, private CurrentFileHost {
 public:
  // All must outlive this object; `form` is the owner of every window.
  struct Parts {
    QWidget& form;
    clsDShowControl& Movie;
    PlaylistRoom& playlist;
    ListWindows& windows;
    Settings& settings;
    Session& session;
    Dialogs& dialogs;
    MessagePump& pump;
    ShellServices& services;
    TimerSource& time;
    const TextPlatform& text;
  };

  MediumRoom(MediumRoomHost& host, const Parts& parts);
  MediumRoom(const MediumRoom&) = delete;
  MediumRoom& operator=(const MediumRoom&) = delete;
  ~MediumRoom() override;

  // A drop over the main window, moving or let go; what is let go is taken when the drop is over.
  void Drag(QDropEvent& event);
  void Drop(QDropEvent& event);

  // `frmURL`, modal: the address that the user leaves in it, empty when cancelled.
  std::string AskForUrl();
  void SetColors(const QPalette& colors) { colors_ = colors; }

  void SaveCurrentFile() { current_.SaveCurrentFile(); }
  void DeleteCurFile() { current_.DeleteCurFile(); }

  // Ends what is being saved.
  void UnloadAll();

 private:
  // DropsHost, CurrentFileHost
  void OpenFile(const std::string& path, OpenArguments arguments) override;
  void RefreshPlaylist() override { parts_.windows.RefreshStatus(); }
  void CopyToFile(const std::string& source, const std::string& target) override;
  void DownloadToFile(const std::string& Url, const std::string& Target, Saved saved) override;
  void BUtton_Click(int Index) override { host_.BUtton_Click(Index); }
  void RunMenuCommand(std::string_view key) override { host_.RunMenuCommand(key); }
  void PlaylistSetNext(int index) override;
  void EntryRemoved(int index) override { parts_.windows.EntryRemoved(index); }

  MediumRoomHost& host_;
  Parts parts_;
  Drops drops_;
  CurrentFile current_;
  QPalette colors_;
  QPointer<frmURL> url_;
};

}  // namespace kv
