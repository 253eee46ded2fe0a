#include "view/key_codes_qt.h"

#include "view/key_table.h"

#include <QGuiApplication>

#include <array>
#include <string_view>

namespace kv {
namespace {

struct NamedKey {
  int key;
  std::int16_t code;
};

constexpr std::array kNamedKeys = {
    NamedKey{Qt::Key_Backspace, kKeyBackspace},
    NamedKey{Qt::Key_Return, kKeyEnter},
    NamedKey{Qt::Key_Enter, kKeyEnter},
    NamedKey{Qt::Key_Shift, kKeyShift},
    NamedKey{Qt::Key_Control, kKeyCtrl},
    NamedKey{Qt::Key_Escape, kKeyEsc},
    NamedKey{Qt::Key_Space, kKeySpace},
    NamedKey{Qt::Key_PageUp, kKeyPageUp},
    NamedKey{Qt::Key_PageDown, kKeyPageDown},
    NamedKey{Qt::Key_End, kKeyEnd},
    NamedKey{Qt::Key_Home, kKeyHome},
    NamedKey{Qt::Key_Left, kKeyLeft},
    NamedKey{Qt::Key_Right, kKeyRight},
    NamedKey{Qt::Key_Delete, kKeyDelete},
    NamedKey{Qt::Key_F1, kKeyF1},
    NamedKey{Qt::Key_F12, kKeyF12},
    NamedKey{Qt::Key_Plus, kKeypadAdd},
    NamedKey{Qt::Key_Minus, kKeypadSubtract},
};

// Runs of keys side by side, by the scan code of the first: evdev's codes and 8, which X11 and
// Wayland share.
struct KeyRun {
  quint32 first;
  std::string_view keys;
};
constexpr std::array kUsKeyboard = {KeyRun{10, "1234567890"}, KeyRun{24, "QWERTYUIOP"},
                                    KeyRun{38, "ASDFGHJKL"}, KeyRun{52, "ZXCVBNM"}};

bool HasEvdevCodes() {
  const QString platform = QGuiApplication::platformName();
  return platform == QLatin1String("xcb") || platform.startsWith(QLatin1String("wayland"));
}

std::int16_t CodeByPlace(quint32 scan_code) {
  for (const KeyRun& run : kUsKeyboard) {
    if (scan_code >= run.first && scan_code - run.first < run.keys.size()) {
      return static_cast<std::int16_t>(run.keys[scan_code - run.first]);
    }
  }
  return 0;
}

std::int16_t CodeOf(const QKeyEvent& event) {
  const int key = event.key();
  if ((key >= Qt::Key_A && key <= Qt::Key_Z) || (key >= Qt::Key_0 && key <= Qt::Key_9)) {
    return static_cast<std::int16_t>(key);
  }
  for (const NamedKey& named : kNamedKeys) {
    if (named.key == key) return named.code;
  }
  return HasEvdevCodes() ? CodeByPlace(event.nativeScanCode()) : std::int16_t{0};
}

}  // namespace

KeyStroke KeyStrokeOf(const QKeyEvent& event) {
  KeyStroke stroke;
  stroke.key_code = CodeOf(event);
  Qt::KeyboardModifiers held = event.modifiers();
  const bool keypad = held.testFlag(Qt::KeypadModifier);
  if (event.key() == Qt::Key_Plus && !keypad) held.setFlag(Qt::ShiftModifier, false);
  // The toolkit tells the modifiers as they are after the event.
  if (event.key() == Qt::Key_Shift) held.setFlag(Qt::ShiftModifier, false);
  if (event.key() == Qt::Key_Control) held.setFlag(Qt::ControlModifier, false);
  int shift = 0;
  if (held.testFlag(Qt::ShiftModifier)) shift |= kShiftKey;
  if (held.testFlag(Qt::ControlModifier)) shift |= kCtrlKey;
  if (held.testFlag(Qt::AltModifier)) shift |= kAltKey;
  if (held.testFlag(Qt::MetaModifier)) shift |= kOtherModifier;
  stroke.shift = static_cast<std::int16_t>(shift);
  return stroke;
}

}  // namespace kv
