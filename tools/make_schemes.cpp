// Writes the colour schemes that come with the player beside "default.dat", which make_config
// writes.
//
// Usage: make_schemes DATA_FOLDER. Run it after a change here and keep the files it writes.
#include "state/color_file.h"
#include "state/color_slots.h"

#include <array>
#include <cstdint>
#include <iostream>
#include <string>

namespace {

// 0xRRGGBB. A scheme is given by what a person would name of it; the slots follow.
struct Scheme {
  const char* name;
  std::uint32_t window;  // panel and dialogs
  std::uint32_t text;    // on it
  std::uint32_t button;  // a step away from the window
  std::uint32_t shade;   // lines of a groove, dark and light
  std::uint32_t light;
  std::uint32_t list;  // rows and boxes
  std::uint32_t list_text;
  std::uint32_t mark;   // what plays, on `list`
  std::uint32_t line;   // of a slider, on `window`
  std::uint32_t range;  // the A > B stretch, on `window` and beside `line`
  std::uint32_t menu;
  std::uint32_t menu_line;
  std::uint32_t chosen;  // the entry under the pointer
  std::uint32_t chosen_text;
  std::uint32_t focus;    // its frame, and all that has the focus
  std::uint32_t display;  // also ground of meter and graph
  std::uint32_t display_text;
  std::uint32_t number;  // what stands out in the display
  std::uint32_t flash;
  std::uint32_t trace;  // of meter and graph
  std::uint32_t peak;
  std::uint32_t grid;
};

constexpr Scheme kSchemes[] = {
    // A bright room: paper white, ink, the blue of a clear sky.
    {.name = "Daylight",
     .window = 0xF2F4F7,
     .text = 0x20262E,
     .button = 0xE3E7ED,
     .shade = 0xC2C9D3,
     .light = 0xFFFFFF,
     .list = 0xFFFFFF,
     .list_text = 0x20262E,
     .mark = 0xA8480A,
     .line = 0x7F8B9E,
     .range = 0x9A3800,
     .menu = 0xFAFBFC,
     .menu_line = 0xD5DAE2,
     .chosen = 0xD6E6FA,
     .chosen_text = 0x10243D,
     .focus = 0x2A6FC0,
     .display = 0xE6EDF5,
     .display_text = 0x1D3F66,
     .number = 0x9A3F05,
     .flash = 0x8A1F0A,
     .trace = 0x2A6FC0,
     .peak = 0xB8480A,
     .grid = 0xC3D0E0},
    // For eyes that need it: black, white, yellow, and no shade between.
    {.name = "High contrast",
     .window = 0x000000,
     .text = 0xFFFFFF,
     .button = 0x000000,
     .shade = 0x000000,
     .light = 0xFFFFFF,
     .list = 0x000000,
     .list_text = 0xFFFFFF,
     .mark = 0xFFE600,
     .line = 0x8C8C8C,
     .range = 0xFFE600,
     .menu = 0x000000,
     .menu_line = 0xFFFFFF,
     .chosen = 0xFFE600,
     .chosen_text = 0x000000,
     .focus = 0xFFE600,
     .display = 0x000000,
     .display_text = 0xFFFFFF,
     .number = 0xFFE600,
     .flash = 0x00FFFF,
     .trace = 0xFFFFFF,
     .peak = 0xFFE600,
     .grid = 0x6B6B6B},
    // An evening at home: dark wood, cream, embers.
    {.name = "Fireside",
     .window = 0x2A211C,
     .text = 0xEBDCC8,
     .button = 0x3B2E26,
     .shade = 0x1A1411,
     .light = 0x4B3B31,
     .list = 0x211A16,
     .list_text = 0xF0E3D2,
     .mark = 0xFF9B52,
     .line = 0x9C7F68,
     .range = 0xFFB35C,
     .menu = 0x322721,
     .menu_line = 0x54443A,
     .chosen = 0x5A3F2C,
     .chosen_text = 0xFFF6EA,
     .focus = 0xD98B4A,
     .display = 0x17110E,
     .display_text = 0xF2CFA0,
     .number = 0xFF9B52,
     .flash = 0xFFE8C7,
     .trace = 0xD9A066,
     .peak = 0xFF6F4D,
     .grid = 0x40322A},
    // Lichen and heather: a light scheme that is easy on the eyes.
    {.name = "Moorland",
     .window = 0xE4E8DC,
     .text = 0x2A3226,
     .button = 0xD5DBCA,
     .shade = 0xB2BAA4,
     .light = 0xF8FAF3,
     .list = 0xF5F7F0,
     .list_text = 0x2A3226,
     .mark = 0x7A2E6E,
     .line = 0x75816A,
     .range = 0x7A2069,
     .menu = 0xEEF1E8,
     .menu_line = 0xC7CEBA,
     .chosen = 0xC6D8B2,
     .chosen_text = 0x1B2A12,
     .focus = 0x4C7A34,
     .display = 0x2C3A2A,
     .display_text = 0xDCEBC9,
     .number = 0xF0B4E4,
     .flash = 0xFFF0FB,
     .trace = 0xA5CF86,
     .peak = 0xF0B4E4,
     .grid = 0x47593F},
    // Late twilight: plum and violet, the sea's green on the horizon.
    {.name = "Nightfall",
     .window = 0x241C33,
     .text = 0xDCD5EA,
     .button = 0x34294A,
     .shade = 0x161021,
     .light = 0x43365E,
     .list = 0x1C1528,
     .list_text = 0xE4DDF0,
     .mark = 0x5FD9C4,
     .line = 0x8672AE,
     .range = 0x5FD9C4,
     .menu = 0x2B223D,
     .menu_line = 0x4A3C67,
     .chosen = 0x473471,
     .chosen_text = 0xFFFFFF,
     .focus = 0xA98BE0,
     .display = 0x130E1D,
     .display_text = 0xC9B8F2,
     .number = 0x5FD9C4,
     .flash = 0xE6FFFA,
     .trace = 0xA98BE0,
     .peak = 0x5FD9C4,
     .grid = 0x342850},
};

kv::ColorTable TableOf(const Scheme& scheme) {
  using enum kv::ColorSlot;
  const struct {
    kv::ColorSlot slot;
    std::uint32_t rgb;
  } rows[] = {
      {kButtonBack, scheme.button},
      {kGeneralBack, scheme.window},
      {kPlaylistBack, scheme.list},
      {kPlaylistText, scheme.list_text},
      {kGeneralText, scheme.text},
      {kSeparator1, scheme.shade},
      {kSeparator2, scheme.light},
      {kPlaylistPlaying, scheme.mark},
      {kScrollerBack, scheme.window},
      {kScrollerLine, scheme.line},
      {kMenuBack, scheme.menu},
      {kMenuText, scheme.text},
      {kMenuSeparator, scheme.menu_line},
      {kMenuHighlight, scheme.chosen},
      {kScrollerRange, scheme.range},
      {kMenuHighlightBorder, scheme.focus},
      {kMenuHighlightText, scheme.chosen_text},
      {kDisplayBack, scheme.display},
      {kDisplayText, scheme.display_text},
      {kMeterBack, scheme.display},
      {kMeterText, scheme.trace},
      {kMeterPeak, scheme.peak},
      {kFlashText, scheme.number},
      {kFlashOn, scheme.flash},
      {kDisplayNumber, scheme.number},
      {kGraphBack, scheme.display},
      {kGraphTrace, scheme.trace},
      {kGraphGrid, scheme.grid},
  };
  kv::ColorTable table{};
  for (const auto& row : rows) {
    const std::uint32_t bgr = (row.rgb & 0xFFU) << 16 | (row.rgb & 0xFF00U) | row.rgb >> 16;
    kv::ColorOf(table, row.slot) = static_cast<std::int32_t>(bgr);
  }
  return table;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "Usage: make_schemes DATA_FOLDER\n";
    return 2;
  }
  for (const Scheme& scheme : kSchemes) {
    const std::string path = std::string(argv[1]) + "/colorscemes/" + scheme.name + ".dat";
    if (!kv::WriteColorFile(path, TableOf(scheme))) {
      std::cerr << "make_schemes: cannot write " << path << '\n';
      return 1;
    }
  }
  return 0;
}
