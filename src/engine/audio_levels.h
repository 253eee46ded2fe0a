// From the units of `IBasicAudio` (hundredths of a decibel) to amplitude factors.
#pragma once

namespace kv {

inline constexpr int kSilence = -10000;  // hundredths of a decibel
inline constexpr int kFullVolume = 0;    // hundredths of a decibel
inline constexpr int kBalanceLimit = 10000;

// The factor that a volume multiplies each sample with: 1.0 at 0, 0.0 at -10000, a power of ten
// between (-2000 is 0.1).
double GainOfVolume(int volume);

struct ChannelGains {
  double left = 1.0;
  double right = 1.0;
};

// A balance above 0 attenuates the left channel by that many hundredths of a decibel, one below 0
// the right; at either limit that channel is silent.
ChannelGains GainsOfBalance(int balance);

}  // namespace kv
