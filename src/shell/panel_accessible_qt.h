// What assistive tools see of the main window's own widgets: labels, time strip, status strip,
// logo and movie.
#pragma once

namespace kv {

// Tells the toolkit how to describe them. Safe to call again. Interface thread.
void InstallPanelAccessibility();

}  // namespace kv
