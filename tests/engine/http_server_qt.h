// A small HTTP server inside the test, on the thread of the test: it answers while the engine
// pumps.
#pragma once

#include <QByteArray>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>

#include <map>
#include <memory>
#include <string>

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
                      const std::string& scheme = "http");

  // Answers `path` ("/film.mkv") so from now on; gives back its URL. Anything else is a 404.
  std::string Serve(const std::string& path, HttpAnswer answer);

  // How often an address was asked for.
  int Requests(const std::string& path) const;

 private:
  void OnRequest(QTcpSocket* socket, const QByteArray& head);
  static void Send(QTcpSocket* socket, const HttpAnswer& answer, QByteArray body);

  std::unique_ptr<QTcpServer> server_;
  std::string root_;
  std::map<std::string, HttpAnswer> answers_;
  std::map<std::string, int> requests_;
};

}  // namespace kv
