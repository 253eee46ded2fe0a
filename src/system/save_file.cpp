#include "system/save_file.h"

#include "system/files.h"
#include "system/paths.h"
#include "system/temporary_file.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace kv {
namespace {

bool Fail(std::string* error, int number) {
  if (error != nullptr) *error = std::generic_category().message(number);
  return false;
}

// In a folder where everybody may make files, a link that another user has put there would lead
// the save to a file of this user's. The kernel refuses to follow such links by the same rule
// (proc(5), protected_symlinks).
bool IsForeignLink(const std::string& path) {
  struct stat link {};
  struct stat folder {};
  const std::string parent = path.substr(0, path.rfind('/') + 1);
  if (lstat(path.c_str(), &link) != 0 || !S_ISLNK(link.st_mode)) return false;
  if (stat(parent.empty() ? "." : parent.c_str(), &folder) != 0) return true;
  const bool shared = (folder.st_mode & S_ISVTX) != 0 && (folder.st_mode & S_IWOTH) != 0;
  return shared && link.st_uid != geteuid() && link.st_uid != folder.st_uid;
}

// The file that `path` leads to through any number of links, which itself need not exist.
std::optional<std::string> BehindLinks(std::string path) {
  constexpr int kMostLinks = 40;  // where the system gives up, too
  for (int links = 0; links < kMostLinks; ++links) {
    std::error_code error;
    const std::filesystem::path target = std::filesystem::read_symlink(path, error);
    if (error) return path;
    if (IsForeignLink(path)) {
      errno = EACCES;
      return {};
    }
    path = (std::filesystem::path(path).parent_path() / target).native();
  }
  errno = ELOOP;
  return {};
}

// Without this the new name could be lost in a power failure; the content is safe either way, and
// some file systems know no such request, so a failure changes nothing.
void SyncFolder(const std::string& folder) {
  const FileDescriptor descriptor(
      open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (descriptor.IsOpen()) fsync(descriptor.Number());
}

bool Save(const std::string& path, std::string_view bytes) {
  errno = EINVAL;
  if (path.empty() || path.ends_with('/') || path.find('\0') != std::string::npos) return false;
  const std::optional<std::string> target = BehindLinks(path);
  if (!target) return false;
  const std::string folder = target->substr(0, target->rfind('/') + 1);
  if (!folder.empty() && !CreateFolders(folder)) return false;

  struct stat old {};
  const bool exists = stat(target->c_str(), &old) == 0;
  if (!exists && errno != ENOENT) return false;
  if (exists && !S_ISREG(old.st_mode)) {
    errno = S_ISDIR(old.st_mode) ? EISDIR : EINVAL;
    return false;
  }
  if (exists && access(target->c_str(), W_OK) != 0) return false;

  TemporaryFile file(folder);
  if (!file.IsOpen() || !file.Write(bytes)) return false;
  if (exists && fchmod(file.Number(), old.st_mode & 0777U) != 0) return false;
  if (!file.Finish() || !file.ReplaceTo(*target)) return false;
  SyncFolder(folder);
  return true;
}

}  // namespace

bool SaveFileChecked(const std::string& path, std::string_view bytes, std::string* error) {
  return Save(path, bytes) || Fail(error, errno);
}

}  // namespace kv
