// The tracks of a medium that the user can choose among: sounds and subtitles. Plain data.
#pragma once

#include <string>

namespace kv {

enum class TrackKind { kSound, kSubtitle };

struct MediaTrack {
  TrackKind kind = TrackKind::kSound;
  int id = 0;  // from 1, among the tracks of its kind; the same while the medium is open
  std::string language = {};  // as the medium tells it ("ger", "pt-BR"), empty if it does not
  std::string title = {};     // as the medium tells it, bytes as they are
  std::string codec = {};     // short name: "vorbis", "subrip"
  bool is_default = false;
  bool forced = false;    // what is spoken in a foreign language alone
  bool external = false;  // from a file beside the medium
  bool selected = false;  // heard or shown

  bool operator==(const MediaTrack&) const = default;
};

}  // namespace kv
