#include "system/temporary_file.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kv {

TemporaryFile::TemporaryFile(const std::string& folder) : path_(folder + ".kestrelview-XXXXXX") {
  file_ = FileDescriptor(mkostemp(path_.data(), O_CLOEXEC));
  if (!file_.IsOpen()) path_.clear();
}

TemporaryFile::~TemporaryFile() {
  const int error = errno;  // what went wrong is told after this
  file_.Close();
  if (!path_.empty()) unlink(path_.c_str());
  errno = error;
}

bool TemporaryFile::Finish() {
  return fsync(file_.Number()) == 0 && file_.Close();
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
