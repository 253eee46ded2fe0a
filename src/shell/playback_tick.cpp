#include "shell/playback_tick.h"

#include "shell/time_display.h"

namespace kv {
namespace {

// Up to this length there is nothing to follow: nothing is open, or a stream has no known end.
constexpr double kNoDuration = 0.01;
// A position that stands still further from the end than this has stalled.
constexpr double kEndZone = 1.0;
constexpr int kFrozenSamples = 6;

constexpr int kRepeatMedium = 1;
constexpr int kRepeatList = 2;
constexpr int kStep = -1;  // not a jump to an index

}  // namespace

PlaybackTick::PlaybackTick(clsDShowControl& movie, Settings& settings, const Session& session,
                           ScrollerModel& Scroller1, const Sliders& sliders, Transport& transport,
                           TickNavigation& navigation)
    : movie_(movie),
      settings_(settings),
      session_(session),
      position_(Scroller1),
      sliders_(sliders),
      transport_(transport),
      navigation_(navigation) {}

void PlaybackTick::PosTimer() {
  if (tick_busy_ || PlaysWithoutPosition(session_)) return;
  tick_busy_ = true;
  const double duration = position_.Max();
  if (!sliders_.CtrlScrubbing() && duration > kNoDuration) Follow(duration);
  tick_busy_ = false;
}

void PlaybackTick::Follow(double duration) {
  const bool end_reached = ReachedEnd(duration);
  last_pos_ = movie_.DS_GetPosition();
  // With an open pending what plays now is over already: a second step would skip an entry.
  if (!navigation_.PlayFromPlaylistEnabled()) KeepToResumeSection();
  if (!navigation_.PlayFromPlaylistEnabled()) {
    if (session_.MarkA > kNoPosition && session_.MarkB > kNoPosition) {
      LoopMarks();
    } else if (end_reached) {
      EndOfMedium();
    }
  }
  // Shows the time as well, by the slider's own event.
  position_.SetValue(last_pos_);
}

bool PlaybackTick::ReachedEnd(double duration) {
  if (!Playing() || movie_.DS_GetPosition() != last_pos_) {
    frozen_count_ = 0;
    return false;
  }
  if (++frozen_count_ < kFrozenSamples) return false;
  frozen_count_ = 0;
  return duration - movie_.DS_GetPosition() <= kEndZone;
}

void PlaybackTick::KeepToResumeSection() {
  const double end = session_.ResumeEndPosition;
  const bool passed = end > 0.0 && end <= last_pos_;
  if (!passed) section_left_ = false;
  if (!passed || !Playing()) return;
  if (!IsOn(settings_.PlayingFromPlaylist) || settings_.RepeatMode == kRepeatMedium) {
    movie_.DS_SetPosition(session_.ResumePosition);
    return;
  }
  // Once for each time that the end is reached: behind the last entry the medium plays on.
  if (section_left_) return;
  section_left_ = true;
  if (settings_.PlaylistIndex == navigation_.PlaylistCount()) {
    settings_.PlaylistIndex = 0;
  } else {
    navigation_.PlaylistSetNext(false, kStep, true);
  }
}

void PlaybackTick::LoopMarks() {
  if (last_pos_ >= session_.MarkB) movie_.DS_SetPosition(session_.MarkA);
}

void PlaybackTick::EndOfMedium() {
  const int index = settings_.PlaylistIndex;
  const int count = navigation_.PlaylistCount();
  const bool from_list = IsOn(settings_.PlayingFromPlaylist) && count > 0;
  if (settings_.RepeatMode == kRepeatMedium) {
    movie_.DS_SetPosition(0);  // and goes on playing
  } else if (from_list && index >= 1 && index < count && IsOn(settings_.AutoNext)) {
    navigation_.PlaylistSetNext(false, kStep, true);
  } else if (from_list && (index < 1 || index >= count) && settings_.RepeatMode == kRepeatList) {
    settings_.PlaylistIndex = 1;
    if (movie_.DS_IsRunning()) navigation_.StartPlaylistTimer(true);
  } else {
    transport_.BUtton_Click(Transport::kStop);
  }
}

void MovieEvents::Movie_PlayStateChange(clsDShowControl::PlayState /*State*/) {
  view_.SetVumeterVisible();
}

void MovieEvents::ShowLogo(bool show) {
  view_.SetRenderVisible(!show);
  view_.SetVuMeter1Visible(!show);
  view_.SetLogoVisible(show);
  pump_.PumpOnce();
}

void MovieEvents::Movie_PrepareMedia(const std::string& /*File*/) {
  ShowLogo(true);
  view_.ExtPluginMediaChanged();
}

void MovieEvents::Movie_PrepareMediaFinish(const std::string& /*File*/) {
  ShowLogo(false);
}

}  // namespace kv
