// Asks the desktop what its user wishes, by the portal's settings, and follows changes.
//
// Asks late and without waiting, so that a start pays nothing for it; a desktop that has no portal
// is read from its files. Owned by the main window; interface thread only.
#pragma once

#include "system/desktop_wishes.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

#include <functional>

class QDBusPendingCallWatcher;

namespace kv {

class DesktopWishesQt : public QObject {
  Q_OBJECT

 public:
  using Changed = std::function<void(const DesktopWishes& wishes)>;

  // `changed` is called with the first answer that asks for anything, and with every other one.
  DesktopWishesQt(Changed changed, QObject* parent);

  // Asks on the user's session bus after `delay` milliseconds.
  void AskLater(int delay);

  // Asks on `bus`, now.
  void Ask(const QDBusConnection& bus);

 private Q_SLOTS:
  void SettingChanged(const QDBusMessage& message);

 private:
  void TakeAnswer(QDBusPendingCallWatcher& answer);
  void ReadFiles();
  void Tell();

  Changed changed_;
  DesktopWishList list_;
  DesktopWishes told_;
};

}  // namespace kv
