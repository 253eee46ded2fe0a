// The colour slots of the settings and of the scheme files: what each of them colours.
//
// One table for everything that shows, stores or edits colours. A colour is 0x00BBGGRR.
#pragma once

#include "system/translation.h"

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
    {TrLater("Button background"), ColorSlot::kButtonBack, TrLater("Buttons of all windows")},
    {TrLater("General background"), ColorSlot::kGeneralBack,
     TrLater("Control panel, dialogs and toolbars")},
    {TrLater("General text"), ColorSlot::kGeneralText, TrLater("Texts and button faces on these")},
    {TrLater("Separator line1"), ColorSlot::kSeparator1, TrLater("Upper or left line of a groove")},
    {TrLater("Separator line2"), ColorSlot::kSeparator2,
     TrLater("Lower or right line of a groove")},
    {TrLater("Scroller background"), ColorSlot::kScrollerBack, TrLater("Ground of the sliders")},
    {TrLater("Scroller line"), ColorSlot::kScrollerLine,
     TrLater("The line along which a knob moves")},
    {TrLater("Scroller A > B line"), ColorSlot::kScrollerRange,
     TrLater("The stretch that is repeated")},
    {TrLater("Playlist background"), ColorSlot::kPlaylistBack,
     TrLater("Rows of the playlist; lists and boxes")},
    {TrLater("Playlist foreground"), ColorSlot::kPlaylistText, TrLater("Texts in these")},
    {TrLater("Playlist playing number"), ColorSlot::kPlaylistPlaying,
     TrLater("The row that plays")},
    {TrLater("Menu background"), ColorSlot::kMenuBack, TrLater("The menu, its frame and side bar")},
    {TrLater("Menu text"), ColorSlot::kMenuText, TrLater("Captions of the menu")},
    {TrLater("Menu separator"), ColorSlot::kMenuSeparator,
     TrLater("Lines between groups of the menu")},
    {TrLater("Menu highlight background"), ColorSlot::kMenuHighlight,
     TrLater("The entry under the pointer")},
    {TrLater("Menu highlight border"), ColorSlot::kMenuHighlightBorder,
     TrLater("Its frame; what has the focus")},
    {TrLater("Menu highlight text"), ColorSlot::kMenuHighlightText, TrLater("Its caption")},
    {TrLater("Display background"), ColorSlot::kDisplayBack, TrLater("Title, time and data")},
    {TrLater("Display text"), ColorSlot::kDisplayText, TrLater("Texts in the display")},
    {TrLater("Display flashlabel foreground"), ColorSlot::kFlashText,
     TrLater("A label of the display that flashes")},
    {TrLater("Display flashlabel flash-color"), ColorSlot::kFlashOn,
     TrLater("The same at its brightest")},
    {TrLater("Display playlist number"), ColorSlot::kDisplayNumber,
     TrLater("Number of the entry that plays")},
    {TrLater("VuMeter Background"), ColorSlot::kMeterBack, TrLater("Ground of the level meter")},
    {TrLater("VuMeter Foreground"), ColorSlot::kMeterText, TrLater("Bars, scale and needle")},
    {TrLater("VuMeter Peak"), ColorSlot::kMeterPeak, TrLater("Its loudest part")},
    {TrLater("Graph Background"), ColorSlot::kGraphBack, TrLater("Ground of the CPU graph")},
    {TrLater("Graph Brush"), ColorSlot::kGraphTrace, TrLater("Its trace")},
    {TrLater("Graph Grid"), ColorSlot::kGraphGrid, TrLater("Its grid")},
}};

// `table` is any array of all slots.
template <class Table>
constexpr auto& ColorOf(Table& table, ColorSlot slot) {
  return table[static_cast<std::size_t>(slot)];
}

}  // namespace kv
