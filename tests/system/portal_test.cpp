// What the desktop is asked through its portal, on a bus of the test's own: dialogs, and the wishes
// of its user.
#include "support/private_bus_qt.h"
#include "system/desktop_wishes_qt.h"
#include "system/dialogs_qt.h"

#include <QApplication>
#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QDialog>
#include <QFileDialog>
#include <QMap>
#include <QTimer>

#include <csignal>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

using Spaces = QMap<QString, QVariantMap>;
Q_DECLARE_METATYPE(Spaces)

namespace kv {
namespace {

const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kGnome = QStringLiteral("org.gnome.desktop.interface");
const QString kAnimations = QStringLiteral("enable-animations");

// The desktop's side: notes what it is asked, and answers as it is told.
class FakePortal : public QDBusVirtualObject {
  Q_OBJECT

 public:
  explicit FakePortal(const QDBusConnection& bus) : bus_(bus) {
    bus_.registerVirtualObject(QStringLiteral("/org/freedesktop/portal"), this,
                               QDBusConnection::SubPath);
    bus_.registerService(kService);
  }

  std::function<void()> asked;  // instead of an answer
  bool refuse = false;
  bool own_handle = false;  // as portals did before callers could tell it beforehand
  uint response = 0;
  QVariantMap results;
  QString method;
  QVariantMap options;
  int closed = 0;

  QString introspect(const QString& /*path*/) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& /*bus*/) override {
    if (message.member() == QLatin1String("Close")) {
      ++closed;
      return true;
    }
    if (message.member() == QLatin1String("ReadAll")) {
      const Spaces spaces{{kGnome, {{kAnimations, false}, {QStringLiteral("font-name"), 12}}}};
      return bus_.send(message.createReply(QVariant::fromValue(spaces)));
    }
    method = message.member();
    options = qdbus_cast<QVariantMap>(message.arguments()[2].value<QDBusArgument>());
    if (refuse) return false;
    QString handle = QStringLiteral("/org/freedesktop/portal/mine");
    if (!own_handle) {
      QString sender = message.service().mid(1);
      sender.replace(QLatin1Char('.'), QLatin1Char('_'));
      handle = QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2")
                   .arg(sender, options.value(QStringLiteral("handle_token")).toString());
    }
    bus_.send(message.createReply(QVariant::fromValue(QDBusObjectPath(handle))));
    if (asked) return asked(), true;
    // A user takes a moment, in which an older caller listens to the handle it was given.
    QTimer::singleShot(own_handle ? 100 : 0, this, [this, handle] {
      QDBusMessage answer = QDBusMessage::createSignal(
          handle, QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"));
      answer << response << results;
      bus_.send(answer);
    });
    return true;
  }

  std::string Bytes(const char* option) const {
    return options.value(QString::fromLatin1(option)).toByteArray().toStdString();
  }

 private:
  QDBusConnection bus_;
};

class PortalTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!bus_.Runs()) GTEST_SKIP() << "no dbus-daemon";
    dialogs_.UsePortal(bus_.Connect());
  }
  static QVariantMap Uris(const char* uri) {
    return {{QStringLiteral("uris"), QStringList(QString::fromLatin1(uri))}};
  }
  // Whether the toolkit's dialog comes; its Cancel is pressed.
  void ExpectOwnDialog(const char* where) {
    bool seen = false;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
      auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
      if (dialog == nullptr) return;
      seen = true;
      dialog->reject();
    });
    timer.start(10);
    EXPECT_FALSE(dialogs_.ShowFileDialog({}).accepted) << where;
    EXPECT_TRUE(seen) << where;
  }

  PrivateBus bus_;
  DialogsQt dialogs_;
};

TEST_F(PortalTest, DialogsAskInThePlayersTermsAndBringBytesBack) {
  FakePortal portal(bus_.Connect());
  FileDialogRequest request;
  request.filter = "Media|*.mp3;*.wav|All|*.*";
  request.folder = "/m\xE9/";
  for (const bool own_handle : {false, true}) {
    portal.own_handle = own_handle;
    portal.results = Uris("file:///m%E9/a%20b.mp3");
    const FileDialogResult result = dialogs_.ShowFileDialog(request);
    EXPECT_EQ(result.file_name + "|" + result.title, "/m\xE9/a b.mp3|a b.mp3");
    EXPECT_TRUE(result.accepted);
    EXPECT_EQ(portal.method, QLatin1String("OpenFile"));
    EXPECT_EQ(portal.Bytes("current_folder"), std::string("/m\xE9/\0", 5));
    const auto filters = portal.options.value(QStringLiteral("filters")).value<QDBusArgument>();
    EXPECT_EQ(filters.currentSignature(), QLatin1String("a(sa(us))"));
  }
  // A group that is none of the format's costs no more than the group.
  portal.results.insert(QStringLiteral("current_filter"), QVariant::fromValue(QList<int>{1}));
  EXPECT_EQ(dialogs_.ShowFileDialog(request).file_name, "/m\xE9/a b.mp3");
  portal.own_handle = false;
  request.save = true;
  request.file_name = "copy.mp3";
  dialogs_.ShowFileDialog(request);
  EXPECT_EQ(portal.method, QLatin1String("SaveFile"));
  EXPECT_EQ(portal.options.value(QStringLiteral("current_name")).toString(),
            QLatin1String("copy.mp3"));
  portal.results = Uris("file:///music");
  EXPECT_EQ(dialogs_.BrowseForFolderDialog("Folder"), "/music");
  EXPECT_TRUE(portal.options.value(QStringLiteral("directory")).toBool());
  portal.response = 1;
  EXPECT_FALSE(dialogs_.ShowFileDialog(request).accepted);
  EXPECT_EQ(portal.closed, 0);
}

TEST_F(PortalTest, TheToolkitAsksWhereNobodyElseDoes) {
  ExpectOwnDialog("no portal");
  FakePortal portal(bus_.Connect());
  portal.refuse = true;
  ExpectOwnDialog("a portal without file dialogs");
  portal.refuse = false;
  portal.response = 2;
  ExpectOwnDialog("a portal whose dialog has failed");
  kill(static_cast<pid_t>(bus_.Daemon().processId()), SIGSTOP);
  ExpectOwnDialog("a bus that hangs");
  kill(static_cast<pid_t>(bus_.Daemon().processId()), SIGCONT);
}

TEST_F(PortalTest, DialogsEndWithTheProgramAndWithTheirOwner) {
  FakePortal portal(bus_.Connect());
  portal.asked = [] {
    // What the end of a login session does to a question that is open.
    auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    dialog->done(QDialog::Rejected);
  };
  EXPECT_FALSE(dialogs_.ShowFileDialog({}).accepted);
  EXPECT_TRUE(WaitFor([&] { return portal.closed == 1; }));
  auto* const owner = new QWidget;
  DialogsQt owned(owner);
  owned.UsePortal(bus_.Connect());
  portal.asked = [owner] { delete owner; };
  EXPECT_FALSE(owned.ShowFileDialog({}).accepted);
  EXPECT_TRUE(WaitFor([&] { return portal.closed == 2; }));
}

TEST_F(PortalTest, TheUsersWishesAreAskedForAndFollowed) {
  qDBusRegisterMetaType<Spaces>();
  const QDBusConnection serving = bus_.Connect();
  const FakePortal portal(serving);
  std::vector<bool> told;
  DesktopWishesQt wishes([&](const DesktopWishes& now) { told.push_back(now.reduced_motion); },
                         nullptr);
  wishes.Ask(bus_.Connect());
  EXPECT_TRUE(WaitFor([&] { return !told.empty(); }));
  EXPECT_EQ(told, std::vector<bool>{true});

  QDBusMessage changed = QDBusMessage::createSignal(
      QStringLiteral("/org/freedesktop/portal/desktop"),
      QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("SettingChanged"));
  changed << kGnome << kAnimations << QVariant::fromValue(QDBusVariant(true));
  serving.send(changed);
  EXPECT_TRUE(WaitFor([&] { return told.size() == 2; }));
  EXPECT_EQ(told, (std::vector<bool>{true, false}));
}

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

}  // namespace
}  // namespace kv

#include "portal_test.moc"
