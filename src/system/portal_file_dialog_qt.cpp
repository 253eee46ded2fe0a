#include "system/portal_file_dialog_qt.h"

#include "system/file_address.h"
#include "system/portal_request_qt.h"

#include <QByteArray>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QGuiApplication>
#include <QPointer>
#include <QVariantMap>

#include <memory>

namespace kv {

// The portal's "(us)": 0 says that the text is a pattern.
struct PortalPattern {
  uint kind = 0;
  QString pattern;
};

// Its "(sa(us))".
struct PortalFilter {
  QString label;
  QList<PortalPattern> patterns;
};

QDBusArgument& operator<<(QDBusArgument& argument, const PortalPattern& pattern) {
  argument.beginStructure();
  argument << pattern.kind << pattern.pattern;
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, PortalPattern& pattern) {
  argument.beginStructure();
  argument >> pattern.kind >> pattern.pattern;
  argument.endStructure();
  return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const PortalFilter& filter) {
  argument.beginStructure();
  argument << filter.label << filter.patterns;
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, PortalFilter& filter) {
  argument.beginStructure();
  argument >> filter.label >> filter.patterns;
  argument.endStructure();
  return argument;
}

}  // namespace kv

Q_DECLARE_METATYPE(kv::PortalPattern)
Q_DECLARE_METATYPE(kv::PortalFilter)

namespace kv {
namespace {

// Names go over the bus as bytes with a NUL behind.
QByteArray NameBytes(const std::string& name) {
  return {name.c_str(), static_cast<qsizetype>(name.size() + 1)};
}

QString ParentOf(const QWidget* owner) {
  if (owner == nullptr || QGuiApplication::platformName() != QLatin1String("xcb")) return {};
  return QStringLiteral("x11:") + QString::number(owner->window()->winId(), 16);
}

PortalFilter FilterOf(const PortalFileGroup& group) {
  PortalFilter filter{group.label, {}};
  for (const QString& pattern : group.patterns) filter.patterns.append({0, pattern});
  return filter;
}

QVariantMap OptionsOf(const PortalFileQuestion& question, const QString& token) {
  QVariantMap options{{QStringLiteral("handle_token"), token}, {QStringLiteral("modal"), true}};
  if (question.kind == PortalFileQuestion::Kind::kFolder) {
    options.insert(QStringLiteral("directory"), true);
  }
  QList<PortalFilter> filters;
  for (const PortalFileGroup& group : question.groups) {
    filters.append(FilterOf(group));
    if (group.label == question.group) {
      options.insert(QStringLiteral("current_filter"), QVariant::fromValue(filters.back()));
    }
  }
  if (!filters.isEmpty()) options.insert(QStringLiteral("filters"), QVariant::fromValue(filters));
  if (!question.folder.empty()) {
    options.insert(QStringLiteral("current_folder"), NameBytes(question.folder));
  }
  if (question.kind == PortalFileQuestion::Kind::kSave && !question.file_name.empty()) {
    options.insert(QStringLiteral("current_name"), QString::fromStdString(question.file_name));
  }
  return options;
}

void RegisterTypes() {
  qDBusRegisterMetaType<PortalPattern>();
  qDBusRegisterMetaType<QList<PortalPattern>>();
  qDBusRegisterMetaType<PortalFilter>();
  qDBusRegisterMetaType<QList<PortalFilter>>();
}

}  // namespace

PortalFileAnswer PortalFileDialog::Ask(const PortalFileQuestion& question, QWidget* owner) {
  if (silent_ || !bus_.isConnected()) return {};
  RegisterTypes();
  QDBusMessage call = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.portal.Desktop"),
      QStringLiteral("/org/freedesktop/portal/desktop"),
      QStringLiteral("org.freedesktop.portal.FileChooser"),
      question.kind == PortalFileQuestion::Kind::kSave ? QStringLiteral("SaveFile")
                                                       : QStringLiteral("OpenFile"));
  const QPointer<PortalRequest> request = new PortalRequest(bus_, owner);
  call << ParentOf(owner) << question.title << OptionsOf(question, request->Token());
  request->Send(call);
  const int result = request->exec();
  if (!request) return {PortalFileAnswer::Kind::kCancelled, {}, {}};  // went with its owner
  const std::unique_ptr<PortalRequest> owned(request);
  silent_ = result == PortalRequest::kSilent;
  if (silent_ || result == PortalRequest::kRefused) return {};

  PortalFileAnswer answer{PortalFileAnswer::Kind::kCancelled, {}, question.group};
  const QVariantMap& results = owned->Results();
  const QStringList addresses = results.value(QStringLiteral("uris")).toStringList();
  if (result != QDialog::Accepted || addresses.isEmpty()) return answer;
  answer.path = PathOfFileAddress(addresses.front().toStdString());
  if (!answer.path.empty()) answer.kind = PortalFileAnswer::Kind::kChosen;
  const QVariant filter = results.value(QStringLiteral("current_filter"));
  if (filter.canConvert<QDBusArgument>()) {
    const auto group = filter.value<QDBusArgument>();
    // Read as what it is not, it would end the program.
    if (group.currentSignature() == QLatin1String("(sa(us))")) {
      answer.group = qdbus_cast<PortalFilter>(group).label;
    }
  }
  return answer;
}

}  // namespace kv
