// An open file that closes itself. Inside the file routines of this room only.
#pragma once

#include <cerrno>
#include <cstddef>
#include <string_view>
#include <unistd.h>
#include <utility>

namespace kv {

class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int number) : number_(number) {}
  FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  ~FileDescriptor() { Close(); }

  bool IsOpen() const { return number_ >= 0; }
  int Number() const { return number_; }

  // False, with errno set, when the system reports a late error. Closed it is in any case.
  bool Close() { return number_ < 0 || close(std::exchange(number_, -1)) == 0; }

  // Reads until the buffer is full or the file ends. Answers the bytes read, -1 on an error.
  std::ptrdiff_t Read(char* buffer, std::size_t size) const {
    std::size_t done = 0;
    while (done < size) {
      const ssize_t got = read(number_, buffer + done, size - done);
      if (got < 0 && errno == EINTR) continue;
      if (got < 0) return -1;
      if (got == 0) break;
      done += static_cast<std::size_t>(got);
    }
    return static_cast<std::ptrdiff_t>(done);
  }

  // Writes everything, in as many pieces as the system takes. False, with errno set, on an error.
  bool Write(std::string_view bytes) const {
    while (!bytes.empty()) {
      const ssize_t put = write(number_, bytes.data(), bytes.size());
      if (put < 0 && errno == EINTR) continue;
      if (put == 0) errno = ENOSPC;  // never without an error, and never for ever
      if (put <= 0) return false;
      bytes.remove_prefix(static_cast<std::size_t>(put));
    }
    return true;
  }

 private:
  int number_ = -1;
};

}  // namespace kv
