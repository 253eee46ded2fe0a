#include "playlist/list_adding.h"

#include "system/ask_aside.h"
#include "system/files.h"
#include "system/name_tests.h"
#include "system/paths.h"
#include "system/translation.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <sys/stat.h>
#include <utility>

namespace kv {
namespace {

// Without a scan window nobody watches each file go by; this often is enough to hear a click.
constexpr int kFilesPerPump = 64;

struct FolderId {
  dev_t device;
  ino_t number;
  bool operator==(const FolderId&) const = default;
};

std::optional<FolderId> IdOf(const std::string& folder) {
  struct stat status {};
  if (stat(folder.c_str(), &status) != 0) return {};
  return FolderId{status.st_dev, status.st_ino};
}

// A folder on the way from the top of a walk to where it is.
struct OpenFolder {
  std::string path;  // with the separator at its end
  FolderId id;
  std::vector<std::string> subfolders;
  std::size_t next = 0;  // the subfolder to enter
};

// What the disk says of a folder; no `id` when it cannot be read.
struct FolderContent {
  std::optional<FolderId> id;
  std::vector<std::string> subfolders;
};

}  // namespace

ListAdding::ListAdding(ListAddingHost& host, OSTList& playlist, Session& session, Dialogs& dialogs,
                       MessagePump& pump)
    : host_(host), playlist_(playlist), session_(session), dialogs_(dialogs), pump_(pump) {}

template <class Question>
auto ListAdding::Ask(Question question) {
  return AskAside(std::move(question), pump_, [this] { return Stopped(); });
}

void ListAdding::AddFileToList(const std::string& path) {
  if (IsM3UFile(path) || !IsPlayableName(path, session_.SupportedExtensions)) return;
  playlist_.add(path);
  if (!session_.PlaylistWindowLoaded) return;
  ListWindow* const rows = host_.LoadedListWindow();
  if (rows == nullptr) return;
  const int row_count = rows->RowCount();
  // Before the pump, so that whatever happens in it finds list and rows in step.
  rows->FillPlaylist(path);
  ScanWindow* const scan = session_.ScanWindowOpen ? host_.OpenScanWindow() : nullptr;
  if (scan == nullptr) return;
  scan->ShowPath(path);
  scan->ShowCount(
      Fill(Tr("%1 files in list.", "%1 files in list.", static_cast<unsigned long>(row_count)),
           std::to_string(row_count)));
  pump_.PumpOnce();
}

void ListAdding::AddFolderToList(const std::string& path) {
  if (Stopped() || Full()) return;
  session_.PlaylistDirty = true;
  const std::optional<bool> is_folder = Ask([path] { return FolderExists(path); });
  if (!is_folder) return;
  if (*is_folder) {
    AddTree(path);
    return;
  }
  PumpNowAndThen();
  if (Stopped() || !Ask([path] { return FileExists(path); }).value_or(false)) return;
  if (Full()) {
    dialogs_.ShowMessageBox(
        {Fill(Tr("Can't add more than %1 files to the playlist. Save and make several playlists!"),
              std::to_string(kPlaylistLimit)),
         BoxIcon::kExclamation, BoxButtons::kOk, ""});
    return;
  }
  AddFileToList(path);
}

void ListAdding::PumpNowAndThen() {
  if (!session_.ScanWindowOpen && ++since_pump_ < kFilesPerPump) return;
  since_pump_ = 0;
  pump_.PumpOnce();
}

// The folders on the way are kept here and not on the call stack, which a deep tree would overflow.
void ListAdding::AddTree(const std::string& top) {
  std::vector<OpenFolder> road;
  // Leaves out what cannot be read and what lies inside itself by a link.
  const auto enter = [this, &road](std::string folder) {
    if (!folder.ends_with('/')) folder += '/';
    // A folder that takes long is the one that the user wants to know of.
    if (ScanWindow* const scan = session_.ScanWindowOpen ? host_.OpenScanWindow() : nullptr) {
      scan->ShowPath(folder);
    }
    std::optional<FolderContent> content = Ask([folder] {
      return FolderContent{IdOf(folder), ListSubFolders(folder)};
    });
    if (!content || !content->id) return;
    const FolderId id = *content->id;
    const bool inside_itself = std::any_of(
        road.begin(), road.end(), [&id](const OpenFolder& above) { return above.id == id; });
    if (inside_itself) return;
    road.push_back({std::move(folder), id, std::move(content->subfolders)});
  };
  enter(top);
  while (!road.empty()) {
    pump_.PumpOnce();  // once for each folder, also where nothing is found
    if (Stopped() || Full()) return;
    session_.PlaylistDirty = true;
    OpenFolder& here = road.back();
    if (here.next < here.subfolders.size()) {
      enter(here.path + here.subfolders[here.next++]);  // `here` may be gone now
      continue;
    }
    AddFilesOf(here.path);
    road.pop_back();
  }
}

void ListAdding::AddFilesOf(const std::string& folder) {
  const std::optional<std::vector<std::string>> names = Ask(
      [folder, types = session_.SupportedExtensions] { return ListFilesInFolder(folder, types); });
  if (!names) return;
  for (const std::string& name : *names) {
    if (Stopped() || Full()) return;
    AddFileToList(folder + name);
    PumpNowAndThen();
  }
}

void ListAdding::AddFilesOrFolders(std::vector<std::string> files) {
  if (Full()) {
    TellFull();
    return;
  }
  if (files.empty()) return;
  host_.SetBusyPointer(true);
  const bool one_file = files.size() == 1 &&
                        !Ask([path = files.front()] { return FolderExists(path); }).value_or(false);
  pump_.PumpOnce();
  if (!session_.Unloading) {
    if (one_file && IsM3UFile(files.front())) {
      host_.OpenFile(files.front());
    } else {
      AddEach(files, !one_file);
    }
  }
  if (!session_.Unloading) host_.UpdateFileDisp("");
  host_.SetBusyPointer(false);
  if (!session_.Unloading) pump_.PumpOnce();
}

void ListAdding::AddEach(const std::vector<std::string>& files, bool tell_full) {
  for (const std::string& file : files) {
    AddFolderToList(file);
    if (session_.Unloading) return;
    if (tell_full && Full()) {
      TellFull();
      return;
    }
  }
}

void ListAdding::TellFull() {
  dialogs_.ShowMessageBox(
      {Fill(
           Tr("Can't have more than %1 files in a playlist. Save and make several playlist files!"),
           std::to_string(kPlaylistLimit)),
       BoxIcon::kExclamation, BoxButtons::kOk, ""});
}

}  // namespace kv
