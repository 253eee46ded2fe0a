// What assistive tools see of a TextLine: what it is and the whole of its text, cut or not.
#pragma once

namespace kv {

// Tells the toolkit how to describe TextLine. Safe to call again. Interface thread.
void InstallTextLineAccessibility();

}  // namespace kv
