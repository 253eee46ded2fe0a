#include "scope.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

using kestrelview::History;
using kestrelview::LineOf;
using kestrelview::Mix;
using kestrelview::VisualSurface;

namespace {

constexpr float kAfterglow = 0.11F;  // seconds until a third is left
constexpr float kFullGlow = 65535.0F;
constexpr float kBeam = 2.6F;       // lines a column that the beam spends its whole light on
constexpr float kThickness = 2.1F;  // units
constexpr float kMostGain = 6.0F;
constexpr float kGainRise = 1.5F;  // seconds, time constant
constexpr float kGainFall = 0.05F;
constexpr float kFill = 0.82F;  // of half the height for the loudest
constexpr int kDivisions = 8;   // of the graticule, down
constexpr double kGrid = 0.11;
constexpr double kAxis = 0.22;

const QSize kPreview(320, 180);

}  // namespace

void Oscilloscope::Phosphor::Resize(int width, int height) {
  if (width == width_ && height == height_) return;
  width_ = width;
  height_ = height;
  glow_.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 0);
}

void Oscilloscope::Phosphor::Decay(float seconds) {
  const auto keep = static_cast<std::uint32_t>(65536.0F * std::exp(-seconds / kAfterglow));
  for (std::uint16_t& glow : glow_) glow = static_cast<std::uint16_t>((glow * keep) >> 16U);
}

void Oscilloscope::Phosphor::Stroke(int x, float from, float to, float thickness) {
  const float top = std::min(from, to) - thickness / 2.0F;
  const float bottom = std::max(from, to) + thickness / 2.0F;
  // The further the beam has to go in a column, the less light it leaves on the way.
  const float path = std::max(bottom - top, thickness);
  const float light = std::clamp(kBeam * thickness / path, 0.16F, 1.0F);
  const int first = std::max(0, static_cast<int>(std::floor(top)));
  const int last = std::min(height_ - 1, static_cast<int>(std::floor(bottom)));
  for (int y = first; y <= last; ++y) {
    const auto line = static_cast<float>(y);
    const float covered = std::min(bottom, line + 1.0F) - std::max(top, line);
    std::uint16_t& glow = glow_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
                                static_cast<std::size_t>(x)];
    const float sum =
        static_cast<float>(glow) + kFullGlow * light * std::clamp(covered, 0.0F, 1.0F);
    glow = static_cast<std::uint16_t>(std::min(sum, kFullGlow));
  }
}

void Oscilloscope::Phosphor::Show(const VisualSurface& surface, const QColor& foreground,
                                  const QColor& background, const QColor& peak) const {
  // Colours by glow, for the bare screen and for its two kinds of lines.
  constexpr std::array kGrounds = {0.0, kGrid, kAxis};
  std::array<std::array<QRgb, 256>, kGrounds.size()> ramps{};
  for (std::size_t kind = 0; kind < ramps.size(); ++kind) {
    const QColor ground = Mix(background, foreground, kGrounds[kind]);
    for (int step = 0; step < 256; ++step) {
      const double share = std::pow(step / 255.0, 0.75);
      const QColor lit = Mix(foreground, peak, std::max(0.0, share - 0.8) * 0.6);
      ramps[kind][static_cast<std::size_t>(step)] =
          Mix(ground, Mix(lit, Qt::white, std::max(0.0, share - 0.85) * 2.0), share).rgb();
    }
  }
  const double cell = static_cast<double>(height_) / kDivisions;
  const int middle_x = width_ / 2;
  const int middle_y = height_ / 2;
  std::vector<std::uint8_t> column(static_cast<std::size_t>(width_));
  for (int step = 0; step * cell < middle_x; ++step) {
    const int away = static_cast<int>(std::lround(step * cell));
    const std::uint8_t kind = step == 0 ? 2 : 1;
    for (const int x : {middle_x - away, middle_x + away}) {
      if (x < width_) column[static_cast<std::size_t>(x)] = kind;
    }
  }
  std::vector<std::uint8_t> row(static_cast<std::size_t>(height_));
  for (int step = 0; step * cell < middle_y; ++step) {
    const int away = static_cast<int>(std::lround(step * cell));
    const std::uint8_t kind = step == 0 ? 2 : 1;
    for (const int y : {middle_y - away, middle_y + away}) {
      if (y < height_) row[static_cast<std::size_t>(y)] = kind;
    }
  }
  const std::uint16_t* glow = glow_.data();
  for (int y = 0; y < height_; ++y) {
    QRgb* const line = LineOf(surface, y);
    const std::uint8_t across = row[static_cast<std::size_t>(y)];
    for (int x = 0; x < width_; ++x, ++glow) {
      const std::uint8_t kind = std::max(across, column[static_cast<std::size_t>(x)]);
      line[x] = ramps[kind][*glow >> 8U];
    }
  }
}

// The first sample of the newest stretch that begins where the wave rises through zero, after it
// was clearly below, so that noise around zero does not count.
std::size_t Oscilloscope::Trigger(const History<kWindow>& history) {
  const std::size_t newest = kWindow - kShown - 1;
  float loudest = 0.0F;
  for (std::size_t index = 0; index < kWindow; ++index) {
    loudest = std::max(loudest, std::abs(history[index]));
  }
  for (std::size_t index = newest; index > 1; --index) {
    if (history[index - 1] >= 0.0F || history[index] < 0.0F) continue;
    for (std::size_t back = index - 1; back > 0 && history[back] < 0.0F; --back) {
      if (history[back] < -loudest * 0.3F) return index;
    }
  }
  return newest;
}

// Quiet sound is shown larger, slowly; loud sound never leaves the screen for long.
void Oscilloscope::Follow(float seconds) {
  float loudest = 1.0F / kMostGain;
  for (std::size_t index = 0; index < kWindow; ++index) {
    loudest = std::max(loudest, std::abs(history_[index]));
  }
  const float wanted = 1.0F / loudest;
  const float slowness = wanted > gain_ ? kGainRise : kGainFall;
  gain_ += (wanted - gain_) * (1.0F - std::exp(-seconds / slowness));
}

void Oscilloscope::Trace(Phosphor& phosphor, const History<kWindow>& history, float gain,
                         const VisualSurface& surface) {
  const std::size_t start = Trigger(history);
  const float rise = history[start] - history[start - 1];
  // Where between its two samples the wave goes through zero, or the trace would tremble.
  const float crossing = rise > 0.0F ? history[start] / rise : 0.0F;
  const float half = static_cast<float>(surface.height) / 2.0F;
  const auto at = [&](float position) {
    // Catmull-Rom: a curve through the samples without corners.
    const float place = std::max(1.0F, static_cast<float>(start) - crossing + position);
    const auto index = std::min(static_cast<std::size_t>(place), kWindow - 3);
    const float t = place - static_cast<float>(index);
    const float a = history[index - 1];
    const float b = history[index];
    const float c = history[index + 1];
    const float d = history[index + 2];
    const float value =
        b + 0.5F * t *
                (c - a + t * (2.0F * a - 5.0F * b + 4.0F * c - d + t * (3.0F * (b - c) + d - a)));
    return half - value * gain * half * kFill;
  };
  const float step = static_cast<float>(kShown - 2) / static_cast<float>(surface.width);
  const float thickness = kThickness * surface.scale;
  float from = at(0.0F);
  for (int x = 0; x < surface.width; ++x) {
    const float to = at(static_cast<float>(x + 1) * step);
    phosphor.Stroke(x, from, to, thickness);
    from = to;
  }
}

int Oscilloscope::GetVuMeter(QByteArray& samples, int& count, int surface1, int surface2,
                             float /*width*/, float /*height*/, int& foreground, int& background,
                             int& peak) {
  const VisualSurface& surface = *kestrelview::SurfaceOf(surface1, surface2);
  const float seconds = clock_.Step();
  history_.Add(samples, count);
  Follow(seconds);
  phosphor_.Resize(surface.width, surface.height);
  phosphor_.Decay(seconds);
  Trace(phosphor_, history_, gain_, surface);
  phosphor_.Show(surface, kestrelview::ColorOf(foreground, Qt::white),
                 kestrelview::ColorOf(background, Qt::black), kestrelview::ColorOf(peak, Qt::red));
  return 0;
}

QImage Oscilloscope::Preview() const {
  QImage image(kPreview, QImage::Format_RGB32);
  const VisualSurface surface = kestrelview::SurfaceOn(image);
  Phosphor phosphor;
  phosphor.Resize(surface.width, surface.height);
  for (const float age : {3.0F, 2.0F, 1.0F, 0.0F}) {
    QByteArray wave(static_cast<qsizetype>(kWindow), '\0');
    for (qsizetype index = 0; index < wave.size(); ++index) {
      const float turn = static_cast<float>(index) * std::numbers::pi_v<float> / 90.0F;
      const float value = std::sin(turn) * 0.7F + std::sin(3.0F * turn + age * 0.35F) * 0.3F;
      wave[index] = static_cast<char>(static_cast<int>(128.0F + 110.0F * value));
    }
    History<kWindow> history;
    history.Add(wave, static_cast<int>(wave.size()));
    phosphor.Decay(0.08F);
    Trace(phosphor, history, 1.0F, surface);
  }
  phosphor.Show(surface, QColor(0xC0, 0xFF, 0xFF), QColor(0x0B, 0x12, 0x1A),
                QColor(0xFF, 0x9A, 0x3C));
  return image;
}
