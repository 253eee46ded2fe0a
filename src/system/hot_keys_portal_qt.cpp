#include "system/hot_keys_portal_qt.h"

#include "system/key_symbols.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMetaType>
#include <QDBusReply>
#include <QList>

namespace kv {
namespace {

constexpr auto kService = "org.freedesktop.portal.Desktop";
constexpr auto kPath = "/org/freedesktop/portal/desktop";
constexpr auto kInterface = "org.freedesktop.portal.GlobalShortcuts";
constexpr auto kRequest = "org.freedesktop.portal.Request";
constexpr auto kSession = "org.freedesktop.portal.Session";
constexpr int kProbeMilliseconds = 500;

QString Name(const char* text) {
  return QString::fromLatin1(text);
}

QDBusMessage CallOf(const QString& path, const char* interface, const char* method) {
  return QDBusMessage::createMethodCall(Name(kService), path, Name(interface), Name(method));
}

// The notation of the shortcuts specification: "CTRL+ALT+a". Empty when there is no such key.
QString TriggerOf(unsigned Modifiers, int VirtualKey) {
  constexpr struct {
    unsigned modifier;
    const char* text;
  } kRows[] = {
      {kModControl, "CTRL+"}, {kModAlt, "ALT+"}, {kModShift, "SHIFT+"}, {kModWin, "LOGO+"}};
  const KeySymbol symbol = KeySymbolOf(VirtualKey);
  if (symbol.keysym == 0) return {};
  QString trigger;
  for (const auto& row : kRows) {
    if ((Modifiers & row.modifier) == 0) continue;
    trigger += Name(row.text);
    Modifiers &= ~row.modifier;
  }
  return Modifiers == 0 ? trigger + QString::fromStdString(symbol.name) : QString();
}

}  // namespace

QDBusArgument& operator<<(QDBusArgument& argument, const PortalShortcut& shortcut) {
  argument.beginStructure();
  argument << shortcut.id << shortcut.options;
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, PortalShortcut& shortcut) {
  argument.beginStructure();
  argument >> shortcut.id >> shortcut.options;
  argument.endStructure();
  return argument;
}

PortalHotKeys::PortalHotKeys(const QDBusConnection& bus) : bus_(bus) {
  qDBusRegisterMetaType<PortalShortcut>();
  qDBusRegisterMetaType<QList<PortalShortcut>>();
  changed_.setSingleShot(true);
  connect(&changed_, &QTimer::timeout, this, &PortalHotKeys::MakeSession);
  bus_.connect(Name(kService), Name(kPath), Name(kInterface), QStringLiteral("Activated"), this,
               SLOT(Activated(QDBusObjectPath, QString, qulonglong, QVariantMap)));
}

PortalHotKeys::~PortalHotKeys() {
  CloseSession();
}

bool PortalHotKeys::Available(const QDBusConnection& bus) {
  if (!bus.isConnected()) return false;
  QDBusMessage ask = CallOf(Name(kPath), "org.freedesktop.DBus.Properties", "Get");
  ask << Name(kInterface) << QStringLiteral("version");
  return bus.call(ask, QDBus::Block, kProbeMilliseconds).type() == QDBusMessage::ReplyMessage;
}

bool PortalHotKeys::RegisterHotKey(int id, unsigned Modifiers, int VirtualKey) {
  const QString trigger = TriggerOf(Modifiers, VirtualKey);
  if (trigger.isEmpty()) return false;
  for (const auto& [other_id, other] : triggers_) {
    if (other_id == id || other == trigger) return false;
  }
  triggers_.emplace(id, trigger);
  changed_.start(0);
  return true;
}

void PortalHotKeys::UnregisterHotKey(int id) {
  if (triggers_.erase(id) != 0) changed_.start(0);
}

void PortalHotKeys::CloseSession() {
  if (!request_.isEmpty()) {
    bus_.disconnect(Name(kService), request_, Name(kRequest), QStringLiteral("Response"), this,
                    SLOT(SessionMade(uint, QVariantMap)));
    bus_.send(CallOf(request_, kRequest, "Close"));
    request_.clear();
  }
  if (!session_.isEmpty()) bus_.send(CallOf(session_, kSession, "Close"));
  session_.clear();
}

// The portal answers at a path that the caller can tell beforehand.
QString PortalHotKeys::NewRequestPath(QString& token) {
  token = QStringLiteral("kestrelview%1").arg(++tokens_);
  QString sender = bus_.baseService().mid(1);
  sender.replace(QLatin1Char('.'), QLatin1Char('_'));
  return QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2").arg(sender, token);
}

// A session's keys are bound once and for all, so that other keys need another session.
void PortalHotKeys::MakeSession() {
  CloseSession();
  if (triggers_.empty()) return;
  QString token;
  request_ = NewRequestPath(token);
  bus_.connect(Name(kService), request_, Name(kRequest), QStringLiteral("Response"), this,
               SLOT(SessionMade(uint, QVariantMap)));
  QDBusMessage call = CallOf(Name(kPath), kInterface, "CreateSession");
  call << QVariantMap{{QStringLiteral("handle_token"), token},
                      {QStringLiteral("session_handle_token"), token}};
  bus_.send(call);
}

void PortalHotKeys::SessionMade(uint response, const QVariantMap& results) {
  bus_.disconnect(Name(kService), request_, Name(kRequest), QStringLiteral("Response"), this,
                  SLOT(SessionMade(uint, QVariantMap)));
  request_.clear();
  session_ = results.value(QStringLiteral("session_handle")).toString();
  if (response == 0 && !session_.isEmpty()) BindShortcuts();
}

void PortalHotKeys::BindShortcuts() {
  QList<PortalShortcut> shortcuts;
  for (const auto& [id, trigger] : triggers_) {
    // The description is what the desktop's settings list; the key says most about itself.
    shortcuts.append({QString::number(id),
                      {{QStringLiteral("description"), trigger},
                       {QStringLiteral("preferred_trigger"), trigger}}});
  }
  QString token;
  NewRequestPath(token);
  QDBusMessage call = CallOf(Name(kPath), kInterface, "BindShortcuts");
  call << QVariant::fromValue(QDBusObjectPath(session_)) << QVariant::fromValue(shortcuts)
       << QString() << QVariantMap{{QStringLiteral("handle_token"), token}};
  bus_.send(call);
}

void PortalHotKeys::Activated(const QDBusObjectPath& session, const QString& shortcut,
                              qulonglong /*timestamp*/, const QVariantMap& /*options*/) {
  if (session.path() != session_) return;
  bool number = false;
  const int id = shortcut.toInt(&number);
  if (number && triggers_.contains(id) && on_hot_key) on_hot_key(id);
}

}  // namespace kv
