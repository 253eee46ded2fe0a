#include "system/temporary_file.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace kv {
namespace {

constexpr std::string_view kNameStart = ".kestrelview-";
constexpr std::string_view kNameEnd = "XXXXXX";

bool IsThere(const FileDescriptor& file) {
  struct stat status {};
  return fstat(file.Number(), &status) == 0 && status.st_nlink > 0;
}

// Whoever writes a temporary file holds its lock, which ends with the process: one that can be
// locked has been left by a kill or a power failure.
void RemoveAbandoned(const std::string& folder) {
  std::error_code error;
  std::filesystem::directory_iterator entry(folder.empty() ? "." : folder, error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    const std::string name = entry->path().filename().native();
    if (!name.starts_with(kNameStart) || name.size() != kNameStart.size() + kNameEnd.size()) {
      continue;
    }
    const std::string path = folder + name;
    const FileDescriptor file(open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (file.IsOpen() && flock(file.Number(), LOCK_EX | LOCK_NB) == 0) unlink(path.c_str());
  }
}

}  // namespace

TemporaryFile::TemporaryFile(const std::string& folder) {
  RemoveAbandoned(folder);
  constexpr int kMostAttempts = 100;
  for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
    path_ = folder + std::string(kNameStart) + std::string(kNameEnd);
    file_ = FileDescriptor(mkostemp(path_.data(), O_CLOEXEC));
    if (!file_.IsOpen()) break;
    // Where a file system knows no locks nobody else gets one either.
    flock(file_.Number(), LOCK_EX);
    // Another process can have taken it for abandoned just before.
    if (IsThere(file_)) return;
  }
  path_.clear();
}

TemporaryFile::~TemporaryFile() {
  const int error = errno;  // what went wrong is told after this
  file_.Close();
  if (!path_.empty()) unlink(path_.c_str());
  errno = error;
}

bool TemporaryFile::Finish() const {
  if (fsync(file_.Number()) != 0) return false;
  // Some network file systems keep an error until a file is closed. The file itself stays open:
  // with it would go the lock.
  FileDescriptor same(fcntl(file_.Number(), F_DUPFD_CLOEXEC, 0));
  return same.IsOpen() && same.Close();
}

bool TemporaryFile::ReplaceTo(const std::string& path) {
  if (rename(path_.c_str(), path.c_str()) != 0) return false;
  path_.clear();
  return true;
}

bool TemporaryFile::MoveTo(const std::string& path) {
  if (!RenameNoReplace(path_, path)) return false;
  path_.clear();
  return true;
}

bool RenameNoReplace(const std::string& old_path, const std::string& new_path) {
  if (renameat2(AT_FDCWD, old_path.c_str(), AT_FDCWD, new_path.c_str(), RENAME_NOREPLACE) == 0) {
    return true;
  }
  if (errno != EINVAL && errno != ENOSYS) return false;
  // This file system cannot do both in one step.
  struct stat status {};
  if (lstat(new_path.c_str(), &status) == 0) {
    errno = EEXIST;
    return false;
  }
  return rename(old_path.c_str(), new_path.c_str()) == 0;
}

}  // namespace kv
