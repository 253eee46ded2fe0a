#include "playlist/playlist_files.h"

#include "playlist/m3u_file.h"
#include "system/files.h"
#include "system/name_tests.h"
#include "system/paths.h"
#include "system/save_file.h"
#include "system/translation.h"

#include <cstdio>
#include <string_view>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace kv {
namespace {

constexpr const char* kLastFolderName = "LastPlaylistPath";

// The local name of a fetched playlist; it and the file that reserves it go with this object.
class FetchedFile {
 public:
  FetchedFile() {
    if (MakeTempFileName("", "kv_p", 0, reserved_)) name_ = reserved_ + ".m3u";
  }
  FetchedFile(const FetchedFile&) = delete;
  FetchedFile& operator=(const FetchedFile&) = delete;
  ~FetchedFile() {
    if (name_.empty()) return;
    std::remove(name_.c_str());
    std::remove(reserved_.c_str());
  }

  // Empty when there is no place for it.
  const std::string& Name() const { return name_; }

 private:
  std::string reserved_;
  std::string name_;
};

bool ReadList(const std::string& path, std::string& text) {
  text = ReadTextFile(path);
  std::string bytes;
  return !text.empty() || ReadWholeFile(path, kMaxTextFileBytes, bytes);
}

// Saves also over a file that its owner has write-protected; a failure leaves the mode as it was.
bool SaveOver(const std::string& path, std::string_view text) {
  struct stat status {};
  const bool write_protected = FileExists(path) && stat(path.c_str(), &status) == 0 &&
                               (status.st_mode & S_IWUSR) == 0 &&
                               chmod(path.c_str(), (status.st_mode & 07777U) | S_IWUSR) == 0;
  if (SaveFileChecked(path, text)) return true;
  if (write_protected) chmod(path.c_str(), status.st_mode & 07777U);
  return false;
}

}  // namespace

PlaylistFiles::PlaylistFiles(PlaylistFilesHost& host, PlaylistFilesParts parts)
    : host_(host), parts_(std::move(parts)) {}

bool PlaylistFiles::Overtaken(std::uint64_t number) const {
  return number != last_load_ || parts_.session.Unloading;
}

void PlaylistFiles::LoadPlaylist(const std::string& path) {
  Load(std::string(path), false);  // the field that it came from may change inside a pump
}

PlaylistFiles::Outcome PlaylistFiles::Load(const std::string& path, bool by_hand) {
  if (parts_.session.Unloading) return Outcome::kOvertaken;
  asked_to_load_ = true;
  std::string text;
  const bool is_url = IsUrl(path);
  // The file of a load that ends here or in the question does not stop a load that is under way.
  std::uint64_t number = last_load_;
  if (is_url) {
    number = ++last_load_;
    const Outcome fetched = Fetch(path, number, text);
    if (fetched != Outcome::kDone) return fetched;
  } else {
    if (!FileExists(path)) {
      parts_.settings.PlaylistIndex = 0;
      parts_.settings.PlayingFromPlaylist = FromBool(false);
      parts_.session.PlaylistDirty = false;
      return Outcome::kDone;
    }
    if (!ReadList(path, text)) {
      unread_files_.insert(path);
      return Outcome::kUnreadable;
    }
  }
  const LineTest names_file = [&](std::string_view line) {
    return !is_url && FileExists(GetPlaylistFile(line, path, FileExists));
  };
  bool in_full = false;
  const BoxAnswer answer = by_hand ? AskHowToRead(path, names_file, text, in_full) : BoxAnswer::kNo;
  if (Overtaken(number)) return Outcome::kOvertaken;
  if (answer == BoxAnswer::kCancel) {
    if (is_url) --last_load_;  // what was under way goes on
    return Outcome::kCancelled;
  }
  const bool as_lines = answer == BoxAnswer::kYes;
  if (!is_url) {
    number = ++last_load_;
    unread_files_.erase(path);
    // Lines that end otherwise than the format has it come together as one, and most are left out.
    if (as_lines ? !in_full : !HasPlainLines(text, names_file)) unread_files_.insert(path);
  }
  const Outcome filled = Fill(path, text, number);
  if (as_lines && filled == Outcome::kDone) parts_.session.PlaylistDirty = true;
  return filled;
}

// The answer to the question about a list of another kind; No when there is nothing to ask. With
// Yes `text` is the list in this player's form, `complete` when it has all of its lines.
BoxAnswer PlaylistFiles::AskHowToRead(const std::string& path, const LineTest& names_file,
                                      std::string& text, bool& complete) {
  ForeignList list = ReadForeignList(text, parts_.locale, names_file);
  if (!list.Found()) return BoxAnswer::kNo;
  const BoxAnswer answer = parts_.dialogs.ShowMessageBox(QuestionAbout(list, path));
  if (answer == BoxAnswer::kYes) {
    text = std::move(list.text);
    complete = list.complete;
  }
  return answer;
}

// A fetch that fails is told and done: its text is empty.
PlaylistFiles::Outcome PlaylistFiles::Fetch(const std::string& url, std::uint64_t number,
                                            std::string& text) {
  const FetchedFile local;
  host_.SetBusyPointer(true);
  const bool fetched = !local.Name().empty() && parts_.download.Get_File(url, local.Name());
  host_.SetBusyPointer(false);
  if (Overtaken(number)) return Outcome::kOvertaken;
  if (fetched) {
    text = ReadTextFile(local.Name());
    return Outcome::kDone;
  }
  parts_.dialogs.ShowMessageBox(
      {Tr("Error downloading file!"), BoxIcon::kStop, BoxButtons::kOk, ""});
  return Overtaken(number) ? Outcome::kOvertaken : Outcome::kDone;
}

PlaylistFiles::Outcome PlaylistFiles::Fill(const std::string& path, const std::string& text,
                                           std::uint64_t number) {
  filling_ = true;
  parts_.playlist.Clear();
  parts_.settings.PlaylistFile = path;
  parts_.session.PlaylistDirty = false;  // what could be saved is gone
  const bool is_url = IsUrl(path);
  const std::string base = FolderOfPath(path);
  int piece = 0;
  for (const std::string_view line : SplitM3u(text)) {
    ++piece;
    if (!IsM3uEntry(line)) continue;
    const std::string entry =
        GetPlaylistFile(is_url ? WithBaseUrl(line, base) : std::string(line), path, FileExists);
    ShowProgress(entry, piece);
    if (Overtaken(number)) return Outcome::kOvertaken;
    parts_.adding.AddFileToList(entry);
    if (Overtaken(number)) return Outcome::kOvertaken;
  }
  filling_ = false;
  parts_.session.PlaylistDirty = false;
  return Outcome::kDone;
}

void PlaylistFiles::ShowProgress(const std::string& path, int piece) {
  ScanWindow* const scan = parts_.session.ScanWindowOpen ? host_.OpenScanWindow() : nullptr;
  if (scan != nullptr) {
    scan->ShowPath(path);
    scan->ShowCount(std::to_string(piece));
  }
  parts_.session.ScanAbort = false;  // a load is not cancelled
  if (scan != nullptr) parts_.pump.PumpOnce();
}

bool PlaylistFiles::MaySaveTo(const std::string& path) const {
  // The program's end saves without a question, also in the middle of a load and before the first.
  if (filling_ || (!asked_to_load_ && parts_.playlist.Count() == 0)) return false;
  return unread_files_.count(path) == 0 || !FileExists(path);
}

void PlaylistFiles::SavePlaylist(const std::string& path) {
  SaveTo(path);
}

bool PlaylistFiles::SaveTo(const std::string& path) {
  if (IsUrl(path) || !MaySaveTo(path)) return false;
  host_.SetBusyPointer(true);
  const bool full = IsUrl(parts_.settings.PlaylistFile) || IsOn(parts_.settings.SaveAbsolutePaths);
  const bool saved = SaveOver(path, M3uText(parts_.playlist, path, full, parts_.text));
  if (saved) {
    parts_.settings.PlaylistFile = path;
    parts_.session.PlaylistDirty = false;
  }
  host_.SetBusyPointer(false);
  return saved;
}

void PlaylistFiles::SavePlaylistToggle() {
  const std::string& file = parts_.settings.PlaylistFile;
  if (FileExists(file) && MaySaveTo(file)) {
    SavePlaylist(file);
  } else {
    SavePlaylistAs();
  }
}

void PlaylistFiles::SavePlaylistAs() {
  if (filling_) return;
  FileDialogRequest request;
  request.title = Tr("Save playlist as:");
  request.filter = std::string(Tr("m3u file (*.m3u)")) + "|*.m3u";
  request.folder = LastFolder();
  request.save = true;
  std::string name = parts_.dialogs.ShowFileDialog(request).file_name;
  if (name.empty()) return;
  if (!IsM3UFile(name)) name += ".m3u";
  if (FileExists(name)) {
    const BoxAnswer answer = parts_.dialogs.ShowMessageBox(
        {kv::Fill(Tr("File \"%1\" already exists!\nOverwrite ?"), name), BoxIcon::kQuestion,
         BoxButtons::kOkCancel, ""});
    if (answer != BoxAnswer::kOk) return;
    unread_files_.erase(name);  // the user has given it up
  }
  // Looked at here: boxes have been open since this began.
  const std::string old_file = parts_.settings.PlaylistFile;
  const std::uint64_t load = last_load_;
  if (!SaveTo(name)) return;
  const BoxAnswer answer = parts_.dialogs.ShowMessageBox(
      {Tr("Point to new file?"), BoxIcon::kNone, BoxButtons::kYesNo, Tr("Use new filename?")});
  if (answer == BoxAnswer::kNo && load == last_load_) parts_.settings.PlaylistFile = old_file;
}

void PlaylistFiles::OpenPlaylist(const std::string& path_given, bool by_hand) {
  std::string path = path_given;  // may be a field that changes inside a pump
  if (parts_.session.PlaylistDirty && !AskToKeepChanges()) return;
  if (parts_.session.Unloading) return;
  if (path.empty()) {
    FileDialogRequest request;
    request.title = Tr("Open playlist:");
    request.filter = std::string(Tr("Playlists (*.m3u)")) + "|*.m3u";
    request.folder = LastFolder();
    path = parts_.dialogs.ShowFileDialog(request).file_name;
    if (path.empty() || parts_.session.Unloading) return;
  }
  parts_.registry.RegWriteValue(RegistryRoot::kCurrentUser, kGeneralKey, kLastFolderName,
                                kRegistryText, FolderOfPath(path));
  if (!IsM3UFile(path)) {
    parts_.dialogs.ShowMessageBox({Tr("Invalid file error!"), BoxIcon::kStop, BoxButtons::kOk, ""});
    return;
  }
  const Outcome outcome = Load(path, by_hand);
  if (outcome == Outcome::kOvertaken) return;
  if (outcome == Outcome::kCancelled) {
    host_.UpdateFileDisp("");  // nothing is loading
    return;
  }
  if (outcome == Outcome::kDone && parts_.playlist.Count() > 0) {
    const std::uint64_t number = last_load_;
    parts_.settings.PlaylistIndex = 1;
    host_.OpenFile(std::string(parts_.playlist.Item(1)), true, false);
    if (Overtaken(number)) return;
    if (!host_.EngineRunning() && IsOn(parts_.settings.AutoPlayPlaylist)) host_.PressPlay();
    if (Overtaken(number)) return;
  }
  if (ListWindow* const rows = host_.LoadedListWindow();
      rows != nullptr && parts_.session.PlaylistWindowLoaded) {
    rows->FillPlaylist("");
  }
  host_.UpdateFileDisp("");
}

// False when the list with its changes is to stay.
bool PlaylistFiles::AskToKeepChanges() {
  const BoxAnswer answer = parts_.dialogs.ShowMessageBox(
      {Tr("Current playlist has not been saved!\n\nDo you want to save it first?"),
       BoxIcon::kExclamation, BoxButtons::kYesNoCancel, Tr("Not saved!")});
  if (answer == BoxAnswer::kCancel) return false;
  if (answer != BoxAnswer::kYes) return true;
  SavePlaylistToggle();
  return !parts_.session.PlaylistDirty;
}

bool PlaylistFiles::SaveList() {
  const std::string& file = parts_.settings.PlaylistFile;
  if (IsUrl(file)) {
    const BoxAnswer answer =
        parts_.dialogs.ShowMessageBox({Tr("Current playlist is located on a remote server and "
                                          "cannot be saved. Do you want to save "
                                          "a local copy?"),
                                       BoxIcon::kNone, BoxButtons::kYesNo, ""});
    if (answer != BoxAnswer::kYes) return false;
    SavePlaylistAs();
    return true;
  }
  if (MaySaveTo(file)) {
    SavePlaylist(file);
  } else {
    SavePlaylistAs();
  }
  host_.UpdateFileDisp("");
  return true;
}

std::string PlaylistFiles::LastFolder() const {
  const std::string folder =
      parts_.registry.RegReadValue(RegistryRoot::kCurrentUser, kGeneralKey, kLastFolderName);
  return folder.empty() ? parts_.app_folder : folder;
}

}  // namespace kv
