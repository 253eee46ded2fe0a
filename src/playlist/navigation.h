// Steps through the playlist: which entry is next, whether it is there, and when it is opened.
//
// A step shows its entry at once, and a one-shot timer opens it a moment later, so that several
// quick steps cost one open. `PlaylistIndex` counts from 1 and may be any number: lists change
// under it and resume files bring it. Owned by `frmMain`; interface thread only.
#pragma once

#include "playlist/ost_list.h"
#include "state/session.h"
#include "state/settings.h"
#include "system/dialogs.h"
#include "system/timers.h"

#include <string>

namespace kv {

class NavigationHost {
 public:
  virtual ~NavigationHost() = default;
  // `DS_IsRunning`.
  virtual bool EngineRunning() = 0;
  // `OpenFile` as from the playlist, its further flags false. Pumps messages.
  virtual void OpenFile(const std::string& path, bool start_playing) = 0;
  virtual void PressStop() = 0;
  virtual void UpdateFileDisp(const std::string& text) = 0;
  virtual void UpdateFileDataDisplay() = 0;
};

class Navigation {
 public:
  // `play_from_playlist` is the form's timer of that name; its event goes to OnPlayFromPlaylist().
  // All must outlive this object.
  Navigation(OSTList& playlist, Settings& settings, const Session& session, Dialogs& dialogs,
             Timer& play_from_playlist, NavigationHost& host);

  // Steps back, or to the first entry. Files that are gone are passed over in silence; when none
  // before is left, `PlaylistIndex` stays at the last one tried and nothing opens.
  void PlaylistSetPrevious(bool toFirst, bool immediate);

  // Steps forward, or to the last entry (`index` -1 or less), or makes entry `index` the current
  // one. A step passes over files that are gone to the next that is there, but then tells each of
  // them in a box, stops, and goes back to the entry that it came from.
  void PlaylistSetNext(bool toLast, int index, bool immediate);

  // Opens and starts an entry now, as a double click on its row does. Tells a file that is gone in
  // a box.
  void PlayPlaylistFile(int index);

  // Opens the current entry in 10 ms when `immediate`, else in 500 ms; the wait starts over.
  void StartPlaylistTimer(bool immediate);

  // The timer's event. The entry starts by itself only if the player runs at this moment.
  void OnPlayFromPlaylist();

 private:
  // A file of the list that is not there. URLs are taken to be there.
  bool IsGone(int index) const;
  void TellGone(int index);
  // Makes the entry at `PlaylistIndex` the current file and shows it.
  void Select();
  void StepForward(bool toLast, bool immediate);

  OSTList& playlist_;
  Settings& settings_;
  const Session& session_;
  Dialogs& dialogs_;
  Timer& PlayFromPlaylist_;
  NavigationHost& host_;
};

}  // namespace kv
