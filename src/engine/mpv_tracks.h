// Sounds and subtitles of one medium over libmpv: what there is, what is played, and the subtitle
// files beside the medium, which are looked for on a thread of its own.
//
// A part of `MpvGraph`, which hands on the core's events; a value, so that a load that was begun
// before it was asked for can be taken over. Interface thread only.
#pragma once

#include "engine/media_tracks.h"
#include "engine/mpv_core.h"
#include "engine/subtitle_files.h"

#include <mpv/client.h>

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

// What the user has chosen last; the media that follow are played so where they can be.
struct TrackWishes {
  bool no_subtitles = false;
  std::string sound;      // languages, as the media tell them; empty: what the medium
  std::string subtitles;  // itself has for its default
};

class MpvTracks {
 public:
  // The property that tells the tracks, as a node.
  static constexpr const char* kProperty = "track-list";

  // Begins anew: looks for the subtitle files of a local medium. Answers the options that the core
  // is to load the medium with.
  std::string Begin(const std::string& medium, bool remote, const TrackWishes& wishes);

  // The core has loaded the medium: asks it for its tracks.
  void Ask(MpvCore& core);
  // True once it has told them.
  bool Known() const { return known_; }
  // True while the files beside the medium are looked for.
  bool Searching() const;

  // Each answers whether the reply was to one of our requests.
  bool OnReply(const mpv_event& event, MpvCore& core);
  bool OnCommandReply(const mpv_event& event);
  void OnList(const mpv_event_property& property);

  // Hands the core the next of the files that have been found, once it has done with the one
  // before. Called after each event.
  void AddFound(MpvCore& core);

  const std::vector<MediaTrack>& List() const { return tracks_; }
  // The track of that kind that is played; null for none.
  const MediaTrack* Selected(TrackKind kind) const;
  // See FilterGraph::SelectTrack().
  bool Select(MpvCore& core, TrackKind kind, int id);

  // Adds a file that the user chose. `Added` has a value once the core has answered.
  void Add(MpvCore& core, const std::string& path);
  std::optional<bool> Added() const { return added_; }

 private:
  struct Search;

  void ShowForced(MpvCore& core);
  void TakeFound();

  TrackWishes wishes_;
  bool known_ = false;
  std::uint64_t list_request_ = 0;
  std::vector<MediaTrack> tracks_;

  std::shared_ptr<const Search> search_;  // shared with its thread; null when it has been taken
  std::deque<SubtitleFile> found_;        // yet to be added
  bool show_found_ = false;               // the first that can be added is shown
  std::uint64_t found_request_ = 0;       // of the file being added
  std::uint64_t add_request_ = 0;
  std::optional<bool> added_;
};

}  // namespace kv
