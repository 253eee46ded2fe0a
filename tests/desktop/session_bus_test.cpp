#include "desktop/blanking_services_qt.h"
#include "desktop/bus_probe.h"
#include "desktop/mpris_service_qt.h"
#include "support/fake_mpris_host.h"
#include "support/private_bus_qt.h"
#include "support/virtual_time.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDBusVirtualObject>

#include <csignal>
#include <gtest/gtest.h>
#include <string>
#include <sys/types.h>

namespace kv {
namespace {

const QString kPlayerName = QStringLiteral("org.mpris.MediaPlayer2.kestrelview");

struct Player {
  Player(const QDBusConnection& bus, TimerSource& time)
      : service(bus), player(host, service, time, {"Kestrelview", "kestrelview", {"file"}, {}}) {
    host.state.target = "/m/a.mp3";
    host.state.running = true;
    host.state.duration = 100;
    service.Start(player);
  }
  FakeMprisHost host;
  MprisService service;
  MprisPlayer player;
};

QDBusMessage MethodOf(const QString& service, const char* interface, const char* method) {
  return QDBusMessage::createMethodCall(service, QStringLiteral("/org/mpris/MediaPlayer2"),
                                        QString::fromLatin1(interface),
                                        QString::fromLatin1(method));
}

class Listener : public QObject {
  Q_OBJECT

 public:
  QStringList news;
  Q_SLOT void PropertiesChanged(const QString& interface, const QVariantMap& changed,
                                const QStringList& /*invalid*/) {
    news += interface + QLatin1Char(' ') + QStringList(changed.keys()).join(QLatin1Char(' '));
  }
  Q_SLOT void Seeked(qlonglong position) { news += QStringLiteral("Seeked %1").arg(position); }
};

TEST(SessionBus, PlayersAnswerUnderTheirNames) {
  PrivateBus bus;
  if (!bus.Runs()) GTEST_SKIP() << "no dbus-daemon";
  VirtualTime time;
  const QDBusConnection client = bus.Connect();
  const auto has = [&client](const QString& name) {
    return WaitFor([&] { return client.interface()->isServiceRegistered(name).value(); });
  };
  Player first(bus.Connect(), time);
  ASSERT_TRUE(has(kPlayerName));
  Player second(bus.Connect(), time);
  EXPECT_TRUE(
      has(kPlayerName + QStringLiteral(".instance%1").arg(QCoreApplication::applicationPid())));

  Listener listener;
  QDBusConnection listening = client;
  const QString path = QStringLiteral("/org/mpris/MediaPlayer2");
  listening.connect(kPlayerName, path, QStringLiteral("org.freedesktop.DBus.Properties"),
                    QStringLiteral("PropertiesChanged"), &listener,
                    SLOT(PropertiesChanged(QString, QVariantMap, QStringList)));
  listening.connect(kPlayerName, path, QStringLiteral("org.mpris.MediaPlayer2.Player"),
                    QStringLiteral("Seeked"), &listener, SLOT(Seeked(qlonglong)));

  const auto text = [](const char* latin) { return QVariant(QString::fromLatin1(latin)); };
  constexpr auto kProperties = "org.freedesktop.DBus.Properties";
  constexpr auto kPlayer = "org.mpris.MediaPlayer2.Player";
  constexpr auto kRoot = "org.mpris.MediaPlayer2";
  const QVariant half = QVariant::fromValue(QDBusVariant(0.5));
  const QVariant track =
      QVariant::fromValue(QDBusObjectPath(QStringLiteral("/org/kestrelview/track/1")));
  const QVariant loud = QVariant::fromValue(QDBusVariant(QStringLiteral("loud")));
  struct Case {
    const char* interface;
    const char* method;
    QVariantList arguments;
    const char* answer;  // signature, or the last part of an error's name
  };
  const Case cases[] = {
      {kProperties, "GetAll", {text(kPlayer)}, "a{sv}"},
      {kProperties, "GetAll", {text(kRoot)}, "a{sv}"},
      {kProperties, "Get", {text(kPlayer), text("Position")}, "v"},
      {kProperties, "Get", {text(kPlayer), text("Colour")}, "UnknownProperty"},
      {kProperties, "Get", {text("org.kde.Colour"), text("Colour")}, "UnknownInterface"},
      {kProperties, "Set", {text(kPlayer), text("Volume"), half}, ""},
      {kProperties, "Set", {text(kPlayer), text("Volume"), loud}, "InvalidArgs"},
      {kProperties, "Set", {text(kPlayer), text("CanSeek"), half}, "PropertyReadOnly"},
      {kProperties, "Set", {text(kPlayer), text("Volume")}, "UnknownMethod"},
      {kPlayer, "PlayPause", {}, ""},
      {kPlayer, "SetPosition", {track, QVariant::fromValue<qlonglong>(50'000'000)}, ""},
      {kPlayer, "Seek", {QStringLiteral("far")}, "UnknownMethod"},
      {kPlayer, "OpenUri", {text("file:///a.mp3")}, ""},
      {kPlayer, "OpenUri", {text("data:,")}, "NotSupported"},
      {kRoot, "PlayPause", {}, "UnknownMethod"},
      {"org.freedesktop.DBus.Introspectable", "Introspect", {}, "s"},
      {"org.freedesktop.DBus.Peer", "Ping", {}, ""},
  };
  for (const Case& c : cases) {
    QDBusMessage call = MethodOf(kPlayerName, c.interface, c.method);
    call.setArguments(c.arguments);
    const QDBusMessage reply = CallAndWait(client, call);
    const QString what = reply.type() == QDBusMessage::ErrorMessage
                             ? reply.errorName().section(QLatin1Char('.'), -1)
                             : reply.signature();
    EXPECT_EQ(what.toStdString(), c.answer) << c.method;
  }
  EXPECT_TRUE(WaitFor([&] { return listener.news.size() >= 3; }));
  EXPECT_EQ(first.host.log, "pausemove 50");
  EXPECT_EQ(second.host.log, "");
  EXPECT_EQ(listener.news,
            QStringList({QStringLiteral("org.mpris.MediaPlayer2.Player Volume"),
                         QStringLiteral("org.mpris.MediaPlayer2.Player PlaybackStatus"),
                         QStringLiteral("Seeked 50000000")}));
}

// Both services that keep the screen from going blank.
class FakeDesktop : public QDBusVirtualObject {
  Q_OBJECT

 public:
  explicit FakeDesktop(const QDBusConnection& bus) : bus_(bus) {
    bus_.registerVirtualObject(QStringLiteral("/org/freedesktop"), this, QDBusConnection::SubPath);
  }
  void Offer(const char* name) { bus_.registerService(QString::fromLatin1(name)); }
  QStringList log;

  QString introspect(const QString& /*path*/) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    log += message.member();
    if (message.member() == QLatin1String("Inhibit")) {
      const bool portal = message.signature() == QLatin1String("sua{sv}");
      if (portal) log.back() += QString::number(message.arguments()[1].toUInt());
      connection.send(message.createReply(
          portal ? QVariant::fromValue(QDBusObjectPath(QStringLiteral("/org/freedesktop/r")))
                 : QVariant(42U)));
    } else if (!message.arguments().isEmpty()) {
      log.back() += QString::number(message.arguments()[0].toUInt());
    }
    return true;
  }

 private:
  QDBusConnection bus_;
};

TEST(SessionBus, TheScreenIsKeptByWhateverServiceThereIs) {
  PrivateBus bus;
  if (!bus.Runs()) GTEST_SKIP() << "no dbus-daemon";
  FakeDesktop desktop(bus.Connect());
  BlankingServicesQt services(bus.Connect());
  BlankingGuard guard(services);
  guard.SetPlaying(true);  // nobody there
  guard.SetPlaying(false);
  desktop.Offer("org.freedesktop.ScreenSaver");
  guard.SetPlaying(true);
  ASSERT_TRUE(WaitFor([&] { return desktop.log.size() == 1; }));
  guard.SetPlaying(false);
  ASSERT_TRUE(WaitFor([&] { return desktop.log.size() == 2; }));
  desktop.Offer("org.freedesktop.portal.Desktop");
  guard.SetPlaying(true);
  ASSERT_TRUE(WaitFor([&] { return desktop.log.size() == 3; }));
  guard.SetPlaying(false);
  ASSERT_TRUE(WaitFor([&] { return desktop.log.size() == 4; }));
  EXPECT_EQ(desktop.log, QStringList({QStringLiteral("Inhibit"), QStringLiteral("UnInhibit42"),
                                      QStringLiteral("Inhibit8"), QStringLiteral("Close")}));
}

TEST(SessionBus, OnlyASilentOneIsLeft) {
  PrivateBus bus;
  if (!bus.Runs()) GTEST_SKIP() << "no dbus-daemon";
  const std::string address = bus.Address().toStdString();
  EXPECT_TRUE(SessionBusAnswers(address + ",guid=1", 5000));
  const auto process = static_cast<pid_t>(bus.Daemon().processId());
  kill(process, SIGSTOP);
  EXPECT_FALSE(SessionBusAnswers("tcp:host=x;" + address, 20));
  kill(process, SIGCONT);
  EXPECT_TRUE(SessionBusAnswers("unix:path=/nowhere", 5000));
  EXPECT_TRUE(SessionBusAnswers("disabled:", 5000));
  EXPECT_TRUE(SessionBusAnswers("", 5000));
}

}  // namespace
}  // namespace kv

#include "session_bus_test.moc"
