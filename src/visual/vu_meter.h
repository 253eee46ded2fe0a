// The level meter control `OSTRTVumeter.VuMeter`: captures what the player sounds and makes frames
// of it, for its own three displays and for plug-ins.
//
// Its rules only: the widget paints (vu_meter_widget.h), `AudioCapture` listens. While it runs a
// frame comes every `RefreshRate` milliseconds; each takes all the sound since the last one, so a
// painter that falls behind skips frames and still shows true levels. Colours are 0x00BBGGRR as in
// the schemes. Owned by its widget; interface thread.
#pragma once

#include "system/timers.h"
#include "visual/audio_capture.h"
#include "visual/vu_bars.h"
#include "visual/vu_needle.h"
#include "visual/vu_trace.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kv {

enum class VuStyle : std::int16_t { kBars = 0, kTrace = 1, kNeedle = 2 };
inline constexpr std::int16_t kLastVuStyle = 2;

struct MeterFont {
  std::string family = "Tahoma";
  float points = 8.25F;
};

// As the two forms hold them; the initial values are those of `frmMain`. Lengths are percents of
// the needle instrument's height, above its pivot.
struct VuMeterProperties {
  std::int32_t buffersizebytes = 128;  // 1 to 65536; samples in one frame
  std::int32_t samplespersec = 8000;   // Hz, 1000 to 192000
  std::int32_t numberofbuffers = 32;   // 1 to 256
  std::int16_t vustyle = 1;            // VuStyle
  std::int32_t backcolor = 0;
  std::int32_t forecolor = 0xFFFFC0;
  std::int16_t oledropmode = 1;      // 1: a drop raises the event; else none is taken
  std::int16_t vupulloffpixels = 1;  // 0 to 100; fall-back, in multiples of the standards' speed
  float scaleheight = 40.0F;         // size before anybody sizes it, pixels, from 1
  float scalewidth = 52.0F;
  float needlelengthproc = 75.0F;  // 10 to 100
  float scalanumbersproc = 85.0F;  // 10 to 100, middle of the numbers
  MeterFont scalanumbersfont;
  MeterFont emblemfont;

  std::int32_t RefreshRate = 25;  // milliseconds between frames, 1 to 1000; see kShortestFrame
  bool AutoRedraw = true;         // the surface is cleared before each frame
  std::int32_t PeakColor = 0xFFFFC0;
  // Lines, marks, numbers and emblem.
  std::array<std::int32_t, 4> ScaleColor = {0xFFFFC0, 0xFFFFC0, 0xFFFFC0, 0xFFFFC0};
};

// Those of `frmVumeter`.
VuMeterProperties WindowMeterProperties();

// Frames never come closer than this, in milliseconds: no screen shows more of them.
inline constexpr int kShortestFrame = 10;

class VuMeterView {
 public:
  virtual ~VuMeterView() = default;
  // The levels moved on, or with `Cancel` somebody else painted on the surface.
  virtual void ShowFrame(bool Cancel) = 0;
  virtual void PropertiesChanged() = 0;
};

class VuMeter {
 public:
  // All three outlive it, the view but for its own destructor. Fields out of range are as if unset.
  VuMeter(TimerSource& timers, AudioCapture& capture, VuMeterView& view,
          const VuMeterProperties& properties);
  VuMeter(const VuMeter&) = delete;
  VuMeter& operator=(const VuMeter&) = delete;
  ~VuMeter();

  // Before each repaint: the samples since the frame before (unsigned, 128 is silence), their
  // count, the highest distance from silence among them (0 to 128), and `Cancel`: true and the
  // control paints nothing of its own. The samples are the handler's to change. It may stop the
  // meter or end its life.
  std::function<void(std::vector<std::uint8_t>& Samples, std::int32_t& Count, std::int32_t Level,
                     bool& Cancel)>
      Frame;

  // Capture is on.
  bool Running() const { return running_; }

  // Starts capture with the properties of the moment. An empty text, or the reason why not. A meter
  // that runs goes on as it is.
  std::string Start();

  // The display stands as it is.
  void Stop();

  const VuMeterProperties& Properties() const { return properties_; }
  // Takes over what is in its range and keeps the old value of what is not. The three of the
  // capture count from the next start.
  void SetProperties(const VuMeterProperties& properties);

  // Shorthand for the properties that change alone. A style that is none is ignored.
  std::int16_t Style() const { return properties_.vustyle; }
  void SetStyle(int style);
  bool AutoRedraw() const { return properties_.AutoRedraw; }
  void SetAutoRedraw(bool on);

  // What the display of that style shows; the others stand still.
  const VuBars& Bars() const { return bars_; }
  const VuTrace& Trace() const { return trace_; }
  const VuNeedle& Needle() const { return needle_; }

 private:
  void Tick();
  // Silence of the time that passed, when nothing has come for a while.
  void FillWithSilence();
  void ResetLevels();

  TimerSource& timers_;
  AudioCapture& capture_;
  VuMeterView& view_;
  VuMeterProperties properties_;
  std::unique_ptr<Timer> timer_;
  bool running_ = false;
  CaptureFormat format_;  // in force
  TimerSource::TimePoint last_tick_;
  TimerSource::TimePoint last_sound_;
  std::vector<std::uint8_t> sound_;
  std::vector<std::uint8_t> samples_;
  VuBars bars_;
  VuTrace trace_;
  VuNeedle needle_;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace kv
