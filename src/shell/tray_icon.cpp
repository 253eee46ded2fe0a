#include "shell/tray_icon.h"

#include <utility>

namespace kv {

TrayIcon::TrayIcon(std::function<void(int)> on_mouse) : on_mouse_(std::move(on_mouse)) {
  QObject::connect(&icon_, &QSystemTrayIcon::activated, &icon_,
                   [this](QSystemTrayIcon::ActivationReason reason) {
                     if (reason == QSystemTrayIcon::Trigger) on_mouse_(kLeft);
                     if (reason == QSystemTrayIcon::Context) on_mouse_(kRight);
                   });
}

void TrayIcon::SetVisible(bool visible) {
  // Asking for the notification area costs a round trip, so only who wants the icon pays for it.
  if (visible != icon_.isVisible()) icon_.setVisible(visible);
}

bool TrayIcon::Visible() const {
  return icon_.isVisible() && QSystemTrayIcon::isSystemTrayAvailable();
}

void TrayIcon::SetTip(const std::string& text) {
  // Notification areas differ in what they take for markup, so nothing may look like it.
  QString tip = QString::fromStdString(text);
  icon_.setToolTip(tip.replace(QLatin1Char('<'), QChar(0x2039)));
}

}  // namespace kv
