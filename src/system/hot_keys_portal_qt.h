// Hot keys on desktops where no program may grab the keyboard: the portal for global shortcuts
// (org.freedesktop.portal.GlobalShortcuts, version 1).
//
// The portal asks the user, so that a key is granted here before the desktop has decided; one that
// the user refuses never calls. Interface thread only; nothing waits for the desktop.
#pragma once

#include "system/hot_keys.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QObject>
#include <QString>
#include <QTimer>
#include <QVariantMap>

#include <map>

namespace kv {

// One entry of the list that is bound.
struct PortalShortcut {
  QString id;
  QVariantMap options;
};

class PortalHotKeys : public QObject, public HotKeyPlatform {
  Q_OBJECT

 public:
  explicit PortalHotKeys(const QDBusConnection& bus = QDBusConnection::sessionBus());
  ~PortalHotKeys() override;

  // The desktop has the portal.
  static bool Available(const QDBusConnection& bus = QDBusConnection::sessionBus());

  bool RegisterHotKey(int id, unsigned Modifiers, int VirtualKey) override;
  void UnregisterHotKey(int id) override;

 private:
  Q_SLOT void SessionMade(uint response, const QVariantMap& results);
  Q_SLOT void Activated(const QDBusObjectPath& session, const QString& shortcut,
                        qulonglong timestamp, const QVariantMap& options);

  void CloseSession();
  void MakeSession();
  void BindShortcuts();
  QString NewRequestPath(QString& token);

  QDBusConnection bus_;
  std::map<int, QString> triggers_;  // by id
  QTimer changed_;                   // collects the keys that are asked for in one go
  QString request_;                  // the answer that is awaited
  QString session_;
  int tokens_ = 0;
};

}  // namespace kv

Q_DECLARE_METATYPE(kv::PortalShortcut)
