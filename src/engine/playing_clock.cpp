#include "engine/playing_clock.h"

#include <algorithm>
#include <cmath>

namespace kv {
namespace {

// A report this far from the clock is a jump of the medium, not jitter.
constexpr double kJumpSeconds = 0.3;
// A decoder that is behind by no more than this catches up while the clock waits for it: sound
// outputs take their time to begin. Behind that it has jumped.
constexpr double kCatchUpSeconds = 2.5;
// Smaller differences are worked off over this time ...
constexpr double kCorrectionSeconds = 0.5;
// ... by at most this part of the rate, so that the clock never goes back.
constexpr double kCorrectionShare = 0.4;
// While a medium waits for its decoder or for data it is not at its end, so its position must not
// look frozen. A thousandth of the normal speed moves it and cannot be seen.
constexpr double kWaitingSpeed = 0.001;
// What may still be in the buffers of the sound output when a decoder has ended.
constexpr double kSoundBufferSeconds = 0.5;
// Without a report for this long, and two pictures more, a decoder is stuck.
constexpr double kSilenceSeconds = 0.5;
// A last picture may be shown a little longer than the others.
constexpr double kPictureTolerance = 1.5;

double Seconds(PlayingClock::TimePoint from, PlayingClock::TimePoint to) {
  return std::max(0.0, std::chrono::duration<double>(to - from).count());
}

}  // namespace

void PlayingClock::Reset() {
  *this = PlayingClock();
}

void PlayingClock::Anchor(double position, double correction, TimePoint now) {
  base_ = position;
  correction_ = correction;
  anchor_ = now;
}

double PlayingClock::Advance(TimePoint now) const {
  if (!running_ || (ended_ && !running_out_)) return base_;
  const double elapsed = Seconds(anchor_, now);
  if (seeking_ || stalled_ || waiting_) return base_ + elapsed * kWaitingSpeed;
  const double silence = kSilenceSeconds + 2.0 * picture_ / rate_;
  const double free = running_out_ ? elapsed : std::min(elapsed, silence);
  return base_ + free * rate_ + correction_ * std::min(1.0, free / kCorrectionSeconds) +
         (elapsed - free) * kWaitingSpeed;
}

double PlayingClock::Position(TimePoint now) const {
  if (ended_ && !running_out_ && duration_ > 0.0) return duration_;
  const double position = Advance(now);
  if (duration_ <= 0.0 || !running_) return position;
  return outlasts_ && !ended_ ? position : std::min(position, duration_);
}

void PlayingClock::SetDuration(double seconds) {
  duration_ = seconds;
  // A length corrected downwards must not take the clock back.
  outlasts_ = running_ && !ended_ && base_ > seconds;
}

void PlayingClock::Run(TimePoint now) {
  if (running_) return;
  Anchor(Position(now), 0.0, now);
  running_ = true;
}

void PlayingClock::Halt(TimePoint now) {
  if (!running_) return;
  Anchor(Position(now), 0.0, now);
  running_ = false;
}

void PlayingClock::SetRate(double rate, TimePoint now) {
  Anchor(Position(now), 0.0, now);
  rate_ = rate;
}

void PlayingClock::BeginSeek(double seconds, TimePoint now) {
  Anchor(seconds, 0.0, now);
  waiting_ = false;
  seeking_ = true;
  ended_ = false;
  running_out_ = false;
  outlasts_ = false;
}

void PlayingClock::EndSeek(double seconds, TimePoint now) {
  if (!seeking_) return;
  const double asked = Position(now);
  seeking_ = false;
  // A decoder lands on a picture or a packet near by; what was asked for stays the position.
  Anchor(std::abs(seconds - asked) > kJumpSeconds ? seconds : asked, 0.0, now);
}

void PlayingClock::Report(double seconds, TimePoint now) {
  if (!running_ || seeking_ || ended_) return;
  // A length told by a file's header can be too short; then the decoder is believed.
  if (duration_ > 0.0 && seconds > duration_) outlasts_ = true;
  const double position = Position(now);
  const double error = seconds - position;
  waiting_ = error < -kJumpSeconds && error > -kCatchUpSeconds * rate_;
  if (waiting_) {
    Anchor(position, 0.0, now);
    return;
  }
  if (std::abs(error) > kJumpSeconds) {
    Anchor(seconds, 0.0, now);
    return;
  }
  const double limit = kCorrectionShare * kCorrectionSeconds * rate_;
  Anchor(position, std::clamp(error, -limit, limit), now);
}

void PlayingClock::SetStalled(bool stalled, TimePoint now) {
  if (stalled == stalled_) return;
  Anchor(Position(now), 0.0, now);
  stalled_ = stalled;
}

void PlayingClock::SetEnded(bool ended, TimePoint now) {
  if (ended == ended_) return;
  Anchor(Position(now), 0.0, now);
  ended_ = ended;
  waiting_ = false;  // no report will come that could end it
  // A medium that outlasted its header has shown by now how long it is.
  if (ended && duration_ > 0.0) duration_ = std::max(duration_, base_);
  running_out_ = ended && duration_ > 0.0 &&
                 duration_ - base_ <= std::max(kSoundBufferSeconds, kPictureTolerance * picture_);
}

}  // namespace kv
