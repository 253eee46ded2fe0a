// The toolkit's key events as the numbers of key_table.h. Interface thread.
#pragma once

#include <QKeyEvent>

#include <cstdint>

namespace kv {

struct KeyStroke {
  std::int16_t key_code = 0;  // 0: a key that means nothing here
  std::int16_t shift = 0;     // modifiers, without the key's own
};

// A key is what its layout writes on it. Where that is no Latin letter or digit (Greek, Cyrillic;
// the digits of a French keyboard), it is the letter or digit that stands in its place on a US
// keyboard. "+" and "-" count as those of the numeric keypad wherever they are; a Shift that is
// needed to write "+" is no modifier.
KeyStroke KeyStrokeOf(const QKeyEvent& event);

}  // namespace kv
