// A bare Unix socket, bound to a path or connected to one; closed with it, the path stays.
#pragma once

#include <gtest/gtest.h>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace kv {

class UnixSocket {
 public:
  explicit UnixSocket(const std::string& path)
      : handle_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
    address_.sun_family = AF_UNIX;
    EXPECT_LT(path.size(), sizeof(address_.sun_path));
    path.copy(address_.sun_path, sizeof(address_.sun_path) - 1);
  }
  UnixSocket(const UnixSocket&) = delete;
  UnixSocket& operator=(const UnixSocket&) = delete;
  ~UnixSocket() { close(handle_); }

  int Handle() const { return handle_; }

  void Bind() { EXPECT_EQ(bind(handle_, Address(), sizeof(address_)), 0); }
  // Clients find it, and are left alone.
  void Listen(int backlog = 16) {
    Bind();
    EXPECT_EQ(listen(handle_, backlog), 0);
  }
  bool Connect() { return connect(handle_, Address(), sizeof(address_)) == 0; }

 private:
  const sockaddr* Address() const { return reinterpret_cast<const sockaddr*>(&address_); }

  int handle_;
  sockaddr_un address_{};
};

}  // namespace kv
