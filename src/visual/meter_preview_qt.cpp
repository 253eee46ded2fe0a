#include "visual/meter_preview_qt.h"

#include "controls/color_qt.h"
#include "visual/hosted_meter.h"
#include "visual/vu_meter.h"
#include "visual/vu_styles_qt.h"

#include <QPainter>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <functional>
#include <memory>
#include <numbers>
#include <utility>

namespace kv {
namespace {

constexpr int kFrames = 40;
constexpr int kFrameMilliseconds = 25;
constexpr int kRate = 11025;

// Time that goes by only when it is told to.
class Metronome : public TimerSource {
 public:
  std::unique_ptr<Timer> MakeTimer(TimerKind /*kind*/, int interval_milliseconds,
                                   std::function<void()> on_fire) override {
    on_fire_ = std::move(on_fire);
    return std::make_unique<Tooth>(interval_milliseconds);
  }
  TimePoint Now() const override { return now_; }
  void Beat() {
    now_ += std::chrono::milliseconds(kFrameMilliseconds);
    on_fire_();
  }

 private:
  class Tooth : public Timer {
   public:
    explicit Tooth(int interval) : interval_(interval) {}
    void SetEnabled(bool enabled) override { enabled_ = enabled; }
    bool Enabled() const override { return enabled_; }
    void SetInterval(int milliseconds) override { interval_ = milliseconds; }
    int Interval() const override { return interval_; }

   private:
    int interval_;
    bool enabled_ = false;
  };

  std::function<void()> on_fire_;
  TimePoint now_;
};

class Chord : public AudioCapture {
 public:
  std::string Start(const CaptureFormat& /*format*/) override { return {}; }
  void Stop() override {}
  void Take(std::vector<std::uint8_t>& sound) override {
    sound.resize(static_cast<std::size_t>(kRate * kFrameMilliseconds / 1000));
    for (std::uint8_t& sample : sound) {
      const double turn = 2.0 * std::numbers::pi * 110.0 * position_++ / kRate;
      const double value =
          0.30 * std::sin(turn) + 0.20 * std::sin(turn * 1.5) + 0.12 * std::sin(turn * 4.0);
      sample = static_cast<std::uint8_t>(std::lround(kSilentSample + 100.0 * value));
    }
  }

 private:
  int position_ = 0;
};

class NoView : public VuMeterView {
 public:
  void ShowFrame(bool /*Cancel*/) override {}
  void PropertiesChanged() override {}
};

}  // namespace

QImage MeterPreview(const Settings& settings, const QPalette& palette, QSize size, double scale) {
  VuMeterProperties properties;
  properties.vustyle =
      static_cast<std::int16_t>(std::clamp(settings.VuMeterStyle, 0, kLastMeterStyle));
  properties.samplespersec = kRate;
  Metronome time;
  Chord chord;
  NoView view;
  VuMeter meter(time, chord, view, properties);
  meter.Start();

  const QColor ink = ToQColor(settings.Colors[kMeterForegroundSlot], palette);
  VuLook look;
  look.back = ToQColor(settings.Colors[kMeterBackgroundSlot], palette);
  look.peak = ToQColor(settings.Colors[kMeterPeakSlot], palette);
  look.fore = look.lines = look.marks = look.numbers = look.emblem = ink;
  look.needle_length = properties.needlelengthproc / 100.0;
  look.numbers_distance = properties.scalanumbersproc / 100.0;
  look.size = size * scale;
  look.scale = scale;
  const std::unique_ptr<VuStylePainter> style =
      MakeVuStylePainter(static_cast<VuStyle>(properties.vustyle));
  style->SetLook(look);
  for (int frame = 0; frame < kFrames; ++frame) {
    time.Beat();
    style->Update(meter);
  }
  QImage image = BlankPicture(look);
  QPainter painter(&image);
  style->Paint(painter);
  painter.end();
  image.setDevicePixelRatio(scale);
  return image;
}

}  // namespace kv
