#include "shell/list_windows.h"

#include "playlist/playlist_look_qt.h"
#include "playlist/tag_readers_taglib.h"
#include "system/text_platform_qt.h"

#include <QApplication>

namespace kv {
namespace {

// Runs on a thread that may outlive its owner, so it owns what it uses.
DetailsReadAhead::Read ReadDetails(const TextPlatform& text) {
  return [readers = TagLibReaders(), cases = TextPlatformQt(), separator = text.DecimalSeparator()](
             const std::string& path) { return ReadMediaDetails(path, readers, cases, separator); };
}

}  // namespace

ListWindows::ListWindows(ListWindowsHost& host, const Parts& parts)
    : host_(host),
      parts_(parts),
      rows_(parts.room.Playlist(), playlist_form_, parts.settings, parts.text),
      files_(ReadDetails(parts.text)),
      details_(parts.room.Playlist(), rows_, playlist_form_, parts.settings, parts.timers,
               parts.pump, files_),
      order_(parts.room.Playlist(), rows_, playlist_form_, details_, parts.settings, parts.session,
             parts.text, parts.services, parts.dialogs, parts.pump, *this),
      search_(rows_, playlist_form_, parts.text, parts.dialogs, parts.pump, *this),
      quick_(parts.room.Playlist(), rows_, parts.settings, parts.session, parts.text, *this) {}

ListWindows::~ListWindows() {
  delete copy_.data();
  delete quick_search_.data();
  delete playlist_.data();
}

// --- Showing and closing

void ListWindows::ShowPlaylist() {
  if (PlaylistLoaded()) return;
  playlist_ = new frmPlaylist(
      *this,
      {parts_.room.Playlist(), rows_, order_, search_, details_, parts_.settings, parts_.session,
       parts_.dialogs, parts_.registry, parts_.services, parts_.timers, parts_.pump, parts_.art},
      &parts_.form);
  parts_.adopt(*playlist_);
  playlist_->Form_Load();
}

void ListWindows::FocusPlaylist() {
  if (PlaylistLoaded()) playlist_->Focus();
}

void ListWindows::ClosePlaylist() {
  if (PlaylistLoaded()) playlist_->Form_Unload(true);
}

void ListWindows::ShowQuickSearch() {
  if (quick_search_ != nullptr) {
    quick_search_->raise();
    quick_search_->activateWindow();
    return;
  }
  const QPalette colors = PaletteOf(LookFrom(parts_.settings.Colors, QApplication::palette()));
  quick_search_ = new frmQuickSearch(quick_, parts_.timers, colors, &parts_.form);
  parts_.adopt(*quick_search_);
  quick_search_->Form_Load();
}

void ListWindows::UpdateColors() {
  if (PlaylistLoaded()) playlist_->UpdateColors();
  if (quick_search_ != nullptr) {
    quick_search_->setPalette(PaletteOf(LookFrom(parts_.settings.Colors, QApplication::palette())));
  }
}

void ListWindows::UnloadAll() {
  if (copy_ != nullptr) copy_->Form_Unload();
  if (PlaylistLoaded()) playlist_->Form_Unload(false);
  if (quick_search_ != nullptr) quick_search_->Form_Unload();
}

void ListWindows::EntryRemoved(int index) {
  if (!PlaylistLoaded()) return;
  rows_.Remove({index});
  rows_.UpdateNumbers();
}

void ListWindows::RefreshStatus() {
  if (PlaylistLoaded()) rows_.UpdateNumberOfitemsStatus();
}

// --- What the windows ask for

void ListWindows::PlayPlaylistFile(int index) {
  parts_.room.Steps().PlayPlaylistFile(index);
}

void ListWindows::OpenList() {
  parts_.room.Files().OpenPlaylist("");
}

bool ListWindows::SaveList() {
  return parts_.room.Files().SaveList();
}

void ListWindows::SaveAs() {
  parts_.room.Files().SavePlaylistAs();
}

void ListWindows::AddFilesOrFolders(const std::vector<std::string>& files) {
  parts_.room.Adding().AddFilesOrFolders(files);
}

void ListWindows::AddFileToList(const std::string& address) {
  parts_.room.Adding().AddFileToList(address);
}

void ListWindows::AddFolderToList(const std::string& folder) {
  parts_.room.Adding().AddFolderToList(folder);
}

void ListWindows::CopyFiles(const std::vector<std::string>& files) {
  if (parts_.session.CopyWindowOpen) {
    if (copy_ != nullptr) copy_->raise();
    return;
  }
  copy_ =
      new frmCopy(files, parts_.timers, parts_.text, parts_.session.CopyWindowOpen, &parts_.form);
  copy_->Form_Load();
}

void ListWindows::LockWindowRedraw(bool locked) {
  if (PlaylistLoaded()) playlist_->LockWindowRedraw(locked);
}

void ListWindows::ShowSearchDialog() {
  if (PlaylistLoaded()) playlist_->ShowSearchDialog();
}

void ListWindows::ShowSearchVis() {
  if (PlaylistLoaded()) playlist_->ShowSearchVis();
}

void ListWindows::UnloadSearchVis() {
  if (PlaylistLoaded()) playlist_->UnloadSearchVis();
}

void ListWindows::PlaylistSetNext(int index) {
  parts_.room.PlaylistSetNext(false, index, true);
}

}  // namespace kv
