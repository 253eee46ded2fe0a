// The playlist window on top of its rules, with a player that is a log.
#pragma once

#include "playlist/frm_playlist.h"
#include "playlist/frm_quick_search.h"
#include "playlist/list_room.h"
#include "playlist/list_search.h"
#include "playlist/quick_search.h"

#include <QCoreApplication>
#include <QPointer>

namespace kv {

struct WindowRoom : ListRoom, PlaylistWindowHost, FindHost, QuickSearchHost {
  WindowRoom() {
    rows.SetObserver(nullptr);
    settings.Colors[3] = 0xFFFFFF;
  }
  // The window goes before its rules.
  ~WindowRoom() override { delete form_window.data(); }

  void Open() {
    form_window =
        new frmPlaylist(*this,
                        {list, rows, order, search, loader, settings, session, dialogs, registry,
                         services, time, pump,
                         [this](const char* name) {
                           return art + QString::fromLatin1(name) + QStringLiteral(".svg");
                         }},
                        owner);
    form_window->Form_Load();
  }
  void OpenWith(const std::vector<std::string>& paths) {
    for (const std::string& path : paths) list.add(path);
    Open();
  }
  PlaylistView& View() { return *form_window->findChild<PlaylistView*>(); }
  // What was put off to the event loop.
  static void Process() {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }

  // PlaylistWindowHost
  void PlayPlaylistFile(int index) override { Log("play " + std::to_string(index)); }
  void OpenList() override { Log("open"); }
  bool SaveList() override {
    Log("save");
    return true;
  }
  void SaveAs() override { Log("save as"); }
  void AddFilesOrFolders(const std::vector<std::string>& paths) override { Log("drop", paths); }
  void AddFileToList(const std::string& address) override { Log("add " + address); }
  void AddFolderToList(const std::string& folder) override { Log("folder " + folder); }
  void ShowQuickSearch() override { Log("quick search"); }
  void CopyFiles(const std::vector<std::string>& paths) override { Log("copy", paths); }
  void UpdateFileDisp(const std::string& /*text*/) override {}
  std::string MainDisplayText() const override { return display; }

  // FindHost, as the player forwards it.
  void ShowSearchDialog() override { form_window->ShowSearchDialog(); }
  void ShowSearchVis() override { form_window->ShowSearchVis(); }
  void UnloadSearchVis() override {
    if (form_window != nullptr) form_window->UnloadSearchVis();
  }

  // QuickSearchHost
  void PlaylistSetNext(int index) override { Log("next " + std::to_string(index)); }

  // Everything that the window asked of the player.
  void Log(const std::string& what) {
    log.push_back(what);
    if (on_call) on_call();
  }
  void Log(const std::string& what, const std::vector<std::string>& paths) {
    for (const std::string& path : paths) Log(std::string(what).append(" ").append(path));
  }

  TempFolder temp;
  Registry registry{temp.Path("registry.ini")};
  ListSearch search{rows, form, text, dialogs, pump, *this};
  QuickSearch quick{list, rows, settings, session, text, *this};
  QWidget* owner = nullptr;
  QString art;
  std::string display;
  std::vector<std::string> log;
  std::function<void()> on_call;  // anything may happen while the player works
  QPointer<frmPlaylist> form_window;
};

}  // namespace kv
