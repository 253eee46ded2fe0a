#include "visual/vu_meter.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdlib>

namespace kv {
namespace {

// A capture delivers in pieces; a gap as long as this is the end of the sound.
constexpr std::chrono::milliseconds kGap{150};
// A machine that slept has nothing to catch up with.
constexpr std::chrono::milliseconds kLongestFill{1000};

template <typename Value>
void Take(Value& value, Value wanted, Value lowest, Value highest) {
  if (wanted >= lowest && wanted <= highest) value = wanted;
}

}  // namespace

VuMeterProperties WindowMeterProperties() {
  VuMeterProperties properties;
  properties.buffersizebytes = 512;
  properties.samplespersec = 11025;
  properties.numberofbuffers = 8;
  properties.oledropmode = 0;
  properties.scaleheight = 67.0F;
  properties.scalewidth = 54.0F;
  return properties;
}

VuMeter::VuMeter(TimerSource& timers, AudioCapture& capture, VuMeterView& view,
                 const VuMeterProperties& properties)
    : timers_(timers),
      capture_(capture),
      view_(view),
      timer_(timers.MakeTimer(TimerKind::kHighResolution, 0, [this] { Tick(); })) {
  SetProperties(properties);
  ResetLevels();
}

VuMeter::~VuMeter() {
  *alive_ = false;
  Stop();
}

void VuMeter::SetProperties(const VuMeterProperties& wanted) {
  const std::int16_t style = properties_.vustyle;
  VuMeterProperties now = wanted;
  // What has a range begins with the value that it had.
  now.buffersizebytes = properties_.buffersizebytes;
  now.samplespersec = properties_.samplespersec;
  now.numberofbuffers = properties_.numberofbuffers;
  now.vustyle = style;
  now.vupulloffpixels = properties_.vupulloffpixels;
  now.scaleheight = properties_.scaleheight;
  now.scalewidth = properties_.scalewidth;
  now.needlelengthproc = properties_.needlelengthproc;
  now.scalanumbersproc = properties_.scalanumbersproc;
  now.RefreshRate = properties_.RefreshRate;
  Take(now.buffersizebytes, wanted.buffersizebytes, 1, 65536);
  Take(now.samplespersec, wanted.samplespersec, 1000, 192000);
  Take(now.numberofbuffers, wanted.numberofbuffers, 1, 256);
  Take<std::int16_t>(now.vustyle, wanted.vustyle, 0, kLastVuStyle);
  Take<std::int16_t>(now.vupulloffpixels, wanted.vupulloffpixels, 0, 100);
  Take(now.scaleheight, wanted.scaleheight, 1.0F, 10000.0F);
  Take(now.scalewidth, wanted.scalewidth, 1.0F, 10000.0F);
  Take(now.needlelengthproc, wanted.needlelengthproc, 10.0F, 100.0F);
  Take(now.scalanumbersproc, wanted.scalanumbersproc, 10.0F, 100.0F);
  Take(now.RefreshRate, wanted.RefreshRate, 1, 1000);
  properties_ = now;

  const int interval = std::max(now.RefreshRate, kShortestFrame);
  if (timer_->Interval() != interval) timer_->SetInterval(interval);
  bars_.SetFallBack(now.vupulloffpixels);
  trace_.SetFallBack(now.vupulloffpixels);
  if (now.vustyle != style) ResetLevels();
  view_.PropertiesChanged();
}

void VuMeter::SetStyle(int style) {
  if (style < 0 || style > kLastVuStyle) return;
  VuMeterProperties properties = properties_;
  properties.vustyle = static_cast<std::int16_t>(style);
  SetProperties(properties);
}

void VuMeter::SetAutoRedraw(bool on) {
  properties_.AutoRedraw = on;
}

void VuMeter::ResetLevels() {
  bars_.Reset(format_.samplespersec);
  trace_.Reset(format_.samplespersec);
  needle_.Reset(format_.samplespersec);
}

std::string VuMeter::Start() {
  if (running_) return {};
  const CaptureFormat format = {.samplespersec = properties_.samplespersec,
                                .buffersizebytes = properties_.buffersizebytes,
                                .numberofbuffers = properties_.numberofbuffers};
  std::string reason = capture_.Start(format);
  if (!reason.empty()) return reason;
  running_ = true;
  // After a pause the display goes on from where it stood.
  const bool other_rate = format.samplespersec != format_.samplespersec;
  format_ = format;
  if (other_rate) ResetLevels();
  last_tick_ = last_sound_ = timers_.Now();
  timer_->SetEnabled(true);
  return {};
}

void VuMeter::Stop() {
  if (!running_) return;
  running_ = false;
  timer_->SetEnabled(false);
  capture_.Stop();
}

void VuMeter::FillWithSilence() {
  const auto now = timers_.Now();
  const auto passed = std::min<TimerSource::TimePoint::duration>(now - last_tick_, kLongestFill);
  last_tick_ = now;
  if (!sound_.empty()) {
    last_sound_ = now;
  } else if (now - last_sound_ >= kGap) {
    const double seconds = std::chrono::duration<double>(passed).count();
    sound_.assign(static_cast<std::size_t>(seconds * format_.samplespersec), kSilentSample);
  }
}

void VuMeter::Tick() {
  capture_.Take(sound_);
  FillWithSilence();

  bool Cancel = false;
  if (Frame) {
    samples_ = sound_;
    auto Count = static_cast<std::int32_t>(samples_.size());
    std::int32_t Level = 0;
    for (const std::uint8_t sample : samples_)
      Level = std::max(Level, std::abs(sample - kSilentSample));
    // Kept until it returns, also when it ends the meter's life.
    const auto handler = Frame;
    const std::shared_ptr<bool> alive = alive_;
    handler(samples_, Count, Level, Cancel);
    if (!*alive) return;
  }
  if (!running_) return;
  // The handler may have pumped, but no frame comes inside a frame: this is still this one's sound.
  if (!Cancel) {
    switch (static_cast<VuStyle>(properties_.vustyle)) {
      case VuStyle::kBars:
        bars_.Feed(sound_);
        break;
      case VuStyle::kTrace:
        trace_.Feed(sound_);
        break;
      case VuStyle::kNeedle:
        needle_.Feed(sound_);
        break;
    }
  }
  view_.ShowFrame(Cancel);
}

}  // namespace kv
