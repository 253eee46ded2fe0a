// `OstTray1`, the icon in the desktop's notification area. Shows what it is told and hands clicks
// on; where a desktop has no such area it never becomes visible. Owned by `frmMain`; interface
// thread only.
#pragma once

#include <QSystemTrayIcon>

#include <functional>
#include <string>

namespace kv {

class TrayIcon {
 public:
  static constexpr int kLeft = 1;
  static constexpr int kRight = 2;

  // `on_mouse` hears the code of the button of each click.
  explicit TrayIcon(std::function<void(int)> on_mouse);

  void SetIcon(const QIcon& icon) { icon_.setIcon(icon); }
  void SetVisible(bool visible);
  // True only when the desktop really shows it: whoever hides a window to it must ask.
  bool Visible() const;
  void SetTip(const std::string& text);

 private:
  std::function<void(int)> on_mouse_;
  QSystemTrayIcon icon_;
};

}  // namespace kv
