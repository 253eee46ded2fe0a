// Makes the desktop show the right icons after file associations have changed.
#pragma once

namespace kv {

// Tells the desktops that ask to be told: KDE's icon views read their icons anew, and its cache of
// associations is rebuilt. Others watch the files themselves. Returns at once and fails silently.
// Interface thread only.
void RefreshDesktopIcons();

}  // namespace kv
