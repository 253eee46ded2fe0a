#include "playlist/playlist_look_qt.h"

#include "controls/color_qt.h"

#include <cstddef>

namespace kv {
namespace {

constexpr std::size_t kGeneralBack = 1;
constexpr std::size_t kListBack = 2;
constexpr std::size_t kListText = 3;
constexpr std::size_t kGeneralText = 4;
constexpr std::size_t kPlaying = 7;
constexpr std::size_t kMenuBack = 13;
constexpr std::size_t kMenuText = 14;
constexpr std::size_t kMenuSeparator = 15;
constexpr std::size_t kMenuHighlight = 17;
constexpr std::size_t kMenuHighlightBorder = 19;
constexpr std::size_t kMenuHighlightText = 21;

constexpr double kLeast = 2.0;       // contrast below which a text is lost on its ground
constexpr double kReadable = 4.5;    // for what is chosen here
constexpr double kSetOff = 1.3;      // a selection from the ground
constexpr double kSelection = 0.22;  // shares of the text's colour in the ground's
constexpr double kSelectionTint = 0.3;
constexpr double kHover = 0.1;
constexpr double kPressed = 0.18;
constexpr double kLine = 0.16;
constexpr double kFaint = 0.35;

QColor BlackOrWhite(const QColor& ground) {
  const QColor black(Qt::black);
  const QColor white(Qt::white);
  return ContrastRatio(black, ground) > ContrastRatio(white, ground) ? black : white;
}

// `wanted`, unless it cannot be read.
QColor TextOn(const QColor& ground, const QColor& wanted, double contrast) {
  return ContrastRatio(wanted, ground) >= contrast ? wanted : BlackOrWhite(ground);
}

}  // namespace

PlaylistLook LookFrom(const std::array<std::int32_t, kColorSlots>& colors, const QPalette& theme) {
  const auto slot = [&](std::size_t index) { return ToQColor(colors[index], theme); };
  PlaylistLook look;
  look.back = slot(kListBack);
  look.text = TextOn(look.back, slot(kListText), kLeast);
  look.playing = TextOn(look.back, slot(kPlaying), kLeast);
  look.selected_back = slot(kMenuHighlight);
  if (ContrastRatio(look.selected_back, look.back) < kSetOff ||
      ContrastRatio(look.selected_back, look.text) < kReadable) {
    look.selected_back =
        Blend(look.back, Blend(look.text, look.playing, kSelectionTint), kSelection);
  }
  look.selected_text = TextOn(look.selected_back, look.text, kReadable);
  look.selected_playing =
      ContrastRatio(look.playing, look.selected_back) >= kLeast ? look.playing : look.selected_text;
  look.focus = Blend(look.back, look.playing, 0.7);
  look.window = slot(kGeneralBack);
  look.window_text = TextOn(look.window, slot(kGeneralText), kLeast);
  look.faint_text = Blend(look.window_text, look.window, kFaint);
  look.line = Blend(look.window, look.window_text, kLine);
  look.hover = Blend(look.window, look.window_text, kHover);
  look.pressed = Blend(look.window, look.window_text, kPressed);
  return look;
}

SmartMenuColors MenuColorsFrom(const std::array<std::int32_t, kColorSlots>& colors,
                               const QPalette& theme) {
  const auto slot = [&](std::size_t index) { return ToQColor(colors[index], theme); };
  SmartMenuColors menu;
  menu.background = slot(kMenuBack);
  menu.text = slot(kMenuText);
  menu.separator = slot(kMenuSeparator);
  menu.highlight = slot(kMenuHighlight);
  menu.highlight_border = slot(kMenuHighlightBorder);
  menu.highlight_text = slot(kMenuHighlightText);
  menu.disabled_text = menu.text;
  return menu;
}

QPalette PaletteOf(const PlaylistLook& look) {
  // Buttons and scroll bars are shaded from the first two.
  QPalette palette(look.hover, look.window);
  palette.setColor(QPalette::WindowText, look.window_text);
  palette.setColor(QPalette::ButtonText, look.window_text);
  palette.setColor(QPalette::Base, look.back);
  palette.setColor(QPalette::AlternateBase, look.back);
  palette.setColor(QPalette::Text, look.text);
  palette.setColor(QPalette::PlaceholderText, Blend(look.text, look.back, kFaint));
  palette.setColor(QPalette::Highlight, look.selected_back);
  palette.setColor(QPalette::HighlightedText, look.selected_text);
  palette.setColor(QPalette::ToolTipBase, look.window);
  palette.setColor(QPalette::ToolTipText, look.window_text);
  palette.setColor(QPalette::Link, look.playing);
  for (const QPalette::ColorRole role :
       {QPalette::WindowText, QPalette::ButtonText, QPalette::Text}) {
    const QColor ground = role == QPalette::Text ? look.back : look.window;
    palette.setColor(QPalette::Disabled, role, Blend(palette.color(role), ground, 0.5));
  }
  return palette;
}

QString ToolbarStyle(const PlaylistLook& look) {
  return QStringLiteral(
             "QToolBar { background: %1; border: none; border-bottom: 1px solid %2;"
             " spacing: 2px; padding: 3px 4px; }"
             "QToolBar::separator { background: %2; width: 1px; margin: 4px 5px; }"
             "QToolButton { background: transparent; border: 1px solid transparent;"
             " border-radius: 4px; padding: 3px; }"
             "QToolButton:hover { background: %3; }"
             "QToolButton:pressed, QToolButton:checked { background: %4; }"
             "QToolButton:focus { border-color: %5; }")
      .arg(look.window.name(), look.line.name(), look.hover.name(), look.pressed.name(),
           look.focus.name());
}

QString HeaderStyle(const PlaylistLook& look) {
  return QStringLiteral(
             "QHeaderView { background: %1; border: none; }"
             "QHeaderView::section { background: %1; color: %2; border: none;"
             " border-right: 1px solid %3; border-bottom: 1px solid %3; padding: 4px 7px; }"
             "QHeaderView::section:hover { background: %4; }"
             "QHeaderView::section:pressed { background: %5; }")
      .arg(look.window.name(), look.window_text.name(), look.line.name(), look.hover.name(),
           look.pressed.name());
}

}  // namespace kv
