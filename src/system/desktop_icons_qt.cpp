#include "system/desktop_icons_qt.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QProcess>
#include <QStandardPaths>

namespace kv {
namespace {

// Desktop, toolbars, main toolbars, small, panel, dialogs.
constexpr int kIconGroups = 6;

}  // namespace

void RefreshDesktopIcons() {
  for (const char* const tool : {"kbuildsycoca6", "kbuildsycoca5"}) {
    const QString program = QStandardPaths::findExecutable(QString::fromLatin1(tool));
    if (program.isEmpty()) continue;
    QProcess rebuild;
    rebuild.setProgram(program);
    rebuild.setStandardOutputFile(QProcess::nullDevice());
    rebuild.setStandardErrorFile(QProcess::nullDevice());
    rebuild.startDetached();
    break;
  }
  const QDBusConnection bus = QDBusConnection::sessionBus();
  for (int group = 0; bus.isConnected() && group < kIconGroups; ++group) {
    QDBusMessage changed = QDBusMessage::createSignal(QStringLiteral("/KIconLoader"),
                                                      QStringLiteral("org.kde.KIconLoader"),
                                                      QStringLiteral("iconChanged"));
    bus.send(changed << group);
  }
}

}  // namespace kv
