// What stands around the list when media are added and playlists opened: a player and two windows
// that note what they are told.
#pragma once

#include "playlist/playlist_files.h"
#include "support/fake_pump.h"
#include "support/fake_text_platform.h"
#include "support/scripted_dialogs.h"
#include "support/temp_folder.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace kv {

struct ListHost : PlaylistFilesHost, ListAddingHost, ListWindow, ScanWindow {
  ListWindow* LoadedListWindow() override { return session.PlaylistWindowLoaded ? this : nullptr; }
  ScanWindow* OpenScanWindow() override { return session.ScanWindowOpen ? this : nullptr; }
  void OpenFile(const std::string& path) override { told.push_back("open " + path); }
  void OpenFile(const std::string& path, bool from_playlist, bool start_playing) override {
    told.push_back("open " + path + (from_playlist && !start_playing ? "" : "?"));
  }
  bool EngineRunning() const override { return running; }
  void PressPlay() override { told.emplace_back("play"); }
  void UpdateFileDisp(const std::string& text) override { told.push_back("disp" + text); }
  void SetBusyPointer(bool busy) override { busy_pointer = busy; }
  void FillPlaylist(const std::string& path) override { told.push_back("row " + path); }
  int RowCount() const override { return 0; }
  void ShowPath(const std::string& path) override { progress.push_back(path); }
  void ShowCount(const std::string& text) override {
    progress.push_back(text);
    if (on_progress) pump.Post(on_progress);
  }

  std::vector<std::string> Items() const {
    std::vector<std::string> items;
    for (int i = 1; i <= list.Count(); ++i) items.push_back(list.Item(i));
    return items;
  }

  TempFolder temp;
  FakeTextPlatform platform;
  OSTList list{platform};
  Settings settings;
  Session session;
  ScriptedDialogs dialogs;
  FakePump pump;
  ListAdding adding{*this, list, session, dialogs, pump};
  std::vector<std::string> told;      // the player and the list's window
  std::vector<std::string> progress;  // the scan window
  std::function<void()> on_progress;  // comes in between
  bool running = false;
  bool busy_pointer = false;
};

}  // namespace kv
