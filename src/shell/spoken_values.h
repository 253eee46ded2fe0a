// The values of the four sliders as they are spoken to who cannot see them, with their units.
//
// Units of the arguments are those of sliders.h. Any thread.
#pragma once

#include <string>

namespace kv {

// "00:01:05 of 00:20:00", as the time strip has them; "00:01:05" in a medium without an end.
std::string SpokenPosition(double seconds, double duration);

// "50 %" of full volume.
std::string SpokenVolume(double volume);

// "125 %" of the true speed.
std::string SpokenRate(double rate);

// "Left 3", "Middle" or "Right 3", of 9 steps to each side.
std::string SpokenBalance(double balance);

}  // namespace kv
