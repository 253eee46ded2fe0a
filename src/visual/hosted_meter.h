// A `VuMeter` control as its two forms drive it.
//
// hosted_meter_qt.h gives the widget this face, the tests a fake. Interface thread only.
#pragma once

#include "state/settings.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace kv {

class HostedMeter {
 public:
  virtual ~HostedMeter() = default;

  virtual bool Running() const = 0;
  // Empty, or the reason why there is no capture.
  virtual std::string Start() = 0;
  virtual void Stop() = 0;

  // 0 to kLastMeterStyle.
  virtual int Style() const = 0;
  virtual void SetStyle(int style) = 0;
  virtual bool AutoRedraw() const = 0;
  virtual void SetAutoRedraw(bool on) = 0;
  virtual bool Visible() const = 0;
  virtual void SetVisible(bool visible) = 0;

  // `AudioBufferSize`, `AudioBufferCount` and `AudioSampleRate`; they count from the next start.
  virtual void SetCapture(const Settings& settings) = 0;
  virtual void SetSampleRate(int hertz) = 0;
  virtual void SetRefreshRate(int rate) = 0;
  // Background, foreground with the scale, and peak, from the slots of the scheme.
  virtual void SetColors(const Settings& settings) = 0;

  // What a frame is painted on; asked for inside the frame alone.
  virtual std::int32_t SurfaceHandle1() = 0;
  virtual std::int32_t SurfaceHandle2() = 0;
  virtual float SurfaceWidth() const = 0;
  virtual float SurfaceHeight() const = 0;
};

inline constexpr int kLastMeterStyle = 2;

// Slots of the scheme.
inline constexpr std::size_t kMeterBackgroundSlot = 24;
inline constexpr std::size_t kMeterForegroundSlot = 25;
inline constexpr std::size_t kMeterPeakSlot = 26;

}  // namespace kv
