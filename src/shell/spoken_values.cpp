#include "shell/spoken_values.h"

#include "shell/sliders.h"
#include "system/text_format.h"
#include "system/translation.h"

#include <cmath>
#include <cstdlib>

namespace kv {
namespace {

std::string Percent(double part, double whole) {
  return Fill(Tr("%1 %"), std::to_string(std::lrint(100.0 * part / whole)));
}

}  // namespace

std::string SpokenPosition(double seconds, double duration) {
  const std::string now = FormatTimeCode(seconds, false, 1);
  return duration > 0.0 ? Fill(Tr("%1 of %2"), now, FormatTimeCode(duration, false, 1)) : now;
}

std::string SpokenVolume(double volume) {
  return Percent(volume, kSliderDesign[1].max);
}

std::string SpokenRate(double rate) {
  return Percent(rate, kSliderDesign[2].max / 2);
}

std::string SpokenBalance(double balance) {
  const long steps = std::lrint(balance - kSliderDesign[3].max / 2);
  if (steps == 0) return Tr("Middle");
  return Fill(steps < 0 ? Tr("Left %1") : Tr("Right %1"), std::to_string(std::labs(steps)));
}

}  // namespace kv
