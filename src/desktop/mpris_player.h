// The player as media controllers know it: the rules of the Media Player Remote Interfacing
// Specification 2.2 (org.mpris.MediaPlayer2 and its Player part).
//
// Answers properties, obeys commands, and tells what has changed: a slow timer compares the state
// of the player with what was told last, and so does every command. Between two media nothing is
// open for a moment, which is not worth telling. Knows neither the bus nor the toolkit. Owned by
// the shell's desktop room; interface thread only. Times of the bus are microseconds.
#pragma once

#include "desktop/mpris_values.h"
#include "desktop/player_state.h"
#include "system/timers.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace kv {

// The player. Every call but the first may pump messages.
class MprisHost {
 public:
  virtual ~MprisHost() = default;
  virtual PlayerState State() const = 0;
  // The address of the picture that goes with the medium; empty while there is none.
  virtual std::string ArtUrl(const PlayerState& state) = 0;
  // The buttons of the strip.
  virtual void PressPlay() = 0;
  virtual void PressPause() = 0;
  virtual void PressStop() = 0;
  virtual void PressPrevious() = 0;
  virtual void PressNext() = 0;
  virtual void PlayEntry(int index) = 0;  // of the list, from 1
  virtual void MoveTo(double seconds) = 0;
  virtual void SetVolume(double volume) = 0;  // 0 to 1
  virtual void SetRate(double rate) = 0;      // within the bounds below
  virtual void SetRepeatMode(int mode) = 0;
  virtual void SetFullScreen(bool on) = 0;
  virtual bool OpenUri(const std::string& uri) = 0;  // false: not taken
  virtual void RaiseWindow() = 0;
  virtual void CloseWindow() = 0;
};

// Who listens.
class MprisBus {
 public:
  virtual ~MprisBus() = default;
  virtual void PropertiesChanged(MprisInterface interface, const MprisProperties& changed) = 0;
  virtual void Seeked(std::int64_t position) = 0;
};

// What a player of this kind always answers.
struct MprisIdentity {
  std::string name;
  std::string desktop_entry;
  std::vector<std::string> schemes;
  std::vector<std::string> mime_types;
};

class MprisPlayer {
 public:
  // The bounds of the rate slider.
  static constexpr double kSlowest = 0.05;
  static constexpr double kFastest = 2.0;

  enum class SetResult { kDone, kUnknown, kReadOnly, kWrongType };

  // All must outlive this object.
  MprisPlayer(MprisHost& host, MprisBus& bus, TimerSource& time, MprisIdentity identity);
  MprisPlayer(const MprisPlayer&) = delete;
  MprisPlayer& operator=(const MprisPlayer&) = delete;

  // From now on somebody listens.
  void Begin();
  void End();

  // All properties of an interface as they are now.
  MprisProperties Properties(MprisInterface interface);
  SetResult Set(MprisInterface interface, const std::string& name, const MprisValue& value);

  void Raise();
  void Quit();
  void Next();
  void Previous();
  void Pause();
  void PlayPause();
  void Stop();
  void Play();
  void Seek(std::int64_t offset);
  // Does nothing when `track_id` is not the current one, or `position` lies outside it.
  void SetPosition(const std::string& track_id, std::int64_t position);
  bool OpenUri(const std::string& uri);

  // Compares, and tells what is new.
  void Update();

 private:
  // What a listener that goes on reckoning from what it was told takes the position for.
  struct Reckoning {
    double position = 0;
    TimerSource::TimePoint since;
    double rate = 0;  // 0 while it stands
    double At(TimerSource::TimePoint now) const;
  };

  void NoteMedium(const PlayerState& state);
  std::string TrackId() const;
  std::string StatusOf(const PlayerState& state) const;
  MprisProperties PlayerProperties(const PlayerState& state);
  MprisProperties RootProperties(const PlayerState& state) const;
  void TellChanges(MprisInterface interface, MprisProperties now, MprisProperties& told);
  void FollowPosition(const PlayerState& state, bool new_track, const std::string& old_status);
  void SetRate(double rate);

  MprisHost& host_;
  MprisBus& bus_;
  TimerSource& time_;
  MprisIdentity identity_;
  std::unique_ptr<Timer> compare_;

  std::string target_;  // of the current track
  std::uint64_t tracks_ = 0;
  bool gap_ = false;  // nothing is open, and that is not told yet
  TimerSource::TimePoint gap_since_;
  MprisProperties told_player_;
  MprisProperties told_root_;
  Reckoning reckoning_;
};

}  // namespace kv
