// The playlist in the running player: the list, its files, the steps through it and resume files,
// and the windows that show them.
//
// The rules are those of the playlist's classes; this gives them each other, the form and the
// desktop. Owned by `frmMain`; interface thread only.
#pragma once

#include "engine/dshow_control.h"
#include "playlist/list_adding.h"
#include "playlist/navigation.h"
#include "playlist/ost_list.h"
#include "playlist/playlist_files.h"
#include "shell/media_opener.h"
#include "shell/playback_tick.h"
#include "shell/resume_files.h"
#include "shell/transport.h"
#include "state/session.h"
#include "state/settings.h"
#include "system/app_folder.h"
#include "system/dialogs.h"
#include "system/download_qt.h"
#include "system/message_pump.h"
#include "system/registry.h"
#include "system/text_platform.h"
#include "system/timers.h"

#include <string>

namespace kv {

class PlaylistRoomHost {
 public:
  virtual ~PlaylistRoomHost() = default;
  virtual void OpenFile(const std::string& File, OpenArguments arguments) = 0;
  virtual void BUtton_Click(int Index) = 0;
  virtual void UpdateFileDisp(const std::string& text) = 0;
  virtual void UpdateFileDataDisplay() = 0;
  virtual void ShowResumeMark(bool visible) = 0;  // `picKVR`
  virtual void ShowBusyPointer(bool busy) = 0;    // does not pump
  // The windows of the list; null while they are not loaded.
  virtual ListWindow* LoadedListWindow() = 0;
  virtual ScanWindow* OpenScanWindow() = 0;
};

class PlaylistRoom : public TransportNavigation,
                     public TickNavigation,
                     private ListAddingHost,
                     private PlaylistFilesHost,
                     private NavigationHost {
 public:
  // All must outlive this object.
  struct Parts {
    clsDShowControl& Movie;
    Settings& settings;
    Session& session;
    Dialogs& dialogs;
    MessagePump& pump;
    Timer& PlayFromPlaylist;
    const TextPlatform& text;
    const ProgramFolder& folder;
  };

  PlaylistRoom(PlaylistRoomHost& host, const Parts& parts);
  PlaylistRoom(const PlaylistRoom&) = delete;
  PlaylistRoom& operator=(const PlaylistRoom&) = delete;

  OSTList& Playlist() { return playlist_; }
  ListAdding& Adding() { return adding_; }
  PlaylistFiles& Files() { return files_; }
  Navigation& Steps() { return navigation_; }
  ResumeFiles& Resume() { return resume_; }
  Registry& Store() { return registry_; }
  DownloadQt& Downloads() { return download_; }

  // Ends what waits for the network.
  void Abandon() { download_.Abort(); }

  // TransportNavigation, TickNavigation
  int PlaylistCount() const override { return playlist_.Count(); }
  std::string PlaylistItem(int index) const override { return playlist_.Item(index); }
  void PlaylistSetPrevious(bool to_first, bool immediate) override;
  void PlaylistSetNext(bool to_last, int index, bool immediate) override;
  void StartPlaylistTimer(bool immediate) override;
  bool PlayFromPlaylistEnabled() const override { return parts_.PlayFromPlaylist.Enabled(); }

 private:
  // Resume files open otherwise than the list does, by a call of the same name.
  class ResumeSide final : public ResumeFilesHost {
   public:
    explicit ResumeSide(PlaylistRoomHost& host) : host_(host) {}
    void OpenFile(const std::string& path, bool from_playlist) override;
    void UpdateFileDisp(const std::string& text) override { host_.UpdateFileDisp(text); }
    void ShowResumeMark(bool visible) override { host_.ShowResumeMark(visible); }

   private:
    PlaylistRoomHost& host_;
  };

  // ListAddingHost, PlaylistFilesHost
  ListWindow* LoadedListWindow() override { return host_.LoadedListWindow(); }
  ScanWindow* OpenScanWindow() override { return host_.OpenScanWindow(); }
  void OpenFile(const std::string& path) override;
  void OpenFile(const std::string& path, bool from_playlist, bool start_playing) override;
  bool EngineRunning() const override { return parts_.Movie.DS_IsRunning(); }
  void PressPlay() override { host_.BUtton_Click(Transport::kPlay); }
  void SetBusyPointer(bool busy) override { host_.ShowBusyPointer(busy); }

  // NavigationHost
  bool EngineRunning() override { return parts_.Movie.DS_IsRunning(); }
  void OpenFile(const std::string& path, bool start_playing) override;
  void PressStop() override { host_.BUtton_Click(Transport::kStop); }
  void UpdateFileDisp(const std::string& text) override { host_.UpdateFileDisp(text); }
  void UpdateFileDataDisplay() override { host_.UpdateFileDataDisplay(); }

  PlaylistRoomHost& host_;
  Parts parts_;
  OSTList playlist_;
  Registry registry_;
  DownloadQt download_;
  ListAdding adding_;
  PlaylistFiles files_;
  Navigation navigation_;
  ResumeSide resume_side_;
  ResumeFiles resume_;
};

}  // namespace kv
