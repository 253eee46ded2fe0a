#include "playlist/navigation.h"

#include "system/name_tests.h"
#include "system/paths.h"
#include "system/shown_text.h"
#include "system/translation.h"

#include <algorithm>

namespace kv {
namespace {

constexpr int kImmediateMilliseconds = 10;
constexpr int kPatientMilliseconds = 500;

}  // namespace

Navigation::Navigation(OSTList& playlist, Settings& settings, const Session& session,
                       Dialogs& dialogs, Timer& play_from_playlist, NavigationHost& host)
    : playlist_(playlist),
      settings_(settings),
      session_(session),
      dialogs_(dialogs),
      PlayFromPlaylist_(play_from_playlist),
      host_(host) {}

void Navigation::PlaylistSetPrevious(bool toFirst, bool immediate) {
  int step = IsOn(settings_.PlayingFromPlaylist) ? 1 : 0;
  if (step == 0 && playlist_.Count() > 0) {
    settings_.PlayingFromPlaylist = FromBool(true);
    // After a foreign file the first step returns to the entry that was current, or else to 1.
    if (settings_.PlaylistIndex == 0) {
      settings_.PlaylistIndex = 2;
      step = 1;
    }
  }
  if (settings_.PlaylistIndex < 2 || playlist_.Count() == 0) return;
  settings_.PlaylistIndex = toFirst ? 1 : settings_.PlaylistIndex - step;
  // Nothing behind the end of the list is there, so the way back through it need not be walked.
  settings_.PlaylistIndex = std::min(settings_.PlaylistIndex, playlist_.Count());
  while (IsGone(settings_.PlaylistIndex)) {
    if (settings_.PlaylistIndex < 2) return;
    --settings_.PlaylistIndex;
  }
  Select();
  StartPlaylistTimer(immediate);
}

void Navigation::PlaylistSetNext(bool toLast, int index, bool immediate) {
  if (index < 0) {
    StepForward(toLast, immediate);
    return;
  }
  settings_.PlayingFromPlaylist = FromBool(true);
  if (index < 1 || index > playlist_.Count()) return;
  settings_.PlaylistIndex = index;
  Select();
  StartPlaylistTimer(immediate);
}

void Navigation::StepForward(bool toLast, bool immediate) {
  // Below 0 there is no current entry either.
  settings_.PlaylistIndex = std::max(settings_.PlaylistIndex, 0);
  int step = IsOn(settings_.PlayingFromPlaylist) ? 1 : 0;
  if (step == 0 && playlist_.Count() > 0) {
    settings_.PlayingFromPlaylist = FromBool(true);
    step = settings_.PlaylistIndex == 0 ? 1 : 0;
  }
  const int came_from = settings_.PlaylistIndex;
  if (came_from >= playlist_.Count()) return;

  const int first_tried = toLast ? playlist_.Count() : came_from + step;
  int tried = first_tried;
  bool found = !IsGone(tried);
  while (!found && tried < playlist_.Count()) found = !IsGone(++tried);
  settings_.PlaylistIndex = tried;
  if (found) {
    Select();
    StartPlaylistTimer(immediate || tried != first_tried);
  }

  // One box for each file that is gone, the last first. Each names the entry that is current while
  // it shows: the one that was found, then backwards those that were not. The timer runs meanwhile
  // and may open what was found; the stop comes after the box all the same.
  for (int gone = found ? tried - 1 : tried; gone >= first_tried; --gone) {
    TellGone(settings_.PlaylistIndex);
    if (session_.Unloading) return;
    host_.PressStop();
    if (session_.Unloading) return;
    settings_.PlaylistIndex = gone > first_tried ? gone - 1 : came_from;
  }
}

void Navigation::PlayPlaylistFile(int index) {
  if (index > playlist_.Count()) return;
  if (IsGone(index)) {
    TellGone(index);
    return;
  }
  // A step that still waits would open this entry once more, and perhaps without starting it.
  PlayFromPlaylist_.SetEnabled(false);
  const std::string item = playlist_.Item(index);  // the list may change while it opens
  settings_.PlaylistIndex = index;
  Select();
  settings_.PlayingFromPlaylist = FromBool(true);
  host_.OpenFile(item, true);
}

void Navigation::StartPlaylistTimer(bool immediate) {
  PlayFromPlaylist_.Restart(immediate ? kImmediateMilliseconds : kPatientMilliseconds);
}

void Navigation::OnPlayFromPlaylist() {
  PlayFromPlaylist_.SetEnabled(false);
  const std::string item = playlist_.Item(settings_.PlaylistIndex);
  // The entry has been removed since; an open without a name would ask the user for one.
  if (item.empty() || session_.Unloading) return;
  host_.OpenFile(item, host_.EngineRunning());
}

bool Navigation::IsGone(int index) const {
  const std::string& item = playlist_.Item(index);
  return !IsUrl(item) && !FileExists(item);
}

void Navigation::TellGone(int index) {
  dialogs_.ShowMessageBox(
      {Fill(Tr("Error! Unable to load file:\n\"%1\""), ShownName(playlist_.Item(index))),
       BoxIcon::kStop, BoxButtons::kOk, ""});
}

void Navigation::Select() {
  settings_.CurrentFile = playlist_.Item(settings_.PlaylistIndex);
  host_.UpdateFileDisp("");
  host_.UpdateFileDataDisplay();
}

}  // namespace kv
