#include "shell/hand_over_channel.h"

#include "system/special_folders.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace kv {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kFullQueueMilliseconds = 10;

// A folder of this user's own that nobody else may enter.
bool IsPrivate(const std::string& folder) {
  struct stat info {};
  return lstat(folder.c_str(), &info) == 0 && S_ISDIR(info.st_mode) && info.st_uid == geteuid() &&
         (info.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

std::string RuntimeFolder() {
  if (const char* folder = std::getenv("XDG_RUNTIME_DIR");
      folder != nullptr && folder[0] == '/' && IsPrivate(folder)) {
    return folder;
  }
  const std::string folder = GetTempFolder() + "kestrelview-" + std::to_string(geteuid());
  mkdir(folder.c_str(), S_IRWXU);
  return IsPrivate(folder) ? folder : std::string();
}

// FNV-1a, 64 bits: the same for the same folder in every process and build.
std::uint64_t Fingerprint(std::string_view text) {
  std::uint64_t hash = 14695981039346656037U;
  for (const char c : text) {
    hash ^= static_cast<unsigned char>(c);
    hash *= 1099511628211U;
  }
  return hash;
}

class Connection {
 public:
  explicit Connection(int milliseconds)
      : socket_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)),
        deadline_(Clock::now() + std::chrono::milliseconds(milliseconds)) {}
  ~Connection() {
    if (socket_ >= 0) close(socket_);
  }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  int Socket() const { return socket_; }

  bool Connect(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (socket_ < 0 || path.empty() || path.size() >= sizeof(address.sun_path)) return false;
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    const auto* generic = reinterpret_cast<const sockaddr*>(&address);
    while (connect(socket_, generic, sizeof(address)) != 0) {
      // So many starts are waiting at the player's door that it takes no more for the moment.
      if (errno != EAGAIN || Clock::now() >= deadline_) return false;
      poll(nullptr, 0, kFullQueueMilliseconds);
    }
    return true;
  }

  bool Send(std::string_view bytes) {
    while (!bytes.empty()) {
      const ssize_t sent = send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
      if (sent > 0) {
        bytes.remove_prefix(static_cast<std::size_t>(sent));
      } else if (!Blocked() || !WaitFor(POLLOUT)) {
        return false;
      }
    }
    return true;
  }

  std::optional<char> ReceiveByte() {
    while (true) {
      char byte = 0;
      const ssize_t received = recv(socket_, &byte, 1, 0);
      if (received == 1) return byte;
      if (received == 0 || !Blocked() || !WaitFor(POLLIN)) return std::nullopt;
    }
  }

 private:
  static bool Blocked() { return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR; }

  bool WaitFor(short events) const {
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline_ - Clock::now()).count();
    if (left <= 0) return false;
    pollfd entry{socket_, events, 0};
    return poll(&entry, 1, static_cast<int>(left)) > 0 || errno == EINTR;
  }

  int socket_;
  Clock::time_point deadline_;
};

}  // namespace

std::string HandOverSocketPath(const std::string& app_folder) {
  const std::string folder = RuntimeFolder();
  if (folder.empty()) return {};
  std::array<char, 32> number{};
  std::snprintf(number.data(), number.size(), "%016llx",
                static_cast<unsigned long long>(Fingerprint(app_folder)));
  return folder + "/kestrelview-" + number.data();
}

std::string EncodeHandOver(std::string_view text) {
  std::string bytes;
  for (std::size_t i = 0; i < kHandOverHeader; ++i) {
    bytes += static_cast<char>((text.size() >> (8 * i)) & 0xFF);
  }
  return bytes.append(text);
}

DecodedHandOver DecodeHandOver(std::string_view bytes) {
  if (bytes.size() < kHandOverHeader) return {};
  std::size_t size = 0;
  for (std::size_t i = 0; i < kHandOverHeader; ++i) {
    size |= static_cast<std::size_t>(static_cast<unsigned char>(bytes[i])) << (8 * i);
  }
  bytes.remove_prefix(kHandOverHeader);
  if (size == 0 || size > kMaxHandOverText || bytes.size() > size ||
      bytes.find('\0') != std::string_view::npos) {
    return {HandOverState::kMalformed, {}};
  }
  if (bytes.size() < size) return {};
  return {HandOverState::kComplete, std::string(bytes)};
}

bool PeerIsSameUser(int socket) {
  ucred peer{};
  socklen_t size = sizeof(peer);
  return getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == geteuid();
}

bool PeerHasGone(int socket) {
  pollfd entry{socket, 0, 0};
  return socket < 0 || (poll(&entry, 1, 0) > 0 && (entry.revents & (POLLHUP | POLLERR)) != 0);
}

HandOverAnswer SendHandOver(const std::string& socket_path, std::string_view text,
                            int timeout_milliseconds) {
  Connection connection(timeout_milliseconds);
  // A path is told to nobody but the user's own player.
  if (!connection.Connect(socket_path) || !PeerIsSameUser(connection.Socket()) ||
      !connection.Send(EncodeHandOver(text))) {
    return HandOverAnswer::kNobody;
  }
  const std::optional<char> answer = connection.ReceiveByte();
  if (answer == kHandOverAccepted) return HandOverAnswer::kAccepted;
  if (answer == kHandOverRefused) return HandOverAnswer::kRefused;
  return HandOverAnswer::kNobody;
}

}  // namespace kv
