// What assistive tools see of the level meter: a level, in the units of the display in use.
#pragma once

namespace kv {

// Tells the toolkit how to describe VuMeterWidget. Safe to call again. Interface thread.
void InstallMeterAccessibility();

}  // namespace kv
