#include "shell/link_server.h"

#include "shell/hand_over_channel.h"

#include <QFile>
#include <QLocalSocket>
#include <QLockFile>
#include <QTimer>

#include <utility>

namespace kv {
namespace {

constexpr int kRequestMilliseconds = 2000;
constexpr int kProbeMilliseconds = 500;
constexpr int kMaxConnections = 16;
// One byte more than a request can have, so that a longer one is seen to be longer.
constexpr qint64 kReadBuffer = qint64{kHandOverHeader} + qint64{kMaxHandOverText} + 1;

}  // namespace

LinkServer::LinkServer(Execute execute) : execute_(std::move(execute)) {
  server_.setSocketOptions(QLocalServer::UserAccessOption);
  server_.setMaxPendingConnections(kMaxConnections);
  connect(&server_, &QLocalServer::newConnection, this, &LinkServer::OnConnection);
}

bool LinkServer::Listen(const std::string& socket_path, int& error) {
  error = 0;
  if (socket_path.empty()) return false;
  const QString name = QFile::decodeName(socket_path.c_str());
  // Two starts at the same moment must not take each other's socket for a stale one.
  QLockFile lock(name + QStringLiteral(".lock"));
  if (!lock.tryLock(kProbeMilliseconds)) return false;
  QLocalSocket probe;
  probe.connectToServer(name);
  if (probe.waitForConnected(kProbeMilliseconds)) return false;
  QLocalServer::removeServer(name);
  if (server_.listen(name)) return true;
  error = static_cast<int>(server_.serverError());
  return false;
}

void LinkServer::OnConnection() {
  while (QLocalSocket* socket = server_.nextPendingConnection()) {
    connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
    if (!PeerIsSameUser(static_cast<int>(socket->socketDescriptor()))) {
      socket->abort();
      socket->deleteLater();
      continue;
    }
    socket->setReadBufferSize(kReadBuffer);
    QTimer::singleShot(kRequestMilliseconds, socket, [socket] { socket->abort(); });
    const auto read = [this, socket, bytes = std::string()]() mutable {
      bytes += socket->readAll().toStdString();
      const DecodedHandOver request = DecodeHandOver(bytes);
      if (request.state == HandOverState::kIncomplete) return;
      socket->disconnect(this);
      // A start that got no answer in time plays its medium itself.
      const bool given_up = PeerHasGone(static_cast<int>(socket->socketDescriptor()));
      if (request.state == HandOverState::kMalformed || given_up) {
        socket->abort();
        return;
      }
      const char answer = execute_(request.text) ? kHandOverAccepted : kHandOverRefused;
      socket->write(&answer, 1);
      socket->disconnectFromServer();
    };
    connect(socket, &QLocalSocket::readyRead, this, read);
    if (socket->bytesAvailable() > 0) Q_EMIT socket->readyRead();
  }
}

}  // namespace kv
