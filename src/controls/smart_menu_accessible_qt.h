// What assistive tools see of the entries of the player's menus: caption, keys and mark apart.
//
// The toolkit's own description takes the keys, which stand behind a tab, for a part of the
// caption. Counts for every menu that SmartMenuStyle draws.
#pragma once

namespace kv {

// Tells the toolkit how to describe the entries. Safe to call again. Interface thread.
void InstallMenuAccessibility();

}  // namespace kv
