// The keyboard of the main window, as one table: modifiers, key, what it does.
//
// Keys are numbered as virtual codes, the same for every keyboard: a letter by its capital, a digit
// by its character. Modifiers are the masks of scroller_model.h and compared whole, so that a key
// with a modifier that no row names does nothing. Constant; any thread.
#pragma once

#include "controls/scroller_model.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace kv {

// A modifier beside Shift, Ctrl and Alt: no row has it.
inline constexpr std::int16_t kOtherModifier = 8;

inline constexpr std::int16_t kKeyBackspace = 8;
inline constexpr std::int16_t kKeyEnter = 13;
inline constexpr std::int16_t kKeyShift = 16;
inline constexpr std::int16_t kKeyCtrl = 17;
inline constexpr std::int16_t kKeyEsc = 27;
inline constexpr std::int16_t kKeySpace = 32;
inline constexpr std::int16_t kKeyPageUp = 33;
inline constexpr std::int16_t kKeyPageDown = 34;
inline constexpr std::int16_t kKeyEnd = 35;
inline constexpr std::int16_t kKeyHome = 36;
inline constexpr std::int16_t kKeyLeft = 37;
inline constexpr std::int16_t kKeyRight = 39;
inline constexpr std::int16_t kKeyDelete = 46;
inline constexpr std::int16_t kKeyF1 = 112;
inline constexpr std::int16_t kKeyF12 = 123;

// `amount` of a row means what its action says.
enum class KeyAction {
  kItem,      // the menu command `item`
  kFlipItem,  // flips the check mark of `item`, then the command
  kGoToMark,  // 1: A or the resume position, 2: B or the resume end
  kShiftDown,
  kCtrlDown,
  kVolume,      // steps of the volume slider
  kZoom,        // factor or code of `ScaleWindow`
  kSeek,        // seconds
  kSeekFrames,  // pictures
  kRate,        // steps of the rate slider
  kNormalRate,
  kPopUpMenu,
  kDeleteFile,
  kReleaseResume,
  kShowColors,
  kDemoMode,
  kQuickSearch,
  kConfigPlugin,
  kMeterStyle,
  kFullScreen,
  kShowPlugins,
};

struct KeyRow {
  std::int16_t shift = 0;
  std::int16_t key_code = 0;
  KeyAction action = KeyAction::kItem;
  double amount = 0.0;
  std::string_view item = {};
};

std::span<const KeyRow> KeyTable();

// The row of a key with exactly these modifiers; null when there is none.
const KeyRow* FindKey(std::int16_t key_code, std::int16_t shift);

}  // namespace kv
