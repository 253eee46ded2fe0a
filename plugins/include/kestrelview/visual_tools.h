// Things that most visualisations want: the sound of the last moments, its spectrum, the time since
// the last frame, mixed colours, a place for settings. Optional, and all of it in this header.
//
// Interface thread, like the plug-ins themselves.
#pragma once

#include <QByteArray>
#include <QColor>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QString>
#include <QVariant>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <complex>
#include <cstddef>
#include <cstdint>
#include <numbers>

namespace kestrelview {

// The newest `kLength` samples, -1.0 to 1.0, over as many frames as it takes.
template <std::size_t kLength>
class History {
 public:
  // Takes the first `count` bytes of a frame.
  void Add(const QByteArray& samples, int count) {
    const int used = std::clamp(count, 0, static_cast<int>(samples.size()));
    for (int index = 0; index < used; ++index) {
      const auto byte = static_cast<std::uint8_t>(samples[index]);
      ring_[next_] = (static_cast<float>(byte) - 128.0F) / 128.0F;
      next_ = (next_ + 1) % kLength;
    }
  }

  // Sample `index` of the window, 0 the oldest.
  float operator[](std::size_t index) const { return ring_[(next_ + index) % kLength]; }
  static constexpr std::size_t Size() { return kLength; }

 private:
  std::array<float, kLength> ring_{};
  std::size_t next_ = 0;
};

// The spectrum of a history: a Hann window and a radix-2 transform (Cooley and Tukey).
template <std::size_t kLength>
class Spectrum {
  static_assert(kLength >= 4 && (kLength & (kLength - 1)) == 0, "a power of two");

 public:
  static constexpr std::size_t kBins = kLength / 2;

  Spectrum() {
    for (std::size_t index = 0; index < kLength; ++index) {
      const double turn = 2.0 * std::numbers::pi * static_cast<double>(index) / kLength;
      window_[index] = static_cast<float>(0.5 - 0.5 * std::cos(turn));
      if (index < kBins) {
        twiddle_[index] = {static_cast<float>(std::cos(turn)), static_cast<float>(-std::sin(turn))};
      }
    }
  }

  // Afterwards Amplitude() tells of `history`.
  void Take(const History<kLength>& history) {
    float mean = 0.0F;
    for (std::size_t index = 0; index < kLength; ++index) mean += history[index] / kLength;
    for (std::size_t index = 0, mirrored = 0; index < kLength; ++index) {
      work_[mirrored] = {(history[index] - mean) * window_[index], 0.0F};
      std::size_t bit = kLength / 2;
      while (bit != 0 && (mirrored & bit) != 0) {
        mirrored ^= bit;
        bit /= 2;
      }
      mirrored |= bit;
    }
    for (std::size_t half = 1; half < kLength; half *= 2) {
      for (std::size_t first = 0; first < kLength; first += 2 * half) {
        for (std::size_t k = 0; k < half; ++k) {
          const std::complex<float> odd =
              Times(work_[first + k + half], twiddle_[k * (kBins / half)]);
          work_[first + k + half] = work_[first + k] - odd;
          work_[first + k] += odd;
        }
      }
    }
  }

  // Of the tone in `bin` (0 to kBins - 1): 1.0 for a sine as loud as can be. Bin k stands for
  // k / kLength of the sample rate.
  float Amplitude(std::size_t bin) const {
    const std::complex<float> value = work_[bin];
    return std::sqrt(value.real() * value.real() + value.imag() * value.imag()) * 4.0F / kLength;
  }

  // The loudest of the bins from `begin` up to but without `end`.
  float Loudest(std::size_t begin, std::size_t end) const {
    float best = 0.0F;
    for (std::size_t bin = begin; bin < std::min(end, kBins); ++bin) {
      best = std::max(best, Amplitude(bin));
    }
    return best;
  }

 private:
  // Without the standard's care for infinities, which costs most of the time.
  static std::complex<float> Times(std::complex<float> a, std::complex<float> b) {
    return {a.real() * b.real() - a.imag() * b.imag(), a.real() * b.imag() + a.imag() * b.real()};
  }

  std::array<float, kLength> window_{};
  std::array<std::complex<float>, kBins> twiddle_{};
  std::array<std::complex<float>, kLength> work_{};
};

// An amplitude as a height of 0.0 to 1.0: decibels, `floor` (below 0) and quieter at the bottom.
inline float HeightOf(float amplitude, float floor) {
  if (amplitude <= 0.0F) return 0.0F;
  return std::clamp(1.0F - 20.0F * std::log10(amplitude) / floor, 0.0F, 1.0F);
}

// How much time a frame is worth, so that movement does not depend on how often frames come.
class FrameClock {
 public:
  // Seconds since the last call, at most a tenth, and a fortieth the first time.
  float Step() {
    const auto now = std::chrono::steady_clock::now();
    const std::chrono::duration<float> passed = now - last_;
    const bool first = last_ == std::chrono::steady_clock::time_point();
    last_ = now;
    return first ? 0.025F : std::clamp(passed.count(), 0.001F, 0.1F);
  }

 private:
  std::chrono::steady_clock::time_point last_;
};

// `from` moved towards `to` by `share`, 0.0 to 1.0.
inline QColor Mix(const QColor& from, const QColor& to, double share) {
  const auto between = [share](int first, int second) {
    return std::clamp(static_cast<int>(std::lround(first + (second - first) * share)), 0, 255);
  };
  return {between(from.red(), to.red()), between(from.green(), to.green()),
          between(from.blue(), to.blue())};
}

// The file in which a plug-in keeps its settings, for QSettings in its INI format: "`name`.ini" in
// the folder "plugins" of the program folder. Empty outside the player: keep nothing then.
inline QString SettingsFile(const QString& name) {
  const QString folder = QCoreApplication::instance()->property("kestrelviewFolder").toString();
  if (folder.isEmpty()) return {};
  const QDir plugins(folder + QStringLiteral("/plugins"));
  // The player loads plug-ins from there, so nobody else may put any in.
  constexpr auto kPrivate = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
  const bool there = plugins.exists() || QDir().mkdir(plugins.path(), kPrivate);
  return there ? plugins.filePath(name + QStringLiteral(".ini")) : QString();
}

}  // namespace kestrelview
