// A session bus of a test's own, gone with it. Where no bus can be started `Runs()` is false.
#pragma once

#include "support/temp_folder.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <functional>

namespace kv {

class PrivateBus {
 public:
  PrivateBus() {
    address_ = QStringLiteral("unix:path=") + QString::fromStdString(folder_.Path("bus"));
    daemon_.start(
        QStringLiteral("dbus-daemon"),
        {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--nopidfile"),
         QStringLiteral("--print-address"), QStringLiteral("--address=") + address_});
    runs_ = daemon_.waitForReadyRead(10000);
  }
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;
  ~PrivateBus() {
    for (const QString& name : names_) QDBusConnection::disconnectFromBus(name);
    daemon_.kill();
    daemon_.waitForFinished();
  }

  bool Runs() const { return runs_; }
  QProcess& Daemon() { return daemon_; }
  const QString& Address() const { return address_; }

  // Another connection, as of another program.
  QDBusConnection Connect() {
    static int count = 0;
    names_ += QStringLiteral("test%1").arg(++count);
    return QDBusConnection::connectToBus(address_, names_.back());
  }

 private:
  TempFolder folder_;
  QProcess daemon_;
  QString address_;
  QStringList names_;
  bool runs_ = false;
};

// Lets events happen until `done`; false when that takes more than ten seconds.
inline bool WaitFor(const std::function<bool()>& done) {
  QElapsedTimer clock;
  clock.start();
  QEventLoop loop;
  while (!done()) {
    if (clock.elapsed() > 10000) return false;
    loop.processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 50);
  }
  return true;
}

// The answer to a call whose other side may be this very thread.
inline QDBusMessage CallAndWait(const QDBusConnection& bus, const QDBusMessage& message) {
  const QDBusPendingCall call = bus.asyncCall(message);
  QDBusPendingCallWatcher watcher(call);
  WaitFor([&watcher] { return watcher.isFinished(); });
  return watcher.reply();
}

}  // namespace kv
