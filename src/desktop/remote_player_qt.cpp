#include "desktop/remote_player_qt.h"

#include <QDBusConnection>
#include <QDBusMessage>

namespace kv {

namespace {
constexpr int kAnswerMilliseconds = 3000;
}

bool CallRunningPlayer(const char* method) {
  QDBusMessage call = QDBusMessage::createMethodCall(
      QStringLiteral("org.mpris.MediaPlayer2.kestrelview"),
      QStringLiteral("/org/mpris/MediaPlayer2"), QStringLiteral("org.mpris.MediaPlayer2.Player"),
      QString::fromLatin1(method));
  call.setAutoStartService(false);
  const QDBusMessage answer =
      QDBusConnection::sessionBus().call(call, QDBus::Block, kAnswerMilliseconds);
  return answer.type() == QDBusMessage::ReplyMessage;
}

}  // namespace kv
