// The colours of the playlist's windows, made from the colour slots of the settings.
//
// What the slots do not name (selection, header, pressed buttons) is mixed from those that they do,
// so that every scheme stays readable. Interface thread.
#pragma once

#include "controls/smart_menu.h"
#include "state/settings.h"

#include <QColor>
#include <QPalette>
#include <QString>

#include <array>
#include <cstdint>

namespace kv {

struct PlaylistLook {
  // The rows.
  QColor back;
  QColor text;
  QColor playing;
  QColor selected_back;
  QColor selected_text;
  QColor selected_playing;
  QColor focus;  // lines around the row that has the focus
  // What is around them.
  QColor window;
  QColor window_text;
  QColor faint_text;
  QColor line;
  QColor hover;
  QColor pressed;
};

PlaylistLook LookFrom(const std::array<std::int32_t, kColorSlots>& colors, const QPalette& theme);

SmartMenuColors MenuColorsFrom(const std::array<std::int32_t, kColorSlots>& colors,
                               const QPalette& theme);

// For a window and all that is in it.
QPalette PaletteOf(const PlaylistLook& look);

QString ToolbarStyle(const PlaylistLook& look);
QString HeaderStyle(const PlaylistLook& look);

}  // namespace kv
