#include "view/command_table.h"

#include "system/translation.h"

namespace kv {
namespace {

struct KeyName {
  std::int16_t code;
  std::string_view name;
};

// Letters and digits name themselves.
constexpr std::array kKeyNames = {
    KeyName{kKeyBackspace, TrLater("Backspace")},
    KeyName{kKeyEnter, TrLater("Enter")},
    KeyName{kKeyEsc, TrLater("Esc")},
    KeyName{kKeySpace, TrLater("Space")},
    KeyName{kKeyPageUp, TrLater("Page Up")},
    KeyName{kKeyPageDown, TrLater("Page Down")},
    KeyName{kKeyEnd, TrLater("End")},
    KeyName{kKeyHome, TrLater("Home")},
    KeyName{kKeyF1, "F1"},
};

std::string NameOfKey(std::int16_t code) {
  for (const KeyName& key : kKeyNames) {
    if (key.code == code) return std::string(Tr(key.name));
  }
  return std::string(1, static_cast<char>(code));
}

}  // namespace

std::string AcceleratorText(std::int16_t shift, std::int16_t key_code) {
  if (key_code == 0) return {};
  std::string text;
  if ((shift & kCtrlKey) != 0) text += Tr("Ctrl+");
  if ((shift & kShiftKey) != 0) text += Tr("Shift+");
  if ((shift & kAltKey) != 0) text += Tr("Alt+");
  return text + NameOfKey(key_code);
}

}  // namespace kv
