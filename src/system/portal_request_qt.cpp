#include "system/portal_request_qt.h"

#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QUuid>

namespace kv {
namespace {

// The portal may have to be started first, but shows nothing until then.
constexpr int kPatienceMilliseconds = 3000;

constexpr uint kDone = 0;
constexpr uint kCancelledByUser = 1;

QString RequestInterface() {
  return QStringLiteral("org.freedesktop.portal.Request");
}

}  // namespace

PortalRequest::PortalRequest(const QDBusConnection& bus, QWidget* owner)
    : QDialog(owner),
      bus_(bus),
      token_(QStringLiteral("kestrelview") + QUuid::createUuid().toString(QUuid::Id128)) {
  setAttribute(Qt::WA_DontShowOnScreen);
  setModal(true);
  patience_.setSingleShot(true);
  connect(&patience_, &QTimer::timeout, this, [this] { done(kSilent); });
  // The answer may come before that to the call, at a path that is known beforehand.
  QString sender = bus_.baseService().mid(1);
  sender.replace(QLatin1Char('.'), QLatin1Char('_'));
  Listen(QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2").arg(sender, token_));
}

PortalRequest::~PortalRequest() {
  if (!open_) return;
  bus_.send(QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.portal.Desktop"), path_,
                                           RequestInterface(), QStringLiteral("Close")));
}

// Whoever sends it: to name the portal would be to wait until the bus has told who that is.
void PortalRequest::Listen(const QString& path) {
  if (path == path_) return;
  if (!path_.isEmpty()) {
    bus_.disconnect(QString(), path_, RequestInterface(), QStringLiteral("Response"), this,
                    SLOT(Response(uint, QVariantMap)));
  }
  path_ = path;
  bus_.connect(QString(), path_, RequestInterface(), QStringLiteral("Response"), this,
               SLOT(Response(uint, QVariantMap)));
}

void PortalRequest::Send(const QDBusMessage& call) {
  auto* const watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
    watcher->deleteLater();
    patience_.stop();
    const QDBusPendingReply<QDBusObjectPath> reply = *watcher;
    if (reply.isError()) {
      open_ = false;
      done(kRefused);
    } else {
      Listen(reply.value().path());  // older portals choose their own
    }
  });
  patience_.start(kPatienceMilliseconds);
}

void PortalRequest::Response(uint response, const QVariantMap& results) {
  open_ = false;
  results_ = results;
  const int otherwise = response == kCancelledByUser ? int{Rejected} : int{kRefused};
  done(response == kDone ? int{Accepted} : otherwise);
}

}  // namespace kv
