// The levels behind the bars: the whole sound, and its thirds of an octave beside it.
//
// Each bar is a peak programme meter of type I after IEC 60268-10: a tone burst of 10 ms reads 1
// dB, one of 5 ms 2 dB, one of 3 ms 4 dB and one of 0.4 ms 15 dB low, and the level falls back by
// 20 dB in 1.7 s. The highest level of each stands for a second, then falls back as fast. The bands
// lie at the nominal frequencies of IEC 61260-1. Levels are decibels of full scale, which a sine of
// full amplitude reads as 0. Owned by `VuMeter`; interface thread.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace kv {

inline constexpr double kLowestLevel = -100.0;  // decibels; silence

struct BarLevel {
  double hertz = 0.0;  // middle of the band, 0 for the whole sound
  double level = kLowestLevel;
  double peak = kLowestLevel;
};

class VuBars {
 public:
  // All silent, for sound of `samplespersec`: the more of it, the more bands.
  void Reset(int samplespersec);

  // How many times as fast as the standard says the bars fall back; 0 and they stand.
  void SetFallBack(int times);

  // 8-bit samples as `AudioCapture` gives them.
  void Feed(std::span<const std::uint8_t> sound);

  // The whole sound first, then the bands from the lowest up.
  const std::vector<BarLevel>& Levels() const { return levels_; }

 private:
  // A band-pass of the second order; two in a row make one band.
  struct Filter {
    double gain = 0.0;
    double back1 = 0.0;
    double back2 = 0.0;
    double state1 = 0.0;
    double state2 = 0.0;
    double Pass(double sample);
    void Settle();
  };
  struct Band {
    Filter first;
    Filter second;
  };
  struct Programme {
    double amplitude = 0.0;
    double peak_samples = 0.0;  // how long the peak still stands
  };

  static Filter MakeFilter(double hertz, int samplespersec);
  void FeedBar(std::size_t index, std::span<const double> sound);

  int samplespersec_ = 8000;
  int fall_back_ = 1;
  double attack_ = 0.0;
  double decay_ = 1.0;
  std::vector<Band> bands_;
  std::vector<Programme> programmes_;
  std::vector<BarLevel> levels_;
  std::vector<double> sound_;
  std::vector<double> band_sound_;
};

}  // namespace kv
