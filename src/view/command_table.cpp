#include "view/command_table.h"

namespace kv {
namespace {

struct KeyName {
  std::int16_t code;
  std::string_view name;
};

// Letters and digits name themselves.
constexpr std::array kKeyNames = {
    KeyName{kKeyBackspace, "Backspace"},
    KeyName{kKeyEnter, "Enter"},
    KeyName{kKeyEsc, "Esc"},
    KeyName{kKeySpace, "Space"},
    KeyName{kKeyPageUp, "Page Up"},
    KeyName{kKeyPageDown, "Page Down"},
    KeyName{kKeyEnd, "End"},
    KeyName{kKeyHome, "Home"},
    KeyName{kKeyF1, "F1"},
};

std::string NameOfKey(std::int16_t code) {
  for (const KeyName& key : kKeyNames) {
    if (key.code == code) return std::string(key.name);
  }
  return std::string(1, static_cast<char>(code));
}

}  // namespace

std::string AcceleratorText(std::int16_t shift, std::int16_t key_code) {
  if (key_code == 0) return {};
  std::string text;
  if ((shift & kCtrlKey) != 0) text += "Ctrl+";
  if ((shift & kShiftKey) != 0) text += "Shift+";
  if ((shift & kAltKey) != 0) text += "Alt+";
  return text + NameOfKey(key_code);
}

}  // namespace kv
