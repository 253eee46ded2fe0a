#include "visual/vu_bars.h"

#include "visual/audio_capture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace kv {
namespace {

constexpr std::array kThirds = {50.0,   63.0,   80.0,    100.0,   125.0,   160.0,  200.0,
                                250.0,  315.0,  400.0,   500.0,   630.0,   800.0,  1000.0,
                                1250.0, 1600.0, 2000.0,  2500.0,  3150.0,  4000.0, 5000.0,
                                6300.0, 8000.0, 10000.0, 12500.0, 16000.0, 20000.0};

// Two filters of this quality in a row are 3 dB down a sixth of an octave from the middle.
constexpr double kQuality = 2.78;
// A band must end below half the sample rate.
constexpr double kHighestShare = 0.46;

constexpr double kAttackSeconds = 0.0013;
constexpr double kFallDecibelsPerSecond = 20.0 / 1.7;
constexpr double kPeakSeconds = 1.0;
constexpr double kSmallestAmplitude = 1e-5;  // kLowestLevel

double Decibels(double amplitude) {
  return 20.0 * std::log10(std::max(amplitude, kSmallestAmplitude));
}

}  // namespace

double VuBars::Filter::Pass(double sample) {
  const double out = gain * sample + state1;
  state1 = state2 - back1 * out;
  state2 = -gain * sample - back2 * out;
  return out;
}

// Numbers too small to be normal would cost a hundred times the processor time in silence.
void VuBars::Filter::Settle() {
  constexpr double kNothing = 1e-15;
  if (std::abs(state1) < kNothing) state1 = 0.0;
  if (std::abs(state2) < kNothing) state2 = 0.0;
}

// The bilinear band-pass whose gain is 1 in its middle.
VuBars::Filter VuBars::MakeFilter(double hertz, int samplespersec) {
  const double angle = 2.0 * std::numbers::pi * hertz / samplespersec;
  const double alpha = std::sin(angle) / (2.0 * kQuality);
  Filter filter;
  filter.gain = alpha / (1.0 + alpha);
  filter.back1 = -2.0 * std::cos(angle) / (1.0 + alpha);
  filter.back2 = (1.0 - alpha) / (1.0 + alpha);
  return filter;
}

void VuBars::Reset(int samplespersec) {
  samplespersec_ = samplespersec;
  attack_ = 1.0 - std::exp(-1.0 / (kAttackSeconds * samplespersec));
  bands_.clear();
  levels_.assign(1, BarLevel{});
  for (const double hertz : kThirds) {
    if (hertz > kHighestShare * samplespersec) break;
    const Filter filter = MakeFilter(hertz, samplespersec);
    bands_.push_back({filter, filter});
    levels_.push_back({.hertz = hertz});
  }
  programmes_.assign(levels_.size(), Programme{});
  SetFallBack(fall_back_);
}

void VuBars::SetFallBack(int times) {
  fall_back_ = times;
  decay_ = std::pow(10.0, -times * kFallDecibelsPerSecond / 20.0 / samplespersec_);
}

void VuBars::FeedBar(std::size_t index, std::span<const double> sound) {
  Programme& programme = programmes_[index];
  double amplitude = programme.amplitude;
  double highest = 0.0;
  for (const double sample : sound) {
    const double size = std::abs(sample);
    if (size > amplitude) {
      amplitude += (size - amplitude) * attack_;
      highest = std::max(highest, amplitude);
    } else {
      amplitude *= decay_;
    }
  }
  programme.amplitude = amplitude < kSmallestAmplitude ? 0.0 : amplitude;

  BarLevel& bar = levels_[index];
  bar.level = Decibels(programme.amplitude);
  const auto samples = static_cast<double>(sound.size());
  if (highest > 0.0 && Decibels(highest) >= bar.peak) {
    bar.peak = Decibels(highest);
    programme.peak_samples = kPeakSeconds * samplespersec_;
    return;
  }
  const double falling = std::max(0.0, samples - programme.peak_samples);
  programme.peak_samples = std::max(0.0, programme.peak_samples - samples);
  bar.peak -= falling / samplespersec_ * fall_back_ * kFallDecibelsPerSecond;
  bar.peak = std::max(bar.peak, bar.level);
}

void VuBars::Feed(std::span<const std::uint8_t> sound) {
  if (sound.empty()) return;
  sound_.resize(sound.size());
  band_sound_.resize(sound.size());
  std::transform(sound.begin(), sound.end(), sound_.begin(),
                 [](std::uint8_t sample) { return (sample - kSilentSample) / 128.0; });
  FeedBar(0, sound_);
  for (std::size_t i = 0; i < bands_.size(); ++i) {
    Band& band = bands_[i];
    std::transform(sound_.begin(), sound_.end(), band_sound_.begin(),
                   [&band](double sample) { return band.second.Pass(band.first.Pass(sample)); });
    band.first.Settle();
    band.second.Settle();
    FeedBar(i + 1, band_sound_);
  }
}

}  // namespace kv
