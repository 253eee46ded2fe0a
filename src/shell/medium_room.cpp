#include "shell/medium_room.h"

#include "shell/drop_data_qt.h"
#include "shell/frm_saving.h"

#include <QMetaObject>

#include <utility>

namespace kv {

MediumRoom::MediumRoom(MediumRoomHost& host, const Parts& parts)
    : host_(host),
      parts_(parts),
      drops_(*this, parts.playlist.Adding(), parts.settings, parts.session, parts.dialogs),
      current_(*this, {parts.Movie, parts.playlist.Playlist(), parts.settings, parts.session,
                       parts.dialogs, parts.pump, parts.services, parts.text}),
      colors_(parts.form.palette()) {}

MediumRoom::~MediumRoom() {
  UnloadAll();
}

void MediumRoom::Drag(QDropEvent& event) {
  AcceptDrop(event);
}

void MediumRoom::Drop(QDropEvent& event) {
  if (!AcceptDrop(event)) return;
  // Taking it can last; the program that it comes from is not to wait.
  QMetaObject::invokeMethod(
      &parts_.form,
      [this, data = ReadDropData(*event.mimeData())] {
        if (!parts_.session.Unloading) drops_.Render_OLEDragDrop(data);
      },
      Qt::QueuedConnection);
}

std::string MediumRoom::AskForUrl() {
  // Anything can happen while it is open, its owner's end included.
  url_ = new frmURL(parts_.playlist.Store(), parts_.session, parts_.dialogs, colors_, &parts_.form);
  url_->exec();
  std::string address = url_ != nullptr ? url_->UrlResult() : std::string();
  delete url_.data();
  return address;
}

void MediumRoom::UnloadAll() {
  if (url_ != nullptr) url_->reject();
  frmSaving::UnloadAll(parts_.form);
}

void MediumRoom::OpenFile(const std::string& path, OpenArguments arguments) {
  host_.OpenFile(path, arguments);
}

void MediumRoom::CopyToFile(const std::string& source, const std::string& target) {
  frmSaving::Copy(source, target, parts_.time, parts_.text, &parts_.form);
}

void MediumRoom::DownloadToFile(const std::string& Url, const std::string& Target, Saved saved) {
  frmSaving::Fetch(Url, Target, parts_.playlist.Downloads(), parts_.time, parts_.text,
                   std::move(saved), &parts_.form);
}

void MediumRoom::PlaylistSetNext(int index) {
  parts_.playlist.PlaylistSetNext(false, index, true);
}

}  // namespace kv
