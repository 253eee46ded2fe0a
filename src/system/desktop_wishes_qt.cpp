#include "system/desktop_wishes_qt.h"

#include "system/files.h"
#include "system/special_folders.h"
#include "system/text_platform_qt.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QMap>
#include <QStringList>
#include <QTimer>
#include <QVariantMap>

#include <utility>

namespace kv {
namespace {

constexpr auto kService = "org.freedesktop.portal.Desktop";
constexpr auto kPath = "/org/freedesktop/portal/desktop";
constexpr auto kInterface = "org.freedesktop.portal.Settings";

QString Name(const char* text) {
  return QString::fromLatin1(text);
}

}  // namespace

DesktopWishesQt::DesktopWishesQt(Changed changed, QObject* parent)
    : QObject(parent), changed_(std::move(changed)) {}

void DesktopWishesQt::AskLater(int delay) {
  QTimer::singleShot(delay, this, [this] {
    ReadFiles();
    Tell();
    Ask(QDBusConnection::sessionBus());
  });
}

void DesktopWishesQt::Ask(const QDBusConnection& bus) {
  if (!bus.isConnected()) return;
  // From whoever sends it: to ask the bus for the portal's own name would mean to wait.
  QDBusConnection(bus).connect(QString(), Name(kPath), Name(kInterface), Name("SettingChanged"),
                               this, SLOT(SettingChanged(QDBusMessage)));
  QDBusMessage call = QDBusMessage::createMethodCall(Name(kService), Name(kPath), Name(kInterface),
                                                     Name("ReadAll"));
  call << QStringList{Name("org.freedesktop.appearance"), Name("org.gnome.desktop.interface"),
                      Name("org.gnome.desktop.a11y.interface"), Name("org.kde.kdeglobals.KDE")};
  auto* const watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
    watcher->deleteLater();
    TakeAnswer(*watcher);
  });
}

void DesktopWishesQt::TakeAnswer(QDBusPendingCallWatcher& answer) {
  const QDBusPendingReply<> reply = answer;
  if (reply.isError() || reply.reply().signature() != QLatin1String("a{sa{sv}}")) return;
  QMap<QString, QVariantMap> spaces;
  reply.reply().arguments().constFirst().value<QDBusArgument>() >> spaces;
  for (auto space = spaces.cbegin(); space != spaces.cend(); ++space) {
    for (auto key = space->cbegin(); key != space->cend(); ++key) {
      bool number = false;
      const double value = key->toDouble(&number);
      if (number) list_.Take(FromQString(space.key()), FromQString(key.key()), value);
    }
  }
  Tell();
}

void DesktopWishesQt::SettingChanged(const QDBusMessage& message) {
  if (message.signature() != QLatin1String("ssv")) return;
  const QList<QVariant> parts = message.arguments();
  bool number = false;
  const double now = parts[2].value<QDBusVariant>().variant().toDouble(&number);
  if (!number) return;
  if (list_.Take(FromQString(parts[0].toString()), FromQString(parts[1].toString()), now)) Tell();
}

void DesktopWishesQt::ReadFiles() {
  constexpr std::size_t kMost = std::size_t{64} * 1024;  // bytes
  const std::string folder = GetSpecialFolder(kSpecialAppData);
  for (const char* const name : {"gtk-3.0/settings.ini", "gtk-4.0/settings.ini"}) {
    std::string text;
    if (ReadWholeFile(folder + name, kMost, text)) list_.TakeGtkSettings(text);
  }
}

void DesktopWishesQt::Tell() {
  const DesktopWishes wishes = list_.Wishes();
  if (wishes == std::exchange(told_, wishes)) return;
  changed_(wishes);
}

}  // namespace kv
