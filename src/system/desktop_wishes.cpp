#include "system/desktop_wishes.h"

#include "system/ini_text.h"

#include <array>
#include <optional>

namespace kv {
namespace {

enum class Wish { kReducedMotion, kHighContrast };

struct WishKey {
  std::string_view space;
  std::string_view key;
  Wish wish;
  double asking;  // the value that asks for it
};

// A factor of 0 for the length of animations is how KDE says that there are to be none.
constexpr std::array kWishKeys = {
    WishKey{"org.freedesktop.appearance", "reduced-motion", Wish::kReducedMotion, 1},
    WishKey{"org.gnome.desktop.interface", "enable-animations", Wish::kReducedMotion, 0},
    WishKey{"org.kde.kdeglobals.KDE", "AnimationDurationFactor", Wish::kReducedMotion, 0},
    WishKey{"gtk", "gtk-enable-animations", Wish::kReducedMotion, 0},
    WishKey{"org.freedesktop.appearance", "contrast", Wish::kHighContrast, 1},
    WishKey{"org.gnome.desktop.a11y.interface", "high-contrast", Wish::kHighContrast, 1},
};

}  // namespace

bool DesktopWishList::Take(std::string_view space, std::string_view key, double value) {
  for (const WishKey& row : kWishKeys) {
    if (row.space != space || row.key != key) continue;
    asked_[std::string(key)] = value == row.asking;
    return true;
  }
  return false;
}

void DesktopWishList::TakeGtkSettings(std::string_view ini_text) {
  constexpr std::string_view kKey = "gtk-enable-animations";
  const std::optional<std::string_view> value = FindIniValue(ini_text, "Settings", kKey);
  if (value) Take("gtk", kKey, *value == "0" || *value == "false" ? 0 : 1);
}

DesktopWishes DesktopWishList::Wishes() const {
  DesktopWishes wishes;
  for (const WishKey& row : kWishKeys) {
    const auto asked = asked_.find(std::string(row.key));
    if (asked == asked_.end() || !asked->second) continue;
    (row.wish == Wish::kReducedMotion ? wishes.reduced_motion : wishes.high_contrast) = true;
  }
  return wishes;
}

}  // namespace kv
