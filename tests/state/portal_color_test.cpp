// The desktop's colour picker, played by a portal on a bus of its own.
#include "state/portal_color_qt.h"
#include "support/private_bus_qt.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>

#include <gtest/gtest.h>
#include <optional>

namespace kv {
namespace {

class FakePortal : public QDBusVirtualObject {
 public:
  QString introspect(const QString& /*path*/) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    if (message.member() != QLatin1String("PickColor")) return false;
    const auto options = qdbus_cast<QVariantMap>(message.arguments().value(1));
    const QString sender = message.service().mid(1).replace(QLatin1Char('.'), QLatin1Char('_'));
    const QString path = QStringLiteral("/org/freedesktop/portal/desktop/request/") + sender +
                         QLatin1Char('/') +
                         options.value(QStringLiteral("handle_token")).toString();
    QDBusArgument color;
    color.beginStructure();
    color << 1.0 << 0.5 << -3.0;
    color.endStructure();
    QDBusMessage signal = QDBusMessage::createSignal(
        path, QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"));
    QVariantMap results;
    if (!empty) results.insert(QStringLiteral("color"), QVariant::fromValue(color));
    signal << response << results;
    // The answer may come before the call has returned.
    connection.send(signal);
    return connection.send(message.createReply(QVariant::fromValue(QDBusObjectPath(path))));
  }
  uint response = 0;
  bool empty = false;
};

// What PickColor brings: a colour, or nothing when it is refused.
std::optional<std::int32_t> Ask(PortalColor& portal) {
  std::optional<std::int32_t> color;
  bool over = false;
  int calls = 0;
  portal.PickColor(
      [&](std::int32_t picked) {
        color = picked;
        over = true;
        ++calls;
      },
      [&] {
        over = true;
        ++calls;
      });
  EXPECT_TRUE(WaitFor([&] { return over; }));
  QCoreApplication::processEvents();
  EXPECT_EQ(calls, 1);
  return color;
}

TEST(PortalColor, AnswersOrRefuses) {
  PortalColor nowhere(QDBusConnection(QStringLiteral("nowhere")), nullptr);
  EXPECT_EQ(Ask(nowhere), std::nullopt);

  PrivateBus bus;
  if (!bus.Runs()) GTEST_SKIP() << "no dbus-daemon";
  QDBusConnection serving = bus.Connect();
  PortalColor portal(bus.Connect(), nullptr);
  EXPECT_EQ(Ask(portal), std::nullopt);  // a desktop without it

  FakePortal fake;
  ASSERT_TRUE(
      serving.registerVirtualObject(QStringLiteral("/org/freedesktop/portal/desktop"), &fake));
  ASSERT_TRUE(serving.registerService(QStringLiteral("org.freedesktop.portal.Desktop")));
  EXPECT_EQ(Ask(portal), 0x0080FF);
  fake.empty = true;
  EXPECT_EQ(Ask(portal), -1);
  fake.response = 1;  // cancelled
  EXPECT_EQ(Ask(portal), -1);
}

}  // namespace
}  // namespace kv
