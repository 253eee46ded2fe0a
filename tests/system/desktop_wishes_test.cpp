// What the desktop's user wishes, as a portal on a bus of its own tells it.
#include "support/private_bus_qt.h"
#include "system/desktop_wishes_qt.h"

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVirtualObject>
#include <QMap>

#include <gtest/gtest.h>
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
      {"org.kde.kdeglobals.KDE", "AnimationDurationFactor", 0, {true, false}},
      {"org.freedesktop.appearance", "contrast", 1, {true, true}},
  };
  DesktopWishList list;  // each row on top of those before
  for (const auto& row : rows) {
    list.Take(row.space, row.key, row.value);
    EXPECT_EQ(list.Wishes(), row.wishes) << row.space << " " << row.key << " " << row.value;
  }
  DesktopWishList gtk;
  gtk.TakeGtkSettings("[Settings]\ngtk-enable-animations = 0\n");
  EXPECT_TRUE(gtk.Wishes().reduced_motion);
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
  PrivateBus bus;
  if (!bus.Runs()) GTEST_SKIP() << "no dbus-daemon";
  qDBusRegisterMetaType<Spaces>();
  const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
  QDBusConnection serving = bus.Connect();
  FakePortal portal;
  ASSERT_TRUE(serving.registerVirtualObject(path, &portal));
  ASSERT_TRUE(serving.registerService(QStringLiteral("org.freedesktop.portal.Desktop")));

  std::vector<bool> told;
  DesktopWishesQt wishes([&](const DesktopWishes& now) { told.push_back(now.reduced_motion); },
                         nullptr);
  wishes.Ask(bus.Connect());
  EXPECT_TRUE(WaitFor([&] { return !told.empty(); }));
  EXPECT_EQ(told, std::vector<bool>{true});

  QDBusMessage changed = QDBusMessage::createSignal(
      path, QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("SettingChanged"));
  changed << QStringLiteral("org.gnome.desktop.interface") << QStringLiteral("enable-animations")
          << QVariant::fromValue(QDBusVariant(true));
  serving.send(changed);
  EXPECT_TRUE(WaitFor([&] { return told.size() == 2; }));
  EXPECT_EQ(told, (std::vector<bool>{true, false}));
}

}  // namespace
}  // namespace kv
