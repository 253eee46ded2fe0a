#include "shell/playlist_room.h"

namespace kv {

PlaylistRoom::PlaylistRoom(PlaylistRoomHost& host, const Parts& parts)
    : host_(host),
      parts_(parts),
      playlist_(parts.text),
      registry_(parts.folder.AppFolder() + "registry.ini"),
      adding_(*this, playlist_, parts.session, parts.dialogs, parts.pump),
      files_(*this, {playlist_, adding_, parts.settings, parts.session, parts.dialogs, parts.pump,
                     download_, registry_, parts.text, parts.folder.AppFolder(), UserLocale()}),
      navigation_(playlist_, parts.settings, parts.session, parts.dialogs, parts.PlayFromPlaylist,
                  *this),
      resume_side_(host),
      resume_(resume_side_, {parts.Movie, parts.settings, parts.session, playlist_, parts.dialogs,
                             parts.pump, parts.text}) {}

void PlaylistRoom::PlaylistSetPrevious(bool to_first, bool immediate) {
  navigation_.PlaylistSetPrevious(to_first, immediate);
}

void PlaylistRoom::PlaylistSetNext(bool to_last, int index, bool immediate) {
  navigation_.PlaylistSetNext(to_last, index, immediate);
}

void PlaylistRoom::StartPlaylistTimer(bool immediate) {
  navigation_.StartPlaylistTimer(immediate);
}

void PlaylistRoom::OpenFile(const std::string& path) {
  host_.OpenFile(path, {});
}

void PlaylistRoom::OpenFile(const std::string& path, bool from_playlist, bool start_playing) {
  host_.OpenFile(path, {.FromPlaylist = from_playlist, .StartPlaying = start_playing});
}

void PlaylistRoom::OpenFile(const std::string& path, bool start_playing) {
  host_.OpenFile(path, {.FromPlaylist = true, .StartPlaying = start_playing});
}

void PlaylistRoom::ResumeSide::OpenFile(const std::string& path, bool from_playlist) {
  host_.OpenFile(path, {.FromPlaylist = from_playlist, .IsResumeStart = true});
}

}  // namespace kv
