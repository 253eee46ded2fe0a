#include "engine/audio_levels.h"

#include <cmath>

namespace kv {

double GainOfVolume(int volume) {
  if (volume <= kSilence) return 0.0;
  return std::pow(10.0, volume / 2000.0);
}

ChannelGains GainsOfBalance(int balance) {
  if (balance > 0) return {GainOfVolume(-balance), 1.0};
  return {1.0, GainOfVolume(balance)};
}

}  // namespace kv
