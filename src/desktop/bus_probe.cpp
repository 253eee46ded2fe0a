#include "desktop/bus_probe.h"

#include "system/file_descriptor.h"

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <poll.h>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace kv {
namespace {

// A loaded machine's bus answers in this time.
constexpr int kPatienceMilliseconds = 1000;

constexpr const char* kVariable = "DBUS_SESSION_BUS_ADDRESS";

// The value of `key` in "unix:path=/x,guid=y", its escapes ("%2f") left alone: a name that has any
// is not found, and counts as not there.
std::string_view ValueOf(std::string_view address, std::string_view key) {
  const std::size_t at = address.find(key);
  if (at == std::string_view::npos) return {};
  const std::string_view value = address.substr(at + key.size());
  return value.substr(0, value.find(','));
}

// The socket of one address; empty if it is another kind. An abstract one begins with a NUL.
std::string SocketOf(std::string_view address) {
  if (address.substr(0, 5) != "unix:") return {};
  if (const std::string_view path = ValueOf(address, "path="); !path.empty()) {
    return std::string(path);
  }
  const std::string_view name = ValueOf(address, "abstract=");
  return name.empty() ? std::string() : std::string(1, '\0') + std::string(name);
}

bool IsSilent(const std::string& name, int milliseconds) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (name.size() >= sizeof(address.sun_path)) return false;
  std::memcpy(address.sun_path, name.data(), name.size());
  // The length of an abstract name counts; that of a path includes its NUL.
  const std::size_t length =
      offsetof(sockaddr_un, sun_path) + name.size() + (name[0] == '\0' ? 0 : 1);
  const FileDescriptor bus(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (!bus.IsOpen()) return false;
  if (connect(bus.Number(), reinterpret_cast<const sockaddr*>(&address),
              static_cast<socklen_t>(length)) != 0) {
    return errno == EAGAIN;  // so many wait at its door that it takes no more
  }
  // The user's number in decimal, its digits in hexadecimal.
  std::string greeting("\0AUTH EXTERNAL ", 15);
  for (const char digit : std::to_string(geteuid())) {
    greeting += '3';
    greeting += digit;
  }
  greeting += "\r\n";
  if (send(bus.Number(), greeting.data(), greeting.size(), MSG_NOSIGNAL) < 0) return false;
  pollfd answer{bus.Number(), POLLIN, 0};
  return poll(&answer, 1, milliseconds) == 0;
}

}  // namespace

bool SessionBusAnswers(const std::string& address, int milliseconds) {
  std::string_view rest = address;
  while (!rest.empty()) {
    const std::size_t end = rest.find(';');
    const std::string name = SocketOf(rest.substr(0, end));
    if (!name.empty()) return !IsSilent(name, milliseconds);
    rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
  }
  return true;
}

void LeaveSilentBus() {
  const char* const told = std::getenv(kVariable);
  const char* const runtime = std::getenv("XDG_RUNTIME_DIR");
  std::string address;
  if (told != nullptr) {
    address = told;
  } else if (runtime != nullptr) {
    address = std::string("unix:path=") + runtime + "/bus";  // where it is looked for then
  }
  if (SessionBusAnswers(address, kPatienceMilliseconds)) return;
  setenv(kVariable, "disabled:", 1);
}

}  // namespace kv
