// What a virtual-key code is called by the desktops here: the X11 keysym and its name in
// xkbcommon-keysyms.h, which the desktop portal takes too. Any thread.
#pragma once

#include <cstdint>
#include <string>

namespace kv {

struct KeySymbol {
  std::uint32_t keysym = 0;  // 0: no such key
  std::string name;
};

// Letters, digits, F1 to F24, keypad, editing, media and browser keys, and the signs of a US
// keyboard.
KeySymbol KeySymbolOf(int VirtualKey);

}  // namespace kv
