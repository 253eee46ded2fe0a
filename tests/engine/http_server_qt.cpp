#include "http_server_qt.h"

#include <QHostAddress>
#include <QTimer>

#include <algorithm>
#include <gtest/gtest.h>
#include <utility>

namespace kv {
namespace {

constexpr int kTickMilliseconds = 10;

// The first byte that "Range: bytes=N-" asks for; -1 without such a line.
qint64 RangeStart(const QByteArray& head) {
  const QByteArray key = "\r\nrange: bytes=";
  const qsizetype at = head.toLower().indexOf(key);
  if (at < 0) return -1;
  const QByteArray rest = head.mid(at + key.size());
  return rest.left(rest.indexOf('-')).toLongLong();
}

}  // namespace

HttpServer::HttpServer(std::unique_ptr<QTcpServer> server, const std::string& scheme)
    : server_(std::move(server)) {
  EXPECT_TRUE(server_->listen(QHostAddress::LocalHost));
  root_ = scheme + "://127.0.0.1:" + std::to_string(server_->serverPort());
  QObject::connect(server_.get(), &QTcpServer::pendingConnectionAvailable, server_.get(), [this] {
    while (QTcpSocket* socket = server_->nextPendingConnection()) {
      QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
      const auto read = [this, socket] {
        const QByteArray head = socket->peek(socket->bytesAvailable());
        if (!head.contains("\r\n\r\n")) return;
        socket->readAll();
        OnRequest(socket, head);
      };
      QObject::connect(socket, &QTcpSocket::readyRead, server_.get(), read);
      read();
    }
  });
}

std::string HttpServer::Serve(const std::string& path, HttpAnswer answer) {
  answers_[path] = std::move(answer);
  return root_ + path;
}

int HttpServer::Requests(const std::string& path) const {
  const auto found = requests_.find(path);
  return found == requests_.end() ? 0 : found->second;
}

void HttpServer::OnRequest(QTcpSocket* socket, const QByteArray& head) {
  const QList<QByteArray> words = head.left(head.indexOf('\r')).split(' ');
  const std::string path = words.value(1).toStdString();
  ++requests_[path];
  const auto found = answers_.find(path);
  const HttpAnswer answer =
      found == answers_.end() ? HttpAnswer{.body = "nothing here", .status = 404} : found->second;
  if (answer.mute) return;

  const qint64 size = answer.body.size();
  const qint64 from = answer.ranges ? std::min(RangeStart(head), size) : -1;
  QByteArray reply =
      "HTTP/1.1 " + QByteArray::number(from >= 0 ? 206 : answer.status) + " Answer\r\n";
  reply += "Content-Type: " + answer.type + "\r\nConnection: close\r\n";
  if (!answer.location.isEmpty()) reply += "Location: " + answer.location + "\r\n";
  if (!answer.endless) {
    reply += "Content-Length: " + QByteArray::number(size - std::max<qint64>(from, 0)) + "\r\n";
  }
  if (from >= 0) {
    reply += "Content-Range: bytes " + QByteArray::number(from) + "-" +
             QByteArray::number(size - 1) + "/" + QByteArray::number(size) + "\r\n";
  } else if (answer.ranges) {
    reply += "Accept-Ranges: bytes\r\n";
  }
  socket->write(reply + "\r\n");
  Send(socket, answer, answer.body.mid(std::max<qint64>(from, 0)));
}

void HttpServer::Send(QTcpSocket* socket, const HttpAnswer& answer, QByteArray body) {
  if (answer.cut_after >= 0) body.truncate(answer.cut_after);
  if (answer.bytes_a_tick == 0 && !answer.endless) {
    socket->write(body);
    socket->disconnectFromHost();
    return;
  }
  auto* tick = new QTimer(socket);
  const auto send = [socket, answer, body, sent = qsizetype{0}]() mutable {
    // An unread stream must not fill the memory.
    if (socket->bytesToWrite() > (1 << 16)) return;
    const qint64 most = answer.bytes_a_tick > 0 ? answer.bytes_a_tick : body.size();
    const QByteArray part = body.mid(sent, most);
    socket->write(part);
    sent += part.size();
    if (sent < body.size()) return;
    if (answer.endless) {
      sent = 0;
    } else {
      socket->disconnectFromHost();
    }
  };
  QObject::connect(tick, &QTimer::timeout, socket, send);
  tick->start(kTickMilliseconds);
}

}  // namespace kv
