// A small HTTP server inside the test, on the thread of the test: it answers while the engine
// pumps.
#pragma once

#include <QByteArray>
#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <string>
#include <utility>

namespace kv {

// How one address answers.
struct HttpAnswer {
  QByteArray body = {};
  int status = 200;
  QByteArray type = "application/octet-stream";
  QByteArray location = {};  // for a redirection
  bool ranges = false;       // gives parts when asked for parts
  bool mute = false;         // takes the request and never answers
  bool endless = false;      // tells no length and sends the body over and over
  qint64 cut_after = -1;     // closes each connection after that many bytes of body
  qint64 bytes_a_tick = 0;   // sends so many every 10 ms; 0: all at once
};

class HttpServer {
 public:
  // Listens on the local machine. A server of another kind, one that speaks TLS, can be given.
  explicit HttpServer(std::unique_ptr<QTcpServer> server = std::make_unique<QTcpServer>(),
                      const std::string& scheme = "http")
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

  // Answers `path` ("/film.mkv") so from now on; gives back its URL. Anything else is a 404.
  std::string Serve(const std::string& path, HttpAnswer answer) {
    answers_[path] = std::move(answer);
    return root_ + path;
  }

  // How often an address was asked for.
  int Requests(const std::string& path) const {
    const auto found = requests_.find(path);
    return found == requests_.end() ? 0 : found->second;
  }

 private:
  // The first byte that "Range: bytes=N-" asks for; -1 without such a line.
  static qint64 RangeStart(const QByteArray& head) {
    const QByteArray key = "\r\nrange: bytes=";
    const qsizetype at = head.toLower().indexOf(key);
    if (at < 0) return -1;
    const QByteArray rest = head.mid(at + key.size());
    return rest.left(rest.indexOf('-')).toLongLong();
  }

  void OnRequest(QTcpSocket* socket, const QByteArray& head) {
    const std::string path = head.split(' ').value(1).toStdString();
    ++requests_[path];
    const auto found = answers_.find(path);
    const HttpAnswer answer =
        found == answers_.end() ? HttpAnswer{.body = "nothing here", .status = 404} : found->second;
    if (answer.mute) return;

    const qint64 size = answer.body.size();
    const qint64 part = answer.ranges ? std::min(RangeStart(head), size) : -1;
    const qint64 from = std::max<qint64>(part, 0);
    const auto number = [](qint64 value) { return QByteArray::number(value); };
    QByteArray reply = "HTTP/1.1 " + number(part >= 0 ? 206 : answer.status) + " Answer\r\n" +
                       "Content-Type: " + answer.type + "\r\nConnection: close\r\n";
    if (!answer.location.isEmpty()) reply += "Location: " + answer.location + "\r\n";
    if (!answer.endless) reply += "Content-Length: " + number(size - from) + "\r\n";
    if (part >= 0) {
      reply += "Content-Range: bytes " + number(from) + "-" + number(size - 1) + "/" +
               number(size) + "\r\n";
    } else if (answer.ranges) {
      reply += "Accept-Ranges: bytes\r\n";
    }
    socket->write(reply + "\r\n");
    Send(socket, answer, answer.body.mid(from));
  }

  static void Send(QTcpSocket* socket, const HttpAnswer& answer, QByteArray body) {
    if (answer.cut_after >= 0) body.truncate(answer.cut_after);
    if (answer.bytes_a_tick == 0 && !answer.endless) {
      socket->write(body);
      socket->disconnectFromHost();
      return;
    }
    auto* tick = new QTimer(socket);
    QObject::connect(
        tick, &QTimer::timeout, socket, [socket, answer, body, sent = qsizetype{0}]() mutable {
          // An unread stream must not fill the memory.
          if (socket->bytesToWrite() > (1 << 16)) return;
          const qint64 most = answer.bytes_a_tick > 0 ? answer.bytes_a_tick : body.size();
          const QByteArray part = body.mid(sent, most);
          socket->write(part);
          sent += part.size();
          if (sent < body.size()) return;
          sent = 0;
          if (!answer.endless) socket->disconnectFromHost();
        });
    tick->start(10);
  }

  std::unique_ptr<QTcpServer> server_;
  std::string root_;
  std::map<std::string, HttpAnswer> answers_;
  std::map<std::string, int> requests_;
};

}  // namespace kv
