#include "system/key_symbols.h"

#include <array>
#include <string_view>

namespace kv {
namespace {

struct KeyRow {
  int virtual_key;
  std::uint32_t keysym;
  std::string_view name;
};

constexpr std::array kKeys = {
    KeyRow{0x03, 0xFF6B, "Break"},
    KeyRow{0x08, 0xFF08, "BackSpace"},
    KeyRow{0x09, 0xFF09, "Tab"},
    KeyRow{0x0D, 0xFF0D, "Return"},
    KeyRow{0x13, 0xFF13, "Pause"},
    KeyRow{0x14, 0xFFE5, "Caps_Lock"},
    KeyRow{0x1B, 0xFF1B, "Escape"},
    KeyRow{0x20, 0x0020, "space"},
    KeyRow{0x21, 0xFF55, "Prior"},
    KeyRow{0x22, 0xFF56, "Next"},
    KeyRow{0x23, 0xFF57, "End"},
    KeyRow{0x24, 0xFF50, "Home"},
    KeyRow{0x25, 0xFF51, "Left"},
    KeyRow{0x26, 0xFF52, "Up"},
    KeyRow{0x27, 0xFF53, "Right"},
    KeyRow{0x28, 0xFF54, "Down"},
    KeyRow{0x2C, 0xFF61, "Print"},
    KeyRow{0x2D, 0xFF63, "Insert"},
    KeyRow{0x2E, 0xFFFF, "Delete"},
    KeyRow{0x5D, 0xFF67, "Menu"},
    KeyRow{0x5F, 0x1008FF2F, "XF86Sleep"},
    KeyRow{0x6A, 0xFFAA, "KP_Multiply"},
    KeyRow{0x6B, 0xFFAB, "KP_Add"},
    KeyRow{0x6C, 0xFFAC, "KP_Separator"},
    KeyRow{0x6D, 0xFFAD, "KP_Subtract"},
    KeyRow{0x6E, 0xFFAE, "KP_Decimal"},
    KeyRow{0x6F, 0xFFAF, "KP_Divide"},
    KeyRow{0x90, 0xFF7F, "Num_Lock"},
    KeyRow{0x91, 0xFF14, "Scroll_Lock"},
    KeyRow{0xA6, 0x1008FF26, "XF86Back"},
    KeyRow{0xA7, 0x1008FF27, "XF86Forward"},
    KeyRow{0xA8, 0x1008FF29, "XF86Refresh"},
    KeyRow{0xA9, 0x1008FF28, "XF86Stop"},
    KeyRow{0xAA, 0x1008FF1B, "XF86Search"},
    KeyRow{0xAB, 0x1008FF30, "XF86Favorites"},
    KeyRow{0xAC, 0x1008FF18, "XF86HomePage"},
    KeyRow{0xAD, 0x1008FF12, "XF86AudioMute"},
    KeyRow{0xAE, 0x1008FF11, "XF86AudioLowerVolume"},
    KeyRow{0xAF, 0x1008FF13, "XF86AudioRaiseVolume"},
    KeyRow{0xB0, 0x1008FF17, "XF86AudioNext"},
    KeyRow{0xB1, 0x1008FF16, "XF86AudioPrev"},
    KeyRow{0xB2, 0x1008FF15, "XF86AudioStop"},
    KeyRow{0xB3, 0x1008FF14, "XF86AudioPlay"},
    KeyRow{0xB4, 0x1008FF19, "XF86Mail"},
    KeyRow{0xB5, 0x1008FF32, "XF86AudioMedia"},
    KeyRow{0xBA, 0x003B, "semicolon"},
    KeyRow{0xBB, 0x003D, "equal"},
    KeyRow{0xBC, 0x002C, "comma"},
    KeyRow{0xBD, 0x002D, "minus"},
    KeyRow{0xBE, 0x002E, "period"},
    KeyRow{0xBF, 0x002F, "slash"},
    KeyRow{0xC0, 0x0060, "grave"},
    KeyRow{0xDB, 0x005B, "bracketleft"},
    KeyRow{0xDC, 0x005C, "backslash"},
    KeyRow{0xDD, 0x005D, "bracketright"},
    KeyRow{0xDE, 0x0027, "apostrophe"},
    KeyRow{0xE2, 0x003C, "less"},
};

constexpr int kF1 = 0x70;
constexpr int kF24 = 0x87;
constexpr int kNumpad0 = 0x60;
constexpr int kNumpad9 = 0x69;
constexpr std::uint32_t kKeysymF1 = 0xFFBE;
constexpr std::uint32_t kKeysymKp0 = 0xFFB0;

}  // namespace

KeySymbol KeySymbolOf(int VirtualKey) {
  if ((VirtualKey >= 'A' && VirtualKey <= 'Z') || (VirtualKey >= '0' && VirtualKey <= '9')) {
    const int lower = VirtualKey >= 'A' ? VirtualKey - 'A' + 'a' : VirtualKey;
    return {static_cast<std::uint32_t>(lower), std::string(1, static_cast<char>(lower))};
  }
  if (VirtualKey >= kF1 && VirtualKey <= kF24) {
    const int number = VirtualKey - kF1;
    return {kKeysymF1 + static_cast<std::uint32_t>(number), "F" + std::to_string(number + 1)};
  }
  if (VirtualKey >= kNumpad0 && VirtualKey <= kNumpad9) {
    const int number = VirtualKey - kNumpad0;
    return {kKeysymKp0 + static_cast<std::uint32_t>(number), "KP_" + std::to_string(number)};
  }
  for (const KeyRow& row : kKeys) {
    if (row.virtual_key == VirtualKey) return {row.keysym, std::string(row.name)};
  }
  return {};
}

}  // namespace kv
