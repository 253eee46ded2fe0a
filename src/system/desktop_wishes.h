// What the user asks of every program of the desktop: less motion, more contrast.
//
// Desktops keep it under different names; each answer that comes in is kept under its own, and one
// that asks is enough. Any thread.
#pragma once

#include <map>
#include <string>
#include <string_view>

namespace kv {

struct DesktopWishes {
  bool reduced_motion = false;
  bool high_contrast = false;
  friend bool operator==(const DesktopWishes&, const DesktopWishes&) = default;
};

class DesktopWishList {
 public:
  // Takes what `key` of the group `space` says now: names as the desktop portal has them, a switch
  // as 0 or 1. True when the key means something here.
  bool Take(std::string_view space, std::string_view key, double value);

  // Takes a "settings.ini" of GTK, for desktops without a portal.
  void TakeGtkSettings(std::string_view ini_text);

  DesktopWishes Wishes() const;

 private:
  std::map<std::string, bool> asked_;  // by the key that asks
};

}  // namespace kv
