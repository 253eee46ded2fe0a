#include "spectrum.h"

#include <algorithm>
#include <cmath>

using kestrelview::LineOf;
using kestrelview::Mix;
using kestrelview::VisualSurface;

namespace {

constexpr float kFirstBin = 4.0F;  // 31 Hz at 8000 Hz
constexpr float kFloor = -60.0F;   // decibels at the bottom of a bar
constexpr float kTilt = 0.5F;      // music loses 3 dB an octave; bars should not
constexpr float kTiltFrom = 24.0F;
constexpr float kRise = 0.03F;  // seconds, time constant
constexpr float kFall = 0.9F;   // heights per second
constexpr float kHold = 0.5F;   // seconds
constexpr float kGravity = 2.2F;
constexpr float kPitch = 13.0F;  // width of a bar with its gap, units
constexpr std::size_t kFewest = 12;
constexpr std::size_t kMost = 96;
constexpr double kGround = 0.78;  // height of the line that the bars stand on
constexpr double kReflection = 0.26;

const QSize kPreview(320, 180);

void FillSpan(const VisualSurface& surface, int y, int left, int right, QRgb color) {
  if (y < 0 || y >= surface.height || left >= right) return;
  QRgb* const line = LineOf(surface, y);
  std::fill(line + std::clamp(left, 0, surface.width), line + std::clamp(right, 0, surface.width),
            color);
}

}  // namespace

int SpectrumAnalyser::GetVuMeter(QByteArray& samples, int& count, int surface1, int surface2,
                                 float width, float /*height*/, int& foreground, int& background,
                                 int& peak) {
  history_.Add(samples, count);
  spectrum_.Take(history_);
  const VisualSurface& surface = *kestrelview::SurfaceOf(surface1, surface2);
  bars_.resize(
      std::clamp(static_cast<std::size_t>(width / surface.scale / kPitch), kFewest, kMost));
  Follow(clock_.Step());
  Paint(surface,
        {kestrelview::ColorOf(foreground, Qt::white), kestrelview::ColorOf(background, Qt::black),
         kestrelview::ColorOf(peak, Qt::red)},
        bars_);
  return 0;
}

void SpectrumAnalyser::Follow(float seconds) {
  const auto bands = static_cast<float>(bars_.size());
  const float span = static_cast<float>(spectrum_.kBins - 1) / kFirstBin;
  for (std::size_t index = 0; index < bars_.size(); ++index) {
    const float low = kFirstBin * std::pow(span, static_cast<float>(index) / bands);
    const float high = kFirstBin * std::pow(span, static_cast<float>(index + 1) / bands);
    const float target = BandLevel(low, high);
    Bar& bar = bars_[index];
    bar.level = target > bar.level
                    ? bar.level + (target - bar.level) * (1.0F - std::exp(-seconds / kRise))
                    : std::max(target, bar.level - kFall * seconds);
    if (bar.level >= bar.peak) {
      bar.peak = bar.level;
      bar.hold = kHold;
      bar.speed = 0.0F;
    } else if (bar.hold > 0.0F) {
      bar.hold -= seconds;
    } else {
      bar.speed += kGravity * seconds;
      bar.peak = std::max(bar.level, bar.peak - bar.speed * seconds);
    }
  }
}

// Of the bins from `low` to `high`; between two bins where the band is narrower than one.
float SpectrumAnalyser::BandLevel(float low, float high) const {
  float amplitude = 0.0F;
  if (high - low < 1.5F) {
    const float middle = (low + high) / 2.0F;
    const auto bin = static_cast<std::size_t>(middle);
    const float share = middle - static_cast<float>(bin);
    amplitude = spectrum_.Amplitude(bin) * (1.0F - share) +
                spectrum_.Amplitude(std::min(bin + 1, spectrum_.kBins - 1)) * share;
  } else {
    amplitude =
        spectrum_.Loudest(static_cast<std::size_t>(low), static_cast<std::size_t>(high) + 1);
  }
  return kestrelview::HeightOf(amplitude * std::pow(low / kTiltFrom, kTilt), kFloor);
}

void SpectrumAnalyser::Paint(const VisualSurface& surface, const Colors& colors,
                             const std::vector<Bar>& bars) {
  const int ground = static_cast<int>(surface.height * kGround);
  const int depth = surface.height - ground;
  const int top = std::max(1, static_cast<int>(surface.height * 0.06));
  const int full = std::max(1, ground - top);
  const double pitch = static_cast<double>(surface.width) / (static_cast<double>(bars.size()) + 1);
  const int gap = std::max(1, static_cast<int>(pitch * 0.28));
  const int cap = std::max(1, static_cast<int>(std::lround(2.0F * surface.scale)));

  // One colour for each height, as the bars rise from the ground's colour to that of the peaks.
  std::vector<QRgb> ramp(static_cast<std::size_t>(full) + 1);
  for (int height = 0; height <= full; ++height) {
    const double share = static_cast<double>(height) / full;
    const QColor body = Mix(Mix(colors.background, colors.foreground, 0.45), colors.foreground,
                            std::min(1.0, share * 1.6));
    ramp[static_cast<std::size_t>(height)] =
        Mix(body, colors.peak, std::clamp((share - 0.62) * 2.0, 0.0, 0.85)).rgb();
  }
  // The reflection fades with the depth; only the colours near the ground are ever seen in it.
  std::vector<QRgb> mirror(static_cast<std::size_t>(std::max(depth, 0)));
  for (int row = 0; row < depth; ++row) {
    const double fade = kReflection * std::pow(1.0 - static_cast<double>(row) / depth, 1.7);
    mirror[static_cast<std::size_t>(row)] = Mix(colors.background, colors.foreground, fade).rgb();
  }

  for (int y = 0; y < surface.height; ++y) {
    FillSpan(surface, y, 0, surface.width, colors.background.rgb());
  }
  const QRgb rest = Mix(colors.background, colors.foreground, 0.28).rgb();
  for (std::size_t index = 0; index < bars.size(); ++index) {
    const int left =
        static_cast<int>(std::lround(pitch * (static_cast<double>(index) + 0.5))) + gap / 2;
    const int right =
        static_cast<int>(std::lround(pitch * (static_cast<double>(index) + 1.5))) - (gap - gap / 2);
    const int height = static_cast<int>(std::lround(bars[index].level * static_cast<float>(full)));
    for (int row = 0; row < height; ++row) {
      // The upper corners are cut.
      const int inset = row == height - 1 && right - left > 3 ? 1 : 0;
      FillSpan(surface, ground - 1 - row, left + inset, right - inset,
               ramp[static_cast<std::size_t>(row)]);
    }
    for (int row = 0; row < std::min(depth - cap, height); ++row) {
      FillSpan(surface, ground + cap + row, left, right, mirror[static_cast<std::size_t>(row)]);
    }
    FillSpan(surface, ground, left, right, rest);
    const int peak = static_cast<int>(std::lround(bars[index].peak * static_cast<float>(full)));
    if (peak <= 0) continue;
    for (int row = 0; row < cap; ++row) {
      FillSpan(surface, ground - 2 * cap - peak + row, left, right, colors.peak.rgb());
    }
  }
}

QImage SpectrumAnalyser::Preview() const {
  QImage image(kPreview, QImage::Format_RGB32);
  std::vector<Bar> bars(24);
  for (std::size_t index = 0; index < bars.size(); ++index) {
    const auto x = static_cast<float>(index);
    bars[index].level = std::clamp(
        0.86F - 0.022F * x + 0.17F * std::sin(x * 1.7F) * std::cos(x * 0.6F), 0.05F, 1.F);
    bars[index].peak = std::min(1.0F, bars[index].level + 0.05F + 0.05F * std::sin(x * 2.3F));
  }
  Paint(kestrelview::SurfaceOn(image),
        {QColor(0xC0, 0xFF, 0xFF), QColor(0x0B, 0x12, 0x1A), QColor(0xFF, 0x9A, 0x3C)}, bars);
  return image;
}
