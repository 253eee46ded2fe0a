// The desktop's services that keep the screen from going blank, over the session bus: the portal
// (org.freedesktop.portal.Inhibit) and the screen saver (org.freedesktop.ScreenSaver).
//
// Nothing waits. What is still held when the program ends ends with its connection. Interface
// thread only.
#pragma once

#include "desktop/blanking_guard.h"

#include <QDBusConnection>
#include <QDBusPendingCall>
#include <QObject>

#include <functional>
#include <string>

namespace kv {

class BlankingServicesQt : public QObject, public BlankingServices {
  Q_OBJECT

 public:
  explicit BlankingServicesQt(const QDBusConnection& bus) : bus_(bus) {}

  void InhibitByPortal(PortalAnswer answer) override;
  void ReleasePortal(const std::string& request) override;
  void InhibitBySaver(SaverAnswer answer) override;
  void ReleaseSaver(std::uint32_t cookie) override;

 private:
  void WhenAnswered(const QDBusPendingCall& call,
                    std::function<void(const QDBusPendingCall& call)> use);

  QDBusConnection bus_;
};

}  // namespace kv
