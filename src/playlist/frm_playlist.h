// `frmPlaylist`: the window that shows the list, and the way of its commands to the rules.
//
// The rules live beside it and outlive it, so it can be closed in the middle of anything; it goes
// then when its own work has come back. Made on demand, brought up by Form_Load(), deletes itself.
// `PlaylistWindowLoaded` is true in between. Geometry is kept in twips, 15 to a pixel. Interface
// thread only.
#pragma once

#include "playlist/details_loader.h"
#include "playlist/dropped_media.h"
#include "playlist/frm_scanning.h"
#include "playlist/frm_search.h"
#include "playlist/frm_search_vis.h"
#include "playlist/list_order.h"
#include "playlist/list_rows.h"
#include "playlist/list_search.h"
#include "playlist/ost_list.h"
#include "playlist/playlist_commands.h"
#include "playlist/playlist_toolbar.h"
#include "playlist/playlist_view.h"
#include "playlist/rows_model_qt.h"
#include "playlist/text_line.h"
#include "state/session.h"
#include "state/settings.h"
#include "system/dialogs.h"
#include "system/message_pump.h"
#include "system/registry.h"
#include "system/shell_services.h"
#include "system/timers.h"

#include <QPointer>
#include <QWidget>

#include <functional>
#include <memory>
#include <string>
#include <vector>

class QMenu;

namespace kv {

class SmartMenuStyle;

// What the window asks of the player. Every call may pump messages.
class PlaylistWindowHost {
 public:
  virtual ~PlaylistWindowHost() = default;
  virtual void PlayPlaylistFile(int index) = 0;
  virtual void OpenList() = 0;
  // True when the buttons are to follow the settings.
  virtual bool SaveList() = 0;
  virtual void SaveAs() = 0;
  virtual void AddFilesOrFolders(const std::vector<std::string>& files) = 0;
  virtual void AddFileToList(const std::string& address) = 0;
  virtual void AddFolderToList(const std::string& folder) = 0;
  virtual void ShowQuickSearch() = 0;
  // `frmCopy` for these files. It goes on when this window is closed.
  virtual void CopyFiles(const std::vector<std::string>& files) = 0;
  virtual void UpdateFileDisp(const std::string& text) = 0;
  // The text of the main window's display; does not pump.
  virtual std::string MainDisplayText() const = 0;
};

class frmPlaylist : public QWidget {
  Q_OBJECT

 public:
  // All must outlive the window.
  struct Parts {
    const OSTList& playlist;
    ListRows& rows;
    ListOrder& order;
    ListSearch& search;
    DetailsLoader& details;
    Settings& settings;
    Session& session;
    Dialogs& dialogs;
    Registry& registry;
    ShellServices& services;
    TimerSource& timers;
    MessagePump& pump;
    // Answers the whole path of a drawing by its name.
    std::function<QString(const char* name)> art;
  };

  // `owner` is the main window and may be null. Nothing is loaded yet.
  frmPlaylist(PlaylistWindowHost& host, Parts parts, QWidget* owner);
  ~frmPlaylist() override;

  void Form_Load();
  // Takes the window off the screen and the rows away. `by_user`: it stays closed at the next
  // start.
  void Form_Unload(bool by_user);

  // Restores it when it is minimised, and gives it the keyboard.
  void Focus();

  // `AutoNext` and "showdetails" as the settings have them.
  void UpdateToolbarButtons();
  void UpdateColors();

  // For ListOrderHost; counted.
  void LockWindowRedraw(bool locked) { pList_->LockRedraw(locked); }

  // For FindHost.
  void ShowSearchDialog();
  void ShowSearchVis();
  void UnloadSearchVis();

  // `frmScanning` while it is on the screen, else null.
  ScanWindow* OpenScanWindow() const { return scanning_.get(); }

  void Run(ListCommand command);

 protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void changeEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  // While one lives the window is not deleted.
  class Working {
   public:
    explicit Working(frmPlaylist& form) : form_(form) { ++form_.working_; }
    ~Working();
    Working(const Working&) = delete;
    Working& operator=(const Working&) = delete;

   private:
    frmPlaylist& form_;
  };
  struct CommandRow;
  static const CommandRow kCommands[];

  void MakeMenu();
  void MakeKeys();
  void MakeStatusBar();
  void PopUpMenu(QPoint position);
  void LayOut();
  void RestoreGeometry();
  void WatchTheScreen();

  void ResizeTimer();
  void PanelTimer();
  void Timer2();

  void AddFiles();
  void AddFolder(const std::string& folder);
  void OLEDragDrop(const DroppedMedia& media);
  void AutoNext();
  void ClearList() { parts_.order.ClearList(); }
  void CopyFileName();
  void CopySel();
  void DelSel() { parts_.order.DelSel(); }
  void Find() { FindFrom(false); }
  void FindNext() { FindFrom(true); }
  void FindFrom(bool continue_search) { parts_.search.Find(continue_search); }
  void FindPlaying() { parts_.rows.FindPlaying(); }
  void MoveFilesDown() { parts_.order.MoveFilesDown(); }
  void MoveFilesUp() { parts_.order.MoveFilesUp(); }
  void OpenList() { host_.OpenList(); }
  void OpenSourceFolder();
  void pList_DblClick();
  void QuickFind() { host_.ShowQuickSearch(); }
  void Redraw() { pList_->viewport()->update(); }
  void RemoveSel() { parts_.order.RemoveSel(false); }
  void RList() { parts_.order.RList(); }
  void SaveAs() { host_.SaveAs(); }
  void SaveList();
  void SelectAll() { parts_.rows.SelectAll(); }
  void ShowDetails();
  void SList() { parts_.order.SList(); }
  void Unload();

  PlaylistWindowHost& host_;
  Parts parts_;
  RowsModel model_;
  PlaylistToolbar* Toolbar_;
  PlaylistView* pList_;
  QWidget* StatusBar1_;
  TextLine* panel1_;
  TextLine* panel2_;
  SmartMenuStyle* menu_style_;
  QMenu* mnu_;
  QPointer<frmSearch> search_dialog_;
  std::unique_ptr<frmSearchVis> search_vis_;
  std::unique_ptr<frmScanning> scanning_;
  std::unique_ptr<Timer> PanelTimer_;
  std::unique_ptr<Timer> Timer2_;
  std::unique_ptr<Timer> ResizeTimer_;
  int working_ = 0;
  bool loaded_ = false;
  bool Closing_ = false;
};

}  // namespace kv
