#include "state/portal_color_qt.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <utility>

namespace kv {
namespace {

QString Service() {
  return QStringLiteral("org.freedesktop.portal.Desktop");
}
QString Request() {
  return QStringLiteral("org.freedesktop.portal.Request");
}

// Three numbers from 0 to 1 as 0x00BBGGRR; -1 where they are none.
std::int32_t ColorFrom(const QVariant& value) {
  if (!value.canConvert<QDBusArgument>()) return -1;
  const auto argument = value.value<QDBusArgument>();
  if (argument.currentSignature() != QLatin1String("(ddd)")) return -1;
  std::int32_t color = 0;
  argument.beginStructure();
  for (int shift = 0; shift < 24; shift += 8) {
    double part = 0.0;
    argument >> part;
    if (!(part >= 0.0)) part = 0.0;
    color |= static_cast<std::int32_t>(std::lround(std::min(part, 1.0) * 255.0)) << shift;
  }
  argument.endStructure();
  return color;
}

}  // namespace

PortalColor::PortalColor(const QDBusConnection& bus, QObject* parent)
    : QObject(parent), bus_(bus) {}

void PortalColor::PickColor(std::function<void(std::int32_t color)> done,
                            std::function<void()> refused) {
  StopListening();
  const int question = ++question_;
  if (!bus_.isConnected()) {
    QTimer::singleShot(0, this, [refused = std::move(refused)] { refused(); });
    return;
  }
  // The answer can be on its way before the call returns, so its place is known beforehand.
  const QString token =
      QStringLiteral("kestrelview_%1_%2").arg(QCoreApplication::applicationPid()).arg(question);
  const QString sender = bus_.baseService().mid(1).replace(QLatin1Char('.'), QLatin1Char('_'));
  Listen(QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2").arg(sender, token));
  done_ = std::move(done);

  QDBusMessage call = QDBusMessage::createMethodCall(
      Service(), QStringLiteral("/org/freedesktop/portal/desktop"),
      QStringLiteral("org.freedesktop.portal.Screenshot"), QStringLiteral("PickColor"));
  call << QString() << QVariantMap{{QStringLiteral("handle_token"), token}};
  auto* const watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this,
          [this, watcher, question, refused = std::move(refused)] {
            watcher->deleteLater();
            if (question != question_ || !done_) return;
            const QDBusPendingReply<QDBusObjectPath> reply = *watcher;
            if (reply.isError()) {
              StopListening();
              refused();
            } else if (reply.value().path() != path_) {
              // Portals before version 0.9 choose the place themselves.
              const auto waiting = std::move(done_);
              StopListening();
              done_ = waiting;
              Listen(reply.value().path());
            }
          });
}

void PortalColor::Listen(const QString& path) {
  path_ = path;
  bus_.connect(Service(), path_, Request(), QStringLiteral("Response"), this,
               SLOT(Response(uint, QVariantMap)));
}

void PortalColor::StopListening() {
  if (!path_.isEmpty()) {
    bus_.disconnect(Service(), path_, Request(), QStringLiteral("Response"), this,
                    SLOT(Response(uint, QVariantMap)));
  }
  path_.clear();
  done_ = nullptr;
}

void PortalColor::Response(uint response, const QVariantMap& results) {
  const auto done = std::move(done_);
  StopListening();
  if (done) done(response == 0 ? ColorFrom(results.value(QStringLiteral("color"))) : -1);
}

}  // namespace kv
