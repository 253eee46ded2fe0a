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
#include <vector>

namespace kv {
namespace {

class FakePortal : public QDBusVirtualObject {
 public:
  QString introspect(const QString& /*path*/) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    if (message.member() != QLatin1String("PickColor")) return false;
    const auto options = qdbus_cast<QVariantMap>(message.arguments().value(1));
    const QString sender = message.service().mid(1).replace(QLatin1Char('.'), QLatin1Char('_'));
    const QString path = QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2")
                             .arg(sender, options.value(QStringLiteral("handle_token")).toString());
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
  std::vector<std::optional<std::int32_t>> answers;
  portal.PickColor([&](std::int32_t picked) { answers.emplace_back(picked); },
                   [&] { answers.emplace_back(); });
  EXPECT_TRUE(WaitFor([&] { return !answers.empty(); }));
  QCoreApplication::processEvents();
  EXPECT_EQ(answers.size(), 1U);
  return answers[0];
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
  serving.registerVirtualObject(QStringLiteral("/org/freedesktop/portal/desktop"), &fake);
  ASSERT_TRUE(serving.registerService(QStringLiteral("org.freedesktop.portal.Desktop")));
  EXPECT_EQ(Ask(portal), 0x0080FF);
  fake.empty = true;
  EXPECT_EQ(Ask(portal), -1);
  fake.response = 1;  // cancelled
  EXPECT_EQ(Ask(portal), -1);
}

}  // namespace
}  // namespace kv
