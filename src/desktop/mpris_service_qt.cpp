#include "desktop/mpris_service_qt.h"

#include <QCoreApplication>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QStringList>
#include <QTimer>
#include <QVariantMap>

#include <algorithm>
#include <array>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>

namespace kv {
namespace {

constexpr auto kName = "org.mpris.MediaPlayer2.kestrelview";
constexpr auto kPath = "/org/mpris/MediaPlayer2";
constexpr auto kPlayerInterface = "org.mpris.MediaPlayer2.Player";
constexpr auto kPropertiesInterface = "org.freedesktop.DBus.Properties";
constexpr auto kBusName = "org.freedesktop.DBus";
constexpr auto kBusPath = "/org/freedesktop/DBus";

constexpr auto kUnknownInterface = "org.freedesktop.DBus.Error.UnknownInterface";
constexpr auto kUnknownMethod = "org.freedesktop.DBus.Error.UnknownMethod";
constexpr auto kUnknownProperty = "org.freedesktop.DBus.Error.UnknownProperty";
constexpr auto kReadOnly = "org.freedesktop.DBus.Error.PropertyReadOnly";
constexpr auto kInvalid = "org.freedesktop.DBus.Error.InvalidArgs";
constexpr auto kNotSupported = "org.freedesktop.DBus.Error.NotSupported";

// Answers of the bus to who asks for a name.
constexpr uint kDoNotQueue = 4;
constexpr uint kOwner = 1;
constexpr uint kOwnerAlready = 4;

constexpr std::array kInterfaces = {"org.mpris.MediaPlayer2", kPlayerInterface};

constexpr auto kIntrospectable = "org.freedesktop.DBus.Introspectable";

// The interfaces that every object has.
constexpr auto kCommonIntrospection = R"xml(
<interface name="org.freedesktop.DBus.Properties">
  <method name="Get">
    <arg name="interface" type="s" direction="in"/>
    <arg name="name" type="s" direction="in"/>
    <arg name="value" type="v" direction="out"/>
  </method>
  <method name="GetAll">
    <arg name="interface" type="s" direction="in"/>
    <arg name="values" type="a{sv}" direction="out"/>
  </method>
  <method name="Set">
    <arg name="interface" type="s" direction="in"/>
    <arg name="name" type="s" direction="in"/>
    <arg name="value" type="v" direction="in"/>
  </method>
  <signal name="PropertiesChanged">
    <arg name="interface" type="s"/>
    <arg name="changed" type="a{sv}"/>
    <arg name="invalidated" type="as"/>
  </signal>
</interface>
<interface name="org.freedesktop.DBus.Introspectable">
  <method name="Introspect"><arg name="xml" type="s" direction="out"/></method>
</interface>
<interface name="org.freedesktop.DBus.Peer">
  <method name="Ping"/>
  <method name="GetMachineId"><arg name="id" type="s" direction="out"/></method>
</interface>
)xml";

constexpr auto kIntrospection = R"xml(
<interface name="org.mpris.MediaPlayer2">
  <method name="Raise"/>
  <method name="Quit"/>
  <property name="CanQuit" type="b" access="read"/>
  <property name="Fullscreen" type="b" access="readwrite"/>
  <property name="CanSetFullscreen" type="b" access="read"/>
  <property name="CanRaise" type="b" access="read"/>
  <property name="HasTrackList" type="b" access="read"/>
  <property name="Identity" type="s" access="read"/>
  <property name="DesktopEntry" type="s" access="read"/>
  <property name="SupportedUriSchemes" type="as" access="read"/>
  <property name="SupportedMimeTypes" type="as" access="read"/>
</interface>
<interface name="org.mpris.MediaPlayer2.Player">
  <method name="Next"/>
  <method name="Previous"/>
  <method name="Pause"/>
  <method name="PlayPause"/>
  <method name="Stop"/>
  <method name="Play"/>
  <method name="Seek"><arg name="Offset" type="x" direction="in"/></method>
  <method name="SetPosition">
    <arg name="TrackId" type="o" direction="in"/>
    <arg name="Position" type="x" direction="in"/>
  </method>
  <method name="OpenUri"><arg name="Uri" type="s" direction="in"/></method>
  <signal name="Seeked"><arg name="Position" type="x"/></signal>
  <property name="PlaybackStatus" type="s" access="read"/>
  <property name="LoopStatus" type="s" access="readwrite"/>
  <property name="Rate" type="d" access="readwrite"/>
  <property name="Shuffle" type="b" access="readwrite"/>
  <property name="Metadata" type="a{sv}" access="read"/>
  <property name="Volume" type="d" access="readwrite"/>
  <property name="Position" type="x" access="read">
    <annotation name="org.freedesktop.DBus.Property.EmitsChangedSignal" value="false"/>
  </property>
  <property name="MinimumRate" type="d" access="read"/>
  <property name="MaximumRate" type="d" access="read"/>
  <property name="CanGoNext" type="b" access="read"/>
  <property name="CanGoPrevious" type="b" access="read"/>
  <property name="CanPlay" type="b" access="read"/>
  <property name="CanPause" type="b" access="read"/>
  <property name="CanSeek" type="b" access="read"/>
  <property name="CanControl" type="b" access="read">
    <annotation name="org.freedesktop.DBus.Property.EmitsChangedSignal" value="false"/>
  </property>
</interface>
)xml";

QString Name(const char* text) {
  return QString::fromLatin1(text);
}

template <class... T>
QVariant ToVariant(const std::variant<T...>& value);

struct VariantOf {
  QVariant operator()(bool value) const { return value; }
  QVariant operator()(double value) const { return value; }
  QVariant operator()(std::int32_t value) const { return value; }
  QVariant operator()(std::int64_t value) const { return QVariant::fromValue<qlonglong>(value); }
  QVariant operator()(const std::string& value) const { return QString::fromStdString(value); }
  QVariant operator()(const BusPath& value) const {
    return QVariant::fromValue(QDBusObjectPath(QString::fromStdString(value.path)));
  }
  QVariant operator()(const std::vector<std::string>& value) const {
    QStringList list;
    for (const std::string& text : value) list += QString::fromStdString(text);
    return list;
  }
  QVariant operator()(const MediaMetadata& value) const {
    QVariantMap map;
    for (const auto& [name, field] : value) {
      map.insert(QString::fromStdString(name), ToVariant(field));
    }
    return map;
  }
};

template <class... T>
QVariant ToVariant(const std::variant<T...>& value) {
  return std::visit(VariantOf(), value);
}

QVariantMap ToMap(const MprisProperties& properties) {
  QVariantMap map;
  for (const auto& [name, value] : properties) {
    map.insert(QString::fromStdString(name), ToVariant(value));
  }
  return map;
}

// Nothing for a type that no property here can be set to.
std::optional<MprisValue> FromVariant(const QVariant& value) {
  switch (value.typeId()) {
    case QMetaType::Bool:
      return value.toBool();
    case QMetaType::Double:
      return value.toDouble();
    case QMetaType::QString:
      return value.toString().toStdString();
    default:
      return std::nullopt;
  }
}

std::optional<MprisInterface> InterfaceOf(const QString& name) {
  const auto* const found = std::find_if(kInterfaces.begin(), kInterfaces.end(),
                                         [&name](const char* each) { return name == Name(each); });
  if (found == kInterfaces.end()) return std::nullopt;
  return static_cast<MprisInterface>(found - kInterfaces.begin());
}

}  // namespace

MprisService::MprisService(const QDBusConnection& bus) : bus_(bus) {}

MprisService::~MprisService() {
  bus_.unregisterObject(Name(kPath));
}

void MprisService::Stop() {
  if (player_ == nullptr) return;
  bus_.unregisterObject(Name(kPath));
  player_->End();
  player_ = nullptr;
}

void MprisService::Start(MprisPlayer& player) {
  player_ = &player;
  if (!bus_.registerVirtualObject(Name(kPath), this)) return;
  AskForName(Name(kName), true);
}

void MprisService::AskForName(const QString& name, bool may_add_number) {
  QDBusMessage ask = QDBusMessage::createMethodCall(Name(kBusName), Name(kBusPath), Name(kBusName),
                                                    QStringLiteral("RequestName"));
  ask << name << kDoNotQueue;
  auto* const watcher = new QDBusPendingCallWatcher(bus_.asyncCall(ask), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [=, this] {
    watcher->deleteLater();
    const QDBusPendingReply<uint> answer = *watcher;
    if (answer.isError() || player_ == nullptr) return;
    if (answer.value() == kOwner || answer.value() == kOwnerAlready) {
      player_->Begin();
    } else if (may_add_number) {
      AskForName(name + QStringLiteral(".instance%1").arg(QCoreApplication::applicationPid()),
                 false);
    }
  });
}

void MprisService::PropertiesChanged(MprisInterface interface, const MprisProperties& changed) {
  QDBusMessage news = QDBusMessage::createSignal(Name(kPath), Name(kPropertiesInterface),
                                                 QStringLiteral("PropertiesChanged"));
  news << Name(kInterfaces.at(static_cast<std::size_t>(interface))) << ToMap(changed)
       << QStringList();
  bus_.send(news);
}

void MprisService::Seeked(std::int64_t position) {
  QDBusMessage news =
      QDBusMessage::createSignal(Name(kPath), Name(kPlayerInterface), QStringLiteral("Seeked"));
  news << QVariant::fromValue<qlonglong>(position);
  bus_.send(news);
}

QString MprisService::introspect(const QString& /*path*/) const {
  return Name(kIntrospection);
}

bool MprisService::handleMessage(const QDBusMessage& message,
                                 const QDBusConnection& /*connection*/) {
  if (player_ == nullptr || message.type() != QDBusMessage::MethodCallMessage) return false;
  QDBusMessage answer = message.interface() == Name(kPropertiesInterface)
                            ? AnswerProperties(message)
                            : AnswerCommand(message);
  if (message.isReplyRequired()) bus_.send(answer);
  return true;
}

QDBusMessage MprisService::AnswerProperties(const QDBusMessage& message) {
  const QString member = message.member();
  const QVariantList arguments = message.arguments();
  const auto wanted = [&](const char* method, const char* signature) {
    return member == Name(method) && message.signature() == Name(signature);
  };
  const bool get = wanted("Get", "ss");
  const bool get_all = wanted("GetAll", "s");
  const bool set = wanted("Set", "ssv");
  if (!get && !get_all && !set) {
    return message.createErrorReply(Name(kUnknownMethod), QStringLiteral("No such method"));
  }
  const auto interface = InterfaceOf(arguments[0].toString());
  if (!interface) {
    return message.createErrorReply(Name(kUnknownInterface), QStringLiteral("No such interface"));
  }
  if (get_all) return message.createReply(ToMap(player_->Properties(*interface)));
  const std::string name = arguments[1].toString().toStdString();
  if (get) {
    const MprisProperties all = player_->Properties(*interface);
    const auto property = all.find(name);
    if (property == all.end()) {
      return message.createErrorReply(Name(kUnknownProperty), QStringLiteral("No such property"));
    }
    return message.createReply(QVariant::fromValue(QDBusVariant(ToVariant(property->second))));
  }
  const auto value = FromVariant(arguments[2].value<QDBusVariant>().variant());
  switch (value ? player_->Set(*interface, name, *value) : MprisPlayer::SetResult::kWrongType) {
    case MprisPlayer::SetResult::kDone:
      return message.createReply();
    case MprisPlayer::SetResult::kUnknown:
      return message.createErrorReply(Name(kUnknownProperty), QStringLiteral("No such property"));
    case MprisPlayer::SetResult::kReadOnly:
      return message.createErrorReply(Name(kReadOnly), QStringLiteral("Not to be set"));
    case MprisPlayer::SetResult::kWrongType:
      break;
  }
  return message.createErrorReply(Name(kInvalid), QStringLiteral("Not such a value"));
}

QDBusMessage MprisService::AnswerCommand(const QDBusMessage& message) {
  struct Command {
    MprisInterface interface;
    const char* name;
    const char* signature;
    void (*run)(MprisPlayer& player, const QVariantList& arguments);
  };
  using Arguments = const QVariantList&;
  static constexpr std::array kCommands = {
      Command{MprisInterface::kRoot, "Raise", "", [](MprisPlayer& p, Arguments) { p.Raise(); }},
      Command{MprisInterface::kRoot, "Quit", "", [](MprisPlayer& p, Arguments) { p.Quit(); }},
      Command{MprisInterface::kPlayer, "Next", "", [](MprisPlayer& p, Arguments) { p.Next(); }},
      Command{MprisInterface::kPlayer, "Previous", "",
              [](MprisPlayer& p, Arguments) { p.Previous(); }},
      Command{MprisInterface::kPlayer, "Pause", "", [](MprisPlayer& p, Arguments) { p.Pause(); }},
      Command{MprisInterface::kPlayer, "PlayPause", "",
              [](MprisPlayer& p, Arguments) { p.PlayPause(); }},
      Command{MprisInterface::kPlayer, "Stop", "", [](MprisPlayer& p, Arguments) { p.Stop(); }},
      Command{MprisInterface::kPlayer, "Play", "", [](MprisPlayer& p, Arguments) { p.Play(); }},
      Command{MprisInterface::kPlayer, "Seek", "x",
              [](MprisPlayer& p, Arguments a) { p.Seek(a[0].toLongLong()); }},
      Command{MprisInterface::kPlayer, "SetPosition", "ox",
              [](MprisPlayer& p, Arguments a) {
                p.SetPosition(a[0].value<QDBusObjectPath>().path().toStdString(),
                              a[1].toLongLong());
              }},
  };
  const QString interface = message.interface();
  if (interface == Name(kIntrospectable)) {
    return message.createReply(QStringLiteral("<node>") + Name(kCommonIntrospection) +
                               introspect({}) + QStringLiteral("</node>"));
  }
  const auto is_meant = [&](MprisInterface each, const char* name, const char* signature) {
    // A caller may leave the interface out.
    const bool right =
        interface.isEmpty() || interface == Name(kInterfaces.at(static_cast<std::size_t>(each)));
    return right && message.member() == Name(name) && message.signature() == Name(signature);
  };
  if (is_meant(MprisInterface::kPlayer, "OpenUri", "s")) {
    if (player_->OpenUri(message.arguments()[0].toString().toStdString())) {
      return message.createReply();
    }
    return message.createErrorReply(Name(kNotSupported),
                                    QStringLiteral("Neither such a scheme nor such a type"));
  }
  for (const Command& command : kCommands) {
    if (!is_meant(command.interface, command.name, command.signature)) continue;
    Later([run = command.run, arguments = message.arguments()](MprisPlayer& player) {
      run(player, arguments);
    });
    return message.createReply();
  }
  return message.createErrorReply(Name(kUnknownMethod), QStringLiteral("No such method"));
}

void MprisService::Later(std::function<void(MprisPlayer&)> command) {
  QTimer::singleShot(0, this, [this, command = std::move(command)] {
    if (player_ != nullptr) command(*player_);
  });
}

}  // namespace kv
