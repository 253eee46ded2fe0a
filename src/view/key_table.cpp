#include "view/key_table.h"

#include "view/window_zoom.h"

#include <algorithm>
#include <array>

namespace kv {
namespace {

constexpr std::int16_t kNone = 0;
constexpr std::int16_t kShiftCtrl = kShiftKey | kCtrlKey;
constexpr double kMinute = 60.0;
constexpr double kNormalSize = 1.0;

constexpr KeyRow Item(std::int16_t shift, std::int16_t key_code, std::string_view item) {
  return {shift, key_code, KeyAction::kItem, 0.0, item};
}
constexpr KeyRow FlipItem(std::int16_t key_code, std::string_view item) {
  return {kNone, key_code, KeyAction::kFlipItem, 0.0, item};
}

constexpr std::array kKeys = {
    KeyRow{kNone, '1', KeyAction::kGoToMark, 1},
    KeyRow{kNone, '2', KeyAction::kGoToMark, 2},
    KeyRow{kNone, kKeyShift, KeyAction::kShiftDown},
    KeyRow{kNone, kKeyCtrl, KeyAction::kCtrlDown},
    Item(kNone, 'P', "mPlaylist"),
    FlipItem('A', "mKeepAspect"),
    FlipItem('F', "mFitToWindow"),
    Item(kNone, kKeySpace, "mPause"),
    Item(kNone, kKeyEnter, "mPlay"),
    Item(kNone, kKeyEsc, "mExit"),
    Item(kNone, kKeyF1, "mHelp"),
    Item(kNone, 'S', "mShowScope"),
    Item(kNone, kKeyBackspace, "mStop"),
    KeyRow{kNone, kKeyLeft, KeyAction::kVolume, -1},
    KeyRow{kNone, kKeyRight, KeyAction::kVolume, 1},
    Item(kNone, kKeyPageDown, "mNext"),
    Item(kNone, kKeyPageUp, "mPrevious"),
    Item(kNone, kKeyHome, "mJumpToFirst"),
    Item(kNone, kKeyEnd, "mJumpToLast"),
    KeyRow{kNone, kKeypadAdd, KeyAction::kZoom, WindowZoom::kZoomIn},
    KeyRow{kNone, kKeypadSubtract, KeyAction::kZoom, WindowZoom::kZoomOut},
    KeyRow{kNone, 'V', KeyAction::kMeterStyle},
    KeyRow{kNone, 'Z', KeyAction::kZoom, kNormalSize},
    KeyRow{kNone, kKeyF12, KeyAction::kPopUpMenu},
    KeyRow{kNone, kKeyDelete, KeyAction::kDeleteFile},

    KeyRow{kShiftKey, kKeypadAdd, KeyAction::kNormalRate},
    KeyRow{kShiftKey, kKeyLeft, KeyAction::kSeek, -kMinute},
    KeyRow{kShiftKey, kKeyRight, KeyAction::kSeek, kMinute},

    KeyRow{kCtrlKey, 'X', KeyAction::kReleaseResume},
    Item(kCtrlKey, 'R', "mSaveRFAs"),
    Item(kCtrlKey, 'E', "mSaveRFEnd"),
    Item(kCtrlKey, 'O', "mOpen"),
    Item(kCtrlKey, 'K', "mOptions"),
    KeyRow{kCtrlKey, 'C', KeyAction::kShowColors},
    Item(kCtrlKey, 'S', "mSaveAs"),
    Item(kCtrlKey, 'U', "mOpenURL"),
    KeyRow{kCtrlKey, kKeyRight, KeyAction::kSeekFrames, 1},
    KeyRow{kCtrlKey, kKeyLeft, KeyAction::kSeekFrames, -1},
    KeyRow{kCtrlKey, kKeypadAdd, KeyAction::kRate, 1},
    KeyRow{kCtrlKey, kKeypadSubtract, KeyAction::kRate, -1},
    KeyRow{kCtrlKey, 'D', KeyAction::kDemoMode},
    KeyRow{kCtrlKey, 'Q', KeyAction::kQuickSearch},

    KeyRow{kShiftCtrl, kKeyRight, KeyAction::kSeek, 1},
    KeyRow{kShiftCtrl, kKeyLeft, KeyAction::kSeek, -1},
    KeyRow{kShiftCtrl, 'K', KeyAction::kConfigPlugin},

    KeyRow{kAltKey, kKeyEnter, KeyAction::kFullScreen},
    KeyRow{kAltKey, 'P', KeyAction::kShowPlugins},
};

}  // namespace

std::span<const KeyRow> KeyTable() {
  return kKeys;
}

const KeyRow* FindKey(std::int16_t key_code, std::int16_t shift) {
  const auto row = std::find_if(kKeys.begin(), kKeys.end(), [&](const KeyRow& candidate) {
    return candidate.key_code == key_code && candidate.shift == shift;
  });
  return row == kKeys.end() ? nullptr : &*row;
}

}  // namespace kv
