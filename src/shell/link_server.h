// The player's door for other starts: listens on the user's hand-over socket.
//
// Owned by the program's entry. Interface thread only. Only processes of the same user are heard;
// what is malformed, too long or too slow is dropped without a word. A socket that a crash has left
// behind is replaced.
#pragma once

#include <QLocalServer>
#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <string>

namespace kv {

class LinkServer : public QObject {
  Q_OBJECT

 public:
  // Answers whether the text is accepted.
  using Execute = std::function<bool(const std::string& text)>;

  explicit LinkServer(Execute execute);

  // Starts to listen. False when another player of this user already does, or when there is no
  // place for the socket; the program then runs without the door. `error` gets the toolkit's number
  // where something failed that should not, 0 otherwise.
  bool Listen(const std::string& socket_path, int& error);

 private:
  void OnConnection();

  Execute execute_;
  QLocalServer server_;
};

}  // namespace kv
