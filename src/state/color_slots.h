// The colour slots of the settings and of the scheme files: what each of them colours.
//
// One table for everything that shows, stores or edits colours. A colour is 0x00BBGGRR.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kv {

// By index in the file. 10, 11, 12, 16 and 20 colour nothing and are kept.
enum class ColorSlot : std::uint8_t {
  kButtonBack = 0,
  kGeneralBack = 1,
  kPlaylistBack = 2,
  kPlaylistText = 3,
  kGeneralText = 4,
  kSeparator1 = 5,
  kSeparator2 = 6,
  kPlaylistPlaying = 7,
  kScrollerBack = 8,
  kScrollerLine = 9,
  kMenuBack = 13,
  kMenuText = 14,
  kMenuSeparator = 15,
  kMenuHighlight = 17,
  kScrollerRange = 18,
  kMenuHighlightBorder = 19,
  kMenuHighlightText = 21,
  kDisplayBack = 22,
  kDisplayText = 23,
  kMeterBack = 24,
  kMeterText = 25,
  kMeterPeak = 26,
  kFlashText = 27,
  kFlashOn = 28,
  kDisplayNumber = 29,
  kGraphBack = 30,
  kGraphTrace = 31,
  kGraphGrid = 32,
};

struct ColorSlotRow {
  std::string_view label;  // in the list of colours
  ColorSlot slot;
  std::string_view colors;  // where it is seen
};

// In the order of that list.
inline constexpr std::array<ColorSlotRow, 28> kColorSlotRows{{
    {"Button background", ColorSlot::kButtonBack, "Buttons of all windows"},
    {"General background", ColorSlot::kGeneralBack, "Control panel, dialogs and toolbars"},
    {"General text", ColorSlot::kGeneralText, "Texts and button faces on these"},
    {"Separator line1", ColorSlot::kSeparator1, "Upper or left line of a groove"},
    {"Separator line2", ColorSlot::kSeparator2, "Lower or right line of a groove"},
    {"Scroller background", ColorSlot::kScrollerBack, "Ground of the sliders"},
    {"Scroller line", ColorSlot::kScrollerLine, "The line along which a knob moves"},
    {"Scroller A > B line", ColorSlot::kScrollerRange, "The stretch that is repeated"},
    {"Playlist background", ColorSlot::kPlaylistBack, "Rows of the playlist; lists and boxes"},
    {"Playlist foreground", ColorSlot::kPlaylistText, "Texts in these"},
    {"Playlist playing number", ColorSlot::kPlaylistPlaying, "The row that plays"},
    {"Menu background", ColorSlot::kMenuBack, "The menu, its frame and side bar"},
    {"Menu text", ColorSlot::kMenuText, "Captions of the menu"},
    {"Menu separator", ColorSlot::kMenuSeparator, "Lines between groups of the menu"},
    {"Menu highlight background", ColorSlot::kMenuHighlight, "The entry under the pointer"},
    {"Menu highlight border", ColorSlot::kMenuHighlightBorder, "Its frame; what has the focus"},
    {"Menu highlight text", ColorSlot::kMenuHighlightText, "Its caption"},
    {"Display background", ColorSlot::kDisplayBack, "Title, time and data"},
    {"Display text", ColorSlot::kDisplayText, "Texts in the display"},
    {"Display flashlabel foreground", ColorSlot::kFlashText, "A label of the display that flashes"},
    {"Display flashlabel flash-color", ColorSlot::kFlashOn, "The same at its brightest"},
    {"Display playlist number", ColorSlot::kDisplayNumber, "Number of the entry that plays"},
    {"VuMeter Background", ColorSlot::kMeterBack, "Ground of the level meter"},
    {"VuMeter Foreground", ColorSlot::kMeterText, "Bars, scale and needle"},
    {"VuMeter Peak", ColorSlot::kMeterPeak, "Its loudest part"},
    {"Graph Background", ColorSlot::kGraphBack, "Ground of the CPU graph"},
    {"Graph Brush", ColorSlot::kGraphTrace, "Its trace"},
    {"Graph Grid", ColorSlot::kGraphGrid, "Its grid"},
}};

// `table` is any array of all slots.
template <class Table>
constexpr auto& ColorOf(Table& table, ColorSlot slot) {
  return table[static_cast<std::size_t>(slot)];
}

}  // namespace kv
