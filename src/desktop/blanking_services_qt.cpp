#include "desktop/blanking_services_qt.h"

#include "system/dialogs.h"
#include "system/translation.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QVariantMap>

#include <utility>

namespace kv {
namespace {

constexpr auto kPortal = "org.freedesktop.portal.Desktop";
constexpr auto kPortalPath = "/org/freedesktop/portal/desktop";
constexpr auto kSaver = "org.freedesktop.ScreenSaver";
constexpr auto kSaverPath = "/org/freedesktop/ScreenSaver";
constexpr uint kIdle = 8;

QDBusMessage CallOf(const char* service, const QString& path, const char* interface,
                    const char* method) {
  return QDBusMessage::createMethodCall(QString::fromLatin1(service), path,
                                        QString::fromLatin1(interface),
                                        QString::fromLatin1(method));
}

QString Reason() {
  return QString::fromUtf8(Tr("A video is playing"));
}

}  // namespace

void BlankingServicesQt::WhenAnswered(const QDBusPendingCall& call,
                                      std::function<void(const QDBusPendingCall& call)> use) {
  auto* const watcher = new QDBusPendingCallWatcher(call, this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, use = std::move(use)] {
    watcher->deleteLater();
    use(*watcher);
  });
}

void BlankingServicesQt::InhibitByPortal(PortalAnswer answer) {
  QDBusMessage call = CallOf(kPortal, QString::fromLatin1(kPortalPath),
                             "org.freedesktop.portal.Inhibit", "Inhibit");
  call << QString() << kIdle << QVariantMap{{QStringLiteral("reason"), Reason()}};
  WhenAnswered(bus_.asyncCall(call), [answer = std::move(answer)](const QDBusPendingCall& done) {
    const QDBusPendingReply<QDBusObjectPath> reply = done;
    answer(reply.isError() ? std::nullopt : std::optional(reply.value().path().toStdString()));
  });
}

void BlankingServicesQt::ReleasePortal(const std::string& request) {
  bus_.send(
      CallOf(kPortal, QString::fromStdString(request), "org.freedesktop.portal.Request", "Close"));
}

void BlankingServicesQt::InhibitBySaver(SaverAnswer answer) {
  QDBusMessage call = CallOf(kSaver, QString::fromLatin1(kSaverPath), kSaver, "Inhibit");
  call << QString::fromUtf8(kAppTitle) << Reason();
  WhenAnswered(bus_.asyncCall(call), [answer = std::move(answer)](const QDBusPendingCall& done) {
    const QDBusPendingReply<uint> reply = done;
    answer(reply.isError() ? std::nullopt : std::optional<std::uint32_t>(reply.value()));
  });
}

void BlankingServicesQt::ReleaseSaver(std::uint32_t cookie) {
  QDBusMessage call = CallOf(kSaver, QString::fromLatin1(kSaverPath), kSaver, "UnInhibit");
  call << cookie;
  bus_.send(call);
}

}  // namespace kv
