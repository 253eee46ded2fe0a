#include "desktop/mpris_player.h"

#include "desktop/media_metadata.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace kv {
namespace {

constexpr int kCompareMilliseconds = 250;
constexpr std::chrono::milliseconds kLongestGap{1000};
constexpr double kMicroseconds = 1e6;

// How far a listener's reckoning may be off before it is told, in seconds. The player's own clock
// waits for the decoder now and then; a standing one is exact.
constexpr double kRunningTolerance = 0.4;
constexpr double kStandingTolerance = 0.005;

// In the order of the repeat modes.
constexpr std::array kLoopNames = {"None", "Track", "Playlist"};
constexpr int kRepeatList = 2;

constexpr const char* kPlaying = "Playing";
constexpr const char* kPaused = "Paused";
constexpr const char* kStopped = "Stopped";

constexpr const char* kPosition = "Position";
constexpr const char* kStatus = "PlaybackStatus";

std::int64_t ToBus(double seconds) {
  return std::llround(seconds * kMicroseconds);
}

bool WrapsAround(const PlayerState& state) {
  return state.repeat_mode == kRepeatList && state.list_count > 1;
}

// The step behind the button does nothing else than this.
bool StepsOn(const PlayerState& state) {
  return state.list_count > 0 && std::max(state.list_index, 0) < state.list_count;
}

bool StepsBack(const PlayerState& state) {
  if (state.list_count == 0) return false;
  return state.list_index >= 2 || (state.list_index == 0 && !state.from_list);
}

bool CanSeek(const PlayerState& state) {
  return !state.target.empty() && state.seekable && state.duration > 0;
}

double PositionOf(const PlayerState& state) {
  if (state.target.empty()) return 0;
  const double position = std::max(state.position, 0.0);
  return state.duration > 0 ? std::min(position, state.duration) : position;
}

}  // namespace

double MprisPlayer::Reckoning::At(TimerSource::TimePoint now) const {
  return position + rate * std::chrono::duration<double>(now - since).count();
}

MprisPlayer::MprisPlayer(MprisHost& host, MprisBus& bus, TimerSource& time, MprisIdentity identity)
    : host_(host),
      bus_(bus),
      time_(time),
      identity_(std::move(identity)),
      compare_(time.MakeTimer(TimerKind::kOrdinary, kCompareMilliseconds, [this] { Update(); })) {}

void MprisPlayer::Begin() {
  const PlayerState state = host_.State();
  NoteMedium(state);
  told_player_ = PlayerProperties(state);
  told_player_.erase(kPosition);
  told_root_ = RootProperties(state);
  reckoning_ = {PositionOf(state), time_.Now(), state.Playing() ? state.rate : 0};
  compare_->SetEnabled(true);
}

void MprisPlayer::End() {
  compare_->SetEnabled(false);
}

// --- What is told

void MprisPlayer::NoteMedium(const PlayerState& state) {
  if (state.target == target_) return;
  target_ = state.target;
  if (!target_.empty()) ++tracks_;
}

std::string MprisPlayer::TrackId() const {
  if (target_.empty()) return std::string(kNoTrack);
  return "/org/kestrelview/track/" + std::to_string(tracks_);
}

// Stopped is held at the start with the first picture shown, which the engine calls paused.
std::string MprisPlayer::StatusOf(const PlayerState& state) const {
  if (state.target.empty() || !state.running) return kStopped;
  return state.paused ? kPaused : kPlaying;
}

MprisProperties MprisPlayer::PlayerProperties(const PlayerState& state) {
  const bool open = !state.target.empty();
  const auto loop = static_cast<std::size_t>(state.repeat_mode);
  return {
      {kStatus, StatusOf(state)},
      {"LoopStatus", std::string(loop < kLoopNames.size() ? kLoopNames[loop] : kLoopNames[0])},
      {"Rate", state.rate},
      // The list itself is shuffled, once; there is no such way of playing it.
      {"Shuffle", false},
      {"Metadata", BuildMetadata(state, TrackId(), open ? host_.ArtUrl(state) : std::string())},
      {"Volume", state.volume},
      {kPosition, ToBus(PositionOf(state))},
      {"MinimumRate", state.seekable ? kSlowest : 1.0},
      {"MaximumRate", state.seekable ? kFastest : 1.0},
      {"CanGoNext", StepsOn(state) || WrapsAround(state)},
      {"CanGoPrevious", StepsBack(state) || WrapsAround(state)},
      {"CanPlay", open || state.list_count > 0},
      {"CanPause", open},
      {"CanSeek", CanSeek(state)},
      {"CanControl", true},
  };
}

MprisProperties MprisPlayer::RootProperties(const PlayerState& state) const {
  return {
      {"CanQuit", true},
      {"Fullscreen", state.full_screen},
      {"CanSetFullscreen", true},
      {"CanRaise", true},
      {"HasTrackList", false},
      {"Identity", identity_.name},
      {"DesktopEntry", identity_.desktop_entry},
      {"SupportedUriSchemes", identity_.schemes},
      {"SupportedMimeTypes", identity_.mime_types},
  };
}

MprisProperties MprisPlayer::Properties(MprisInterface interface) {
  Update();
  if (interface == MprisInterface::kRoot) return RootProperties(host_.State());
  // Who asks between two media gets what all others were told.
  if (gap_) {
    MprisProperties told = told_player_;
    told[kPosition] = std::int64_t{0};
    return told;
  }
  return PlayerProperties(host_.State());
}

void MprisPlayer::TellChanges(MprisInterface interface, MprisProperties now,
                              MprisProperties& told) {
  MprisProperties changed;
  for (const auto& [name, value] : now) {
    const auto before = told.find(name);
    if (before == told.end() || before->second != value) changed.emplace(name, value);
  }
  told = std::move(now);
  if (!changed.empty()) bus_.PropertiesChanged(interface, changed);
}

void MprisPlayer::Update() {
  if (!compare_->Enabled()) return;
  const PlayerState state = host_.State();
  if (state.target.empty() && !target_.empty()) {
    if (!std::exchange(gap_, true)) gap_since_ = time_.Now();
    if (time_.Now() - gap_since_ < kLongestGap) return;
  }
  gap_ = false;
  const bool new_track = state.target != target_;
  const std::string old_status = std::get<std::string>(told_player_.at(kStatus));
  NoteMedium(state);
  MprisProperties now = PlayerProperties(state);
  now.erase(kPosition);
  TellChanges(MprisInterface::kPlayer, std::move(now), told_player_);
  TellChanges(MprisInterface::kRoot, RootProperties(state), told_root_);
  FollowPosition(state, new_track, old_status);
}

// Listeners go on from the last position that they know, by the rate while it plays; a new track,
// and one that starts out of the stop, is taken to begin at 0. Told is what differs from that.
void MprisPlayer::FollowPosition(const PlayerState& state, bool new_track,
                                 const std::string& old_status) {
  const TimerSource::TimePoint now = time_.Now();
  const std::string status = StatusOf(state);
  const double actual = PositionOf(state);
  const double rate = status == kPlaying ? state.rate : 0;
  const bool from_start =
      new_track || (status != old_status && (status == kStopped || old_status == kStopped));
  const double expected = from_start ? 0.0 : reckoning_.At(now);
  const bool moved = reckoning_.rate != 0 || rate != 0;
  const bool jumped =
      std::abs(actual - expected) > (moved ? kRunningTolerance : kStandingTolerance);
  if (!jumped && !from_start && rate == reckoning_.rate) return;
  reckoning_ = {actual, now, rate};
  if (jumped) bus_.Seeked(ToBus(actual));
}

// --- What is asked for

MprisPlayer::SetResult MprisPlayer::Set(MprisInterface interface, const std::string& name,
                                        const MprisValue& value) {
  const MprisProperties known = Properties(interface);
  const auto property = known.find(name);
  if (property == known.end()) return SetResult::kUnknown;
  constexpr std::array kPlayerNames = {"LoopStatus", "Rate", "Shuffle", "Volume"};
  const bool writable =
      interface == MprisInterface::kRoot
          ? name == "Fullscreen"
          : std::find(kPlayerNames.begin(), kPlayerNames.end(), name) != kPlayerNames.end();
  if (!writable) return SetResult::kReadOnly;
  if (value.index() != property->second.index()) return SetResult::kWrongType;

  if (name == "Fullscreen") {
    host_.SetFullScreen(std::get<bool>(value));
  } else if (name == "LoopStatus") {
    const auto mode = std::find(kLoopNames.begin(), kLoopNames.end(), std::get<std::string>(value));
    if (mode == kLoopNames.end()) return SetResult::kWrongType;
    host_.SetRepeatMode(static_cast<int>(mode - kLoopNames.begin()));
  } else if (name == "Volume") {
    const double volume = std::get<double>(value);
    if (std::isfinite(volume)) host_.SetVolume(std::clamp(volume, 0.0, 1.0));
  } else if (name == "Rate") {
    SetRate(std::get<double>(value));
  }
  Update();
  return SetResult::kDone;
}

void MprisPlayer::SetRate(double rate) {
  if (rate == 0) {
    Pause();  // by the standard
  } else if (std::isfinite(rate) && rate > 0 && host_.State().seekable) {
    host_.SetRate(std::clamp(rate, kSlowest, kFastest));
  }
}

void MprisPlayer::Raise() {
  host_.RaiseWindow();
}

void MprisPlayer::Quit() {
  host_.CloseWindow();
}

void MprisPlayer::Next() {
  const PlayerState state = host_.State();
  if (StepsOn(state)) {
    host_.PressNext();
  } else if (WrapsAround(state)) {
    host_.PlayEntry(1);
  }
  Update();
}

void MprisPlayer::Previous() {
  const PlayerState state = host_.State();
  if (StepsBack(state)) {
    host_.PressPrevious();
  } else if (WrapsAround(state)) {
    host_.PlayEntry(state.list_count);
  }
  Update();
}

void MprisPlayer::Play() {
  const PlayerState state = host_.State();
  if (state.Playing()) return;
  // Play goes back to a mark that is set; Pause goes on from where it is.
  if (StatusOf(state) == kPaused) {
    host_.PressPause();
  } else if (!state.target.empty() || state.list_count > 0) {
    host_.PressPlay();
  }
  Update();
}

void MprisPlayer::Pause() {
  if (host_.State().Playing()) host_.PressPause();
  Update();
}

void MprisPlayer::PlayPause() {
  if (host_.State().Playing()) {
    Pause();
  } else {
    Play();
  }
}

void MprisPlayer::Stop() {
  const PlayerState state = host_.State();
  if (StatusOf(state) != kStopped) host_.PressStop();
  Update();
}

void MprisPlayer::Seek(std::int64_t offset) {
  const PlayerState state = host_.State();
  if (!CanSeek(state)) return;
  const double target = PositionOf(state) + static_cast<double>(offset) / kMicroseconds;
  if (target > state.duration) {
    Next();
    return;
  }
  host_.MoveTo(std::max(target, 0.0));
  Update();
}

void MprisPlayer::SetPosition(const std::string& track_id, std::int64_t position) {
  const PlayerState state = host_.State();
  // An id that is told no more is that of a medium which has ended meanwhile.
  if (!CanSeek(state) || state.target != target_ || track_id != TrackId()) return;
  if (position < 0 || position > ToBus(state.duration)) return;
  host_.MoveTo(static_cast<double>(position) / kMicroseconds);
  Update();
}

bool MprisPlayer::OpenUri(const std::string& uri) {
  const bool taken = host_.OpenUri(uri);
  Update();
  return taken;
}

}  // namespace kv
