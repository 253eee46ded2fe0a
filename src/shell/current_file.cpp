#include "shell/current_file.h"

#include "shell/transport.h"
#include "system/name_tests.h"
#include "system/paths.h"
#include "system/shown_text.h"
#include "system/translation.h"

#include <sys/stat.h>

namespace kv {
namespace {

// The extension for the filter of the dialog. An address may have anything behind its last dot, so
// what means something to a filter or to a folder gives none.
std::string FilterExtension(const std::string& name) {
  std::string extension = GetFileExtension(name, true);
  if (extension.find_first_of("/|;*?[]()&") != std::string::npos) extension.clear();
  return extension;
}

}  // namespace

CurrentFile::CurrentFile(CurrentFileHost& host, CurrentFileParts parts)
    : host_(host), parts_(parts) {}

void CurrentFile::SaveCurrentFile() {
  // The medium can change while a dialog is open; what is saved is the one that was asked for.
  const std::string source = parts_.settings.CurrentFile;
  if (source.empty()) {
    parts_.dialogs.ShowMessageBox(
        {Tr("Please open a file first!"), BoxIcon::kInformation, BoxButtons::kOk, ""});
    return;
  }
  if (!MaySave()) return;
  const bool remote = IsUrlName(source);
  const std::string target = AskForTarget(source, remote);
  if (target.empty()) return;
  if (!remote && !FileExists(source)) {
    parts_.dialogs.ShowMessageBox(
        {Tr("Cached file, cannot be saved to disk!"), BoxIcon::kExclamation, BoxButtons::kOk, ""});
    return;
  }
  parts_.settings.LastSaveFolder = FolderOfPath(target);
  if (!remote) {
    host_.CopyToFile(source, target);
    return;
  }
  host_.DownloadToFile(source, target,
                       [this, alive = std::weak_ptr<const bool>(alive_)](bool saved) {
                         if (saved || alive.expired() || parts_.session.Unloading) return;
                         parts_.dialogs.ShowMessageBox(
                             {Tr("Error downloading file!"), BoxIcon::kStop, BoxButtons::kOk, ""});
                       });
}

std::string CurrentFile::AskForTarget(const std::string& source, bool remote) {
  // A password in an address does not become a file's name.
  const std::string offered = FileNameOfPath(remote ? WithoutUserInfo(source) : source);
  const std::string extension = FilterExtension(offered);
  FileDialogRequest request;
  request.title = Tr("Save file as:");
  request.filter = Fill(Tr("%1 file"), extension) + "|*" + extension;
  request.file_name = offered;
  request.save = true;
  for (;;) {
    request.folder = parts_.settings.LastSaveFolder;
    std::string target = parts_.dialogs.ShowFileDialog(request).file_name;
    if (target.empty() || parts_.session.Unloading) return {};
    if (!remote && SameFile(source, target)) {
      parts_.dialogs.ShowMessageBox(
          {Tr("You can't save a file to it self!"), BoxIcon::kExclamation, BoxButtons::kOk, ""});
      if (parts_.session.Unloading) return {};
      continue;
    }
    if (!FileExists(target)) return target;
    const BoxAnswer answer = parts_.dialogs.ShowMessageBox(
        {Fill(Tr("%1\nAlready exists!\n\nDo you want to overwrite?"), target),
         BoxIcon::kExclamation, BoxButtons::kYesNo, Tr("Overwrite?")});
    return answer == BoxAnswer::kYes && !parts_.session.Unloading ? target : std::string();
  }
}

// By name without case, as it is read, and by what the file system says of links.
bool CurrentFile::SameFile(const std::string& a, const std::string& b) const {
  if (parts_.text.Lower(a) == parts_.text.Lower(b)) return true;
  struct stat first {};
  struct stat second {};
  return FileExists(a) && FileExists(b) && stat(a.c_str(), &first) == 0 &&
         stat(b.c_str(), &second) == 0 && first.st_dev == second.st_dev &&
         first.st_ino == second.st_ino;
}

void CurrentFile::DeleteCurFile() {
  const std::string path = parts_.settings.CurrentFile;
  if (path.empty() || IsUrlName(path)) return;
  const bool was_running = parts_.Movie.DS_IsRunning();
  const bool pausing = was_running && !parts_.Movie.DS_IsPaused();
  // By the button, so that the medium stands still before the question comes up. One that stands
  // still already would be started by it.
  if (pausing) host_.BUtton_Click(Transport::kPause);
  parts_.services.SendToRecycleBin(path, true, false);
  if (parts_.session.Unloading) return;
  parts_.pump.PumpOnce();
  if (parts_.session.Unloading) return;
  // Another medium can have been opened meanwhile, which is then left alone.
  const bool still_current = parts_.settings.CurrentFile == path;
  if (FileExists(path)) {
    if (pausing && still_current && parts_.Movie.DS_IsPaused()) {
      host_.BUtton_Click(Transport::kPause);
    }
    return;
  }
  RemoveFromList(path);
  if (still_current && IsOn(parts_.settings.PlayingFromPlaylist)) GoOn(was_running);
}

void CurrentFile::RemoveFromList(const std::string& path) {
  const int index = EntryOf(path);
  if (index == 0) return;
  parts_.playlist.Remove(index);
  if (index < parts_.settings.PlaylistIndex) --parts_.settings.PlaylistIndex;
  host_.EntryRemoved(index);
}

int CurrentFile::EntryOf(const std::string& path) const {
  const OSTList& list = parts_.playlist;
  const int playing = parts_.settings.PlaylistIndex;
  if (list.Item(playing) == path) return playing;
  const std::string lower = parts_.text.Lower(path);
  int other_case = 0;
  for (int index = 1; index <= list.Count(); ++index) {
    const std::string& item = list.Item(index);
    if (item == path) return index;
    // On most file systems that is another file, which may still be there.
    if (other_case == 0 && parts_.text.Lower(item) == lower && !FileExists(item)) {
      other_case = index;
    }
  }
  return other_case;
}

// The entry that moved up is next; behind the last one it is the one before.
void CurrentFile::GoOn(bool was_running) {
  const int count = parts_.playlist.Count();
  int& index = parts_.settings.PlaylistIndex;
  if (count >= index) {
    host_.PlaylistSetNext(index);
  } else if (count > 0 && index >= 1) {
    --index;
    host_.PlaylistSetNext(index);
  }
  if (was_running) host_.RunMenuCommand("mPlay");
}

}  // namespace kv
