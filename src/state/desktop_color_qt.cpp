#include "state/desktop_color_qt.h"

#include <QGuiApplication>
#include <QImage>
#include <QRect>
#include <QScreen>

#include <algorithm>
#include <utility>

namespace kv {
namespace {

// On a Wayland desktop a snapshot shows nothing, or only what runs over X11.
bool OnWayland() {
  return QGuiApplication::platformName().startsWith(QLatin1String("wayland")) ||
         !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

}  // namespace

DesktopColor::DesktopColor(WindowServicesQt& windows, QWidget& owner)
    : windows_(windows), owner_(owner), portal_(QDBusConnection::sessionBus(), this) {}

void DesktopColor::Pick(std::function<void(std::int32_t color)> done,
                        std::function<void()> refused) {
  if (capture_ != nullptr) return;
  if (!OnWayland() && CaptureDesktop(done)) return;
  portal_.PickColor(std::move(done), std::move(refused));
}

bool DesktopColor::CaptureDesktop(const std::function<void(std::int32_t color)>& done) {
  QRect area;
  qreal ratio = 1.0;
  for (const QScreen* const screen : QGuiApplication::screens()) {
    area |= screen->geometry();
    ratio = std::max(ratio, screen->devicePixelRatio());
  }
  QImage desktop((QSizeF(area.size()) * ratio).toSize(), QImage::Format_RGB32);
  if (desktop.isNull()) return false;
  desktop.setDevicePixelRatio(ratio);
  desktop.fill(Qt::black);
  if (!windows_.CaptureDesktopRect(desktop, 0, 0, area.width(), area.height(), area.x(),
                                   area.y())) {
    return false;
  }
  capture_ = new frmCapture(std::move(desktop), area, done, &owner_);
  capture_->Form_Load();
  return true;
}

void DesktopColor::Close() {
  delete capture_.data();
}

}  // namespace kv
