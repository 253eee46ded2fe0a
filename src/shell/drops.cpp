#include "shell/drops.h"

#include "playlist/dropped_media.h"
#include "system/ascii_text.h"
#include "system/paths.h"
#include "system/translation.h"

#include <utility>

namespace kv {
namespace {

constexpr std::string_view kPlaylistEnd = ".m3u";

bool EndsLikePlaylist(std::string_view path) {
  return path.size() >= kPlaylistEnd.size() &&
         EqualsIgnoringCase(path.substr(path.size() - kPlaylistEnd.size()), kPlaylistEnd);
}

}  // namespace

DropData ReadDropData(const std::string_view* uri_list, const std::string_view* text) {
  DropData data;
  if (uri_list != nullptr) {
    DroppedMedia media = ReadUriList(*uri_list);
    if (media.files.empty() && !media.addresses.empty()) {
      data.text = std::move(media.addresses.front());
      return data;
    }
    data.files = std::move(media.files);
    if (!data.files->empty()) return data;
  }
  if (text == nullptr) return data;
  DroppedMedia media = ReadDroppedText(*text);
  if (media.Empty()) return data;
  data.text = std::move(media.addresses.front());
  // Without the scheme nothing here would know it for a path.
  DroppedMedia file = ReadUriList(*data.text);
  if (!file.files.empty()) data.text = std::move(file.files.front());
  return data;
}

Drops::Drops(DropsHost& host, ListAdding& adding, const Settings& settings, const Session& session,
             Dialogs& dialogs)
    : host_(host), adding_(adding), settings_(settings), session_(session), dialogs_(dialogs) {}

void Drops::Render_OLEDragDrop(const DropData& Data) {
  if (session_.Unloading) return;
  if (Data.text) {
    host_.OpenFile(*Data.text, {.StartPlaying = true, .KeepWindowSize = true});
  } else if (!Data.files) {
    dialogs_.ShowMessageBox({Tr("DropSource not supported, error!\nTry using OPEN URL instead."),
                             BoxIcon::kExclamation, BoxButtons::kOk, ""});
  } else if (Data.files->size() == 1) {
    TakeFile(Data.files->front());
  } else if (Data.files->size() > 1) {
    TakeFiles(*Data.files);
  }
  if (!session_.Unloading) host_.RefreshPlaylist();
}

void Drops::TakeFile(const std::string& file) {
  // A folder stays one whatever its name ends in.
  const bool folder = FolderExists(file);
  if (folder || (IsOn(settings_.DragDropAddsToPlaylist) && !EndsLikePlaylist(file))) {
    adding_.AddFilesOrFolders({file});
  } else {
    host_.OpenFile(file, {.StartPlaying = true});
  }
}

void Drops::TakeFiles(const std::vector<std::string>& files) {
  if (!IsOn(settings_.DragDropAddsToPlaylist)) {
    const BoxAnswer answer = dialogs_.ShowMessageBox(
        {Tr("Do you want to add the dropped elements to the playlist?"), BoxIcon::kQuestion,
         BoxButtons::kOkCancel, Tr("Can't play multiple files at the same time!")});
    if (answer != BoxAnswer::kOk || session_.Unloading) return;
  }
  adding_.AddFilesOrFolders(files);
}

}  // namespace kv
