// The metadata of a medium as media controllers want them (MPRIS metadata guidelines, xesam names).
//
// Pure functions; any thread.
#pragma once

#include "desktop/mpris_values.h"
#include "desktop/player_state.h"

#include <string>
#include <string_view>

namespace kv {

// What stands for a track where there is none.
inline constexpr std::string_view kNoTrack = "/org/mpris/MediaPlayer2/TrackList/NoTrack";

// All that is known of the medium in `state`; the track id alone when nothing is open. Texts are
// one readable line each, and no address in them has a user or a password. `art_url` may be empty.
MediaMetadata BuildMetadata(const PlayerState& state, const std::string& track_id,
                            const std::string& art_url);

// `date` as far as it is one by ISO 8601 ("2003", "2003-05", "2003-05-17", with a time behind it);
// the year alone if it only begins with one; else empty.
std::string ContentCreated(std::string_view date);

}  // namespace kv
