// What assistive tools see of a Scroller: a slider with a name, a range and a value to set.
#pragma once

namespace kv {

// Tells the toolkit how to describe Scroller widgets. Safe to call again. Interface thread.
void InstallScrollerAccessibility();

}  // namespace kv
