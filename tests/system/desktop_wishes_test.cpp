// What the desktop's user wishes, as a portal on a bus of its own tells it.
#include "system/desktop_wishes_qt.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVirtualObject>
#include <QElapsedTimer>
#include <QMap>
#include <QProcess>
#include <QStandardPaths>

#include <gtest/gtest.h>
#include <string>
#include <vector>

using Spaces = QMap<QString, QVariantMap>;
Q_DECLARE_METATYPE(Spaces)

namespace kv {
namespace {

TEST(DesktopWishList, OneAnswerThatAsksIsEnough) {
  const struct {
    const char* space;
    const char* key;
    double value;
    DesktopWishes wishes;
  } rows[] = {
      {"org.freedesktop.appearance", "reduced-motion", 1, {true, false}},
      {"org.gnome.desktop.interface", "enable-animations", 1, {true, false}},
      {"org.freedesktop.appearance", "reduced-motion", 0, {false, false}},
      {"org.gnome.desktop.interface", "enable-animations", 0, {true, false}},
      {"org.gnome.desktop.interface", "enable-animations", 1, {false, false}},
      {"org.kde.kdeglobals.KDE", "AnimationDurationFactor", 0.5, {false, false}},
      {"org.freedesktop.appearance", "contrast", 1, {false, true}},
      {"org.freedesktop.appearance", "color-scheme", 1, {false, true}},
  };
  DesktopWishList list;  // each row on top of those before
  for (const auto& row : rows) {
    list.Take(row.space, row.key, row.value);
    EXPECT_EQ(list.Wishes(), row.wishes) << row.space << " " << row.key << " " << row.value;
  }
  list.TakeGtkSettings("[Settings]\ngtk-enable-animations = 0\n");
  EXPECT_TRUE(list.Wishes().reduced_motion);
  list.TakeGtkSettings("[Settings]\ngtk-enable-animations=true\n");
  EXPECT_FALSE(list.Wishes().reduced_motion);
}

class FakePortal : public QDBusVirtualObject {
 public:
  QString introspect(const QString& /*path*/) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    if (message.member() != QLatin1String("ReadAll")) return false;
    Spaces spaces;
    spaces[QStringLiteral("org.gnome.desktop.interface")][QStringLiteral("enable-animations")] =
        false;
    spaces[QStringLiteral("org.gnome.desktop.interface")][QStringLiteral("font-name")] =
        QStringLiteral("Sans");
    return connection.send(message.createReply(QVariant::fromValue(spaces)));
  }
};

TEST(DesktopWishesQt, AsksThePortalAndFollowsChanges) {
  if (QStandardPaths::findExecutable(QStringLiteral("dbus-daemon")).isEmpty()) {
    GTEST_SKIP() << "no dbus-daemon";
  }
  qDBusRegisterMetaType<Spaces>();
  QProcess daemon;
  daemon.start(
      QStringLiteral("dbus-daemon"),
      {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address")});
  ASSERT_TRUE(daemon.waitForReadyRead(20000));
  const QString address = QString::fromUtf8(daemon.readLine()).trimmed();
  {
    const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
    QDBusConnection asking = QDBusConnection::connectToBus(address, QStringLiteral("asking"));
    QDBusConnection serving = QDBusConnection::connectToBus(address, QStringLiteral("serving"));
    FakePortal portal;
    ASSERT_TRUE(serving.registerVirtualObject(path, &portal));
    ASSERT_TRUE(serving.registerService(QStringLiteral("org.freedesktop.portal.Desktop")));

    std::vector<bool> told;
    DesktopWishesQt wishes([&](const DesktopWishes& now) { told.push_back(now.reduced_motion); },
                           nullptr);
    const auto wait_for = [&](std::size_t count) {
      QElapsedTimer clock;
      clock.start();
      while (told.size() < count && clock.elapsed() < 20000) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
      }
    };
    wishes.Ask(asking);
    wait_for(1);
    EXPECT_EQ(told, std::vector<bool>{true});

    QDBusMessage changed = QDBusMessage::createSignal(
        path, QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("SettingChanged"));
    changed << QStringLiteral("org.gnome.desktop.interface") << QStringLiteral("enable-animations")
            << QVariant::fromValue(QDBusVariant(true));
    serving.send(changed);
    wait_for(2);
    EXPECT_EQ(told, (std::vector<bool>{true, false}));
  }
  QDBusConnection::disconnectFromBus(QStringLiteral("asking"));
  QDBusConnection::disconnectFromBus(QStringLiteral("serving"));
  daemon.terminate();
  daemon.waitForFinished(20000);
}

}  // namespace
}  // namespace kv
