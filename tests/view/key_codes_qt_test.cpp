// Which numbers the keys of real keyboards become.
#include "view/key_codes_qt.h"

#include "view/key_table.h"

#include <gtest/gtest.h>

namespace kv {
namespace {

TEST(KeyCodesTest, NumbersKeysAndModifiers) {
  using Held = Qt::KeyboardModifiers;
  const Held none = Qt::NoModifier;
  const Held shift = Qt::ShiftModifier;
  const Held ctrl = Qt::ControlModifier;
  const Held keypad = Qt::KeypadModifier;
  const struct {
    int key;
    Held held;
    std::int16_t code, mask;
  } rows[] = {
      {Qt::Key_Enter, keypad | Qt::AltModifier, 13, 4},
      {Qt::Key_Z, ctrl | shift, 90, 3},
      {Qt::Key_2, keypad, 50, 0},
      {Qt::Key_Left, keypad | ctrl, 37, 2},
      {Qt::Key_Plus, keypad | shift, 107, 1},
      {Qt::Key_Plus, shift, 107, 0},  // a layout that has "+" above "="
      {Qt::Key_Minus, keypad | ctrl, 109, 2},
      {Qt::Key_P, Qt::MetaModifier, 80, 8},
      {Qt::Key_Tab, none, 0, 0},
      // A modifier that goes down does not count itself, whether or not the toolkit does.
      {Qt::Key_Shift, none, kKeyShift, 0},
      {Qt::Key_Shift, shift, kKeyShift, 0},
      {Qt::Key_Control, shift, kKeyCtrl, kShiftKey},
      {0x0424, none, 0, 0},  // Cyrillic, and no keyboard to look at
  };
  for (const auto& row : rows) {
    const KeyStroke stroke = KeyStrokeOf(QKeyEvent(QEvent::KeyPress, row.key, row.held));
    EXPECT_EQ(stroke.key_code, row.code) << row.key;
    EXPECT_EQ(stroke.shift, row.mask) << row.key << " with " << row.held.toInt();
  }
}

}  // namespace
}  // namespace kv
