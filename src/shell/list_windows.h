// The windows of the playlist in the running player, and the rules that fill them.
//
// `frmPlaylist`, `frmQuickSearch` and `frmCopy` come and go; rows, order, search and details live
// as long as the main form, so that a window can be closed in the middle of anything. Owned by
// `frmMain`; interface thread only.
#pragma once

#include "playlist/details_loader.h"
#include "playlist/details_read_ahead.h"
#include "playlist/frm_copy.h"
#include "playlist/frm_playlist.h"
#include "playlist/frm_quick_search.h"
#include "playlist/list_order.h"
#include "playlist/list_rows.h"
#include "playlist/list_search.h"
#include "playlist/playlist_form.h"
#include "playlist/quick_search.h"
#include "shell/playlist_room.h"

#include <QPointer>
#include <QWidget>

#include <functional>
#include <string>
#include <vector>

namespace kv {

class ListWindowsHost {
 public:
  virtual ~ListWindowsHost() = default;
  virtual void UpdateFileDisp(const std::string& text) = 0;
  virtual void ShowBusyPointer(bool busy) = 0;  // does not pump
  virtual std::string MainDisplayText() const = 0;
};

class ListWindows : private PlaylistWindowHost,
                    private ListOrderHost,
                    private FindHost,
                    private QuickSearchHost {
 public:
  // All must outlive this object; `form` is the owner of every window.
  struct Parts {
    QWidget& form;
    PlaylistRoom& room;
    Settings& settings;
    Session& session;
    Dialogs& dialogs;
    Registry& registry;
    ShellServices& services;
    TimerSource& timers;
    MessagePump& pump;
    const TextPlatform& text;
    std::function<QString(const char* name)> art;
    // Takes a new window among those of the program, which snap and hand the wheel on.
    std::function<void(QWidget& window)> adopt;
  };

  ListWindows(ListWindowsHost& host, const Parts& parts);
  ListWindows(const ListWindows&) = delete;
  ListWindows& operator=(const ListWindows&) = delete;
  ~ListWindows();

  // `frmPlaylist`: shows it, makes it at need; restores it and gives it the keyboard; takes it
  // down.
  void ShowPlaylist();
  void FocusPlaylist();
  void ClosePlaylist();
  // From its load to its unload; the object may live a little longer.
  bool PlaylistLoaded() const {
    return playlist_ != nullptr && parts_.session.PlaylistWindowLoaded;
  }
  bool PlaylistMinimised() const { return PlaylistLoaded() && playlist_->isMinimized(); }

  void ShowQuickSearch();
  void UpdateColors();

  // The program goes down: all windows close, and the list's comes back at the next start.
  void UnloadAll();

  // For PlaylistRoom, null while they are not loaded.
  ListWindow* LoadedListWindow() { return PlaylistLoaded() ? &rows_ : nullptr; }
  ScanWindow* OpenScanWindow() { return PlaylistLoaded() ? playlist_->OpenScanWindow() : nullptr; }

  // An entry left the list other than by the window's own commands.
  void EntryRemoved(int index);
  // Entries came other than by the window's own commands.
  void RefreshStatus();

 private:
  // PlaylistWindowHost
  void PlayPlaylistFile(int index) override;
  void OpenList() override;
  bool SaveList() override;
  void SaveAs() override;
  void AddFilesOrFolders(const std::vector<std::string>& files) override;
  void AddFileToList(const std::string& address) override;
  void AddFolderToList(const std::string& folder) override;
  void CopyFiles(const std::vector<std::string>& files) override;
  void UpdateFileDisp(const std::string& text) override { host_.UpdateFileDisp(text); }
  std::string MainDisplayText() const override { return host_.MainDisplayText(); }

  // ListOrderHost
  void SetBusyPointer(bool on) override { host_.ShowBusyPointer(on); }
  void LockWindowRedraw(bool locked) override;

  // FindHost
  void ShowSearchDialog() override;
  void ShowSearchVis() override;
  void UnloadSearchVis() override;

  // QuickSearchHost
  void PlaylistSetNext(int index) override;

  ListWindowsHost& host_;
  Parts parts_;
  PlaylistForm playlist_form_;
  ListRows rows_;
  DetailsReadAhead files_;
  DetailsLoader details_;
  ListOrder order_;
  ListSearch search_;
  QuickSearch quick_;
  QPointer<frmPlaylist> playlist_;
  QPointer<frmQuickSearch> quick_search_;
  QPointer<frmCopy> copy_;
};

}  // namespace kv
