#include "controls/file_copy.h"

#include "system/file_descriptor.h"
#include "system/paths.h"
#include "system/temporary_file.h"
#include "system/translation.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <optional>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/xattr.h>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

namespace kv {
namespace {

constexpr int kMostTemporaryNames = 10000;
constexpr std::size_t kLongestName = 255;
constexpr std::size_t kSuffixRoom = 16;  // a number and ".tmp"

// The most that one call of the system moves, so that a cancel is never far.
constexpr std::int64_t kPiece = std::int64_t{1024} * 1024;

CopyOutcome Ended(CopyResult result) {
  CopyOutcome outcome;
  outcome.result = result;
  return outcome;
}

CopyOutcome Failed(int number, std::string text = {}) {
  CopyOutcome outcome;
  outcome.result = CopyResult::kDiskError;
  outcome.error = text.empty() ? std::generic_category().message(number) : std::move(text);
  outcome.error_number = number;
  return outcome;
}

std::string FolderOf(const std::string& path) {
  const std::string folder = path.substr(0, path.rfind('/') + 1);
  return folder.empty() ? "./" : folder;
}

bool SameFile(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

bool SameContent(const struct stat& a, const struct stat& b) {
  return SameFile(a, b) && a.st_size == b.st_size && a.st_mtim.tv_sec == b.st_mtim.tv_sec &&
         a.st_mtim.tv_nsec == b.st_mtim.tv_nsec;
}

// A file system that tells no size at all cannot tell what is free either.
bool TellsFreeSpace(const std::string& root) {
  struct statvfs status {};
  return statvfs(root.c_str(), &status) != 0 || status.f_blocks != 0;
}

// The new name must outlive a power failure before the old one goes. Some file systems know no such
// request, so a failure changes nothing.
void SyncFolder(const std::string& folder) {
  const FileDescriptor descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (descriptor.IsOpen()) fsync(descriptor.Number());
}

// On a file that grows: what a killed copy has left is known by it from a file of the user's own.
constexpr const char* kGrowingMark = "user.kestrelview.growing";

// The file that grows beside the destination; gone with this object unless it was given its name.
class GrowingFile {
 public:
  GrowingFile() = default;
  GrowingFile(const GrowingFile&) = delete;
  GrowingFile& operator=(const GrowingFile&) = delete;
  ~GrowingFile() {
    const int error = errno;
    file_.Close();
    if (!path_.empty()) unlink(path_.c_str());
    errno = error;
  }

  // Creates `destination` + number + ".tmp" with the first number that is free, or taken by what a
  // killed copy has left. The name is cut when only the addition makes it too long.
  bool Create(const std::string& destination, mode_t mode) {
    std::string base = destination;
    for (int number = 1; number <= kMostTemporaryNames; ++number) {
      std::string name = base + std::to_string(number) + ".tmp";
      file_ = FileDescriptor(
          open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
      if (file_.IsOpen()) {
        path_ = std::move(name);
        // Locked before it is marked, so that what is marked and not locked has nobody any more.
        flock(file_.Number(), LOCK_EX | LOCK_NB);
        fsetxattr(file_.Number(), kGrowingMark, "", 0, 0);
        return true;
      }
      if (errno == EEXIST && RemoveAbandoned(name)) {
        --number;
      } else if (errno == ENAMETOOLONG && base.size() == destination.size() && CutName(base)) {
        number = 0;
      } else if (errno != EEXIST) {
        return false;
      }
    }
    return false;
  }

  const FileDescriptor& File() const { return file_; }
  // It grows no more.
  bool Close() {
    fremovexattr(file_.Number(), kGrowingMark);
    return file_.Close();
  }

  // Takes the name `destination`, and with `replace` the place of what stands there.
  bool TakeName(const std::string& destination, bool replace) {
    const bool done = replace ? rename(path_.c_str(), destination.c_str()) == 0
                              : RenameNoReplace(path_, destination);
    if (done) path_.clear();
    return done;
  }

 private:
  // Leaves errno alone when it is none.
  static bool RemoveAbandoned(const std::string& name) {
    const int error = errno;
    const FileDescriptor file(open(name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    const bool done = file.IsOpen() && fgetxattr(file.Number(), kGrowingMark, nullptr, 0) >= 0 &&
                      flock(file.Number(), LOCK_EX | LOCK_NB) == 0 && unlink(name.c_str()) == 0;
    errno = error;
    return done;
  }

  static bool CutName(std::string& path) {
    const std::size_t name = path.rfind('/') + 1;
    std::size_t end = name + kLongestName - kSuffixRoom;
    if (path.size() <= end || path.size() > name + kLongestName) return false;
    // Some file systems refuse half a character.
    while (end > name && (static_cast<unsigned char>(path[end]) & 0xC0U) == 0x80U) --end;
    path.resize(end);
    return true;
  }

  std::string path_;
  FileDescriptor file_;
};

class Copying {
 public:
  Copying(const CopyOrder& order, const CopyHooks& hooks, const std::stop_token& stop)
      : order_(order), hooks_(hooks), stop_(stop) {}

  CopyOutcome Run() {
    if (std::optional<CopyOutcome> end = Check()) return *std::move(end);
    if (order_.kind == CopyKind::kMove) {
      if (std::optional<CopyOutcome> end = MoveByName()) return *std::move(end);
    }
    return MoveBytes();
  }

 private:
  bool Moving() const { return order_.kind == CopyKind::kMove; }

  std::optional<CopyOutcome> Check() {
    // A NUL would cut the name short and reach another file.
    const auto bad = [](const std::string& path) {
      return path.empty() || path.ends_with('/') || path.find('\0') != std::string::npos;
    };
    const std::string root = DriveRootOfPath(order_.destination);
    if (FileSizeBytes(order_.source) > hooks_.free_bytes(root) && TellsFreeSpace(root)) {
      return Ended(CopyResult::kNoFreeSpace);
    }
    if (order_.source.find('\0') != std::string::npos ||
        stat(order_.source.c_str(), &status_) != 0) {
      return Ended(CopyResult::kNoSource);
    }
    if (S_ISDIR(status_.st_mode)) return Failed(EISDIR);
    if (!S_ISREG(status_.st_mode)) return Failed(EINVAL, Tr("Not a plain file"));
    if (bad(order_.destination) || order_.block_size <= 0) return Failed(EINVAL);

    // Whatever stands there counts, a folder or a link that leads nowhere too.
    struct stat there {};
    replacing_ = lstat(order_.destination.c_str(), &there) == 0;
    if (!replacing_) return {};
    if (!order_.overwrite) return Ended(CopyResult::kDestinationExists);
    struct stat behind {};
    if (stat(order_.destination.c_str(), &behind) == 0 && SameFile(behind, status_)) {
      return Failed(EINVAL, Tr("Source and destination are the same file"));
    }
    if (S_ISDIR(there.st_mode)) return Failed(EISDIR);
    if (!S_ISREG(there.st_mode) && !S_ISLNK(there.st_mode)) return Failed(EEXIST);
    if (S_ISREG(there.st_mode) && access(order_.destination.c_str(), W_OK) != 0) {
      return Failed(errno);
    }
    return {};
  }

  // Within one file system. Nothing when the two lie on different ones, which only the system
  // itself can tell: the same disk may be mounted twice.
  std::optional<CopyOutcome> MoveByName() const {
    if (stop_.stop_requested()) return Ended(CopyResult::kCancelled);
    const bool done = replacing_ ? rename(order_.source.c_str(), order_.destination.c_str()) == 0
                                 : RenameNoReplace(order_.source, order_.destination);
    if (!done && errno == EXDEV) return {};
    if (!done && errno == EEXIST) return Ended(CopyResult::kDestinationExists);
    CopyOutcome outcome = Ended(done ? CopyResult::kDone : CopyResult::kDiskError);
    outcome.renamed = done;
    return outcome;
  }

  CopyOutcome MoveBytes() {
    // Known now rather than after the last byte.
    if (Moving() && access(FolderOf(order_.source).c_str(), W_OK | X_OK) != 0) return Failed(errno);

    // Not waiting, should a pipe have taken the place of the file just now.
    const int flags = O_RDONLY | O_NONBLOCK | O_CLOEXEC | (Moving() ? O_NOFOLLOW : 0);
    const FileDescriptor source(open(order_.source.c_str(), flags));
    if (!source.IsOpen() || fstat(source.Number(), &status_) != 0) return Failed(errno);
    if (!S_ISREG(status_.st_mode)) return Failed(EINVAL, Tr("Not a plain file"));

    GrowingFile copy;
    if (!copy.Create(order_.destination, status_.st_mode & 0777U)) return Failed(errno);
    posix_fadvise(source.Number(), 0, 0, POSIX_FADV_SEQUENTIAL);
    if (!CopyBlocks(source, copy.File())) return Failed(errno);
    if (stop_.stop_requested()) return Ended(CopyResult::kCancelled);

    // What the file system cannot store is no reason to give the copy up.
    const std::array<timespec, 2> times = {timespec{0, UTIME_OMIT}, status_.st_mtim};
    futimens(copy.File().Number(), times.data());
    if (Moving()) fchmod(copy.File().Number(), status_.st_mode & 0777U);
    // A copy that costs nothing but time is left to the system to write, as everybody does.
    const bool safe = Moving() || replacing_;
    if (safe && fsync(copy.File().Number()) != 0) return Failed(errno);
    if (!copy.Close()) return Failed(errno);
    if (Moving() && !SourceUnchanged(source)) return Failed(EBUSY, Tr("The file is being changed"));
    if (stop_.stop_requested()) return Ended(CopyResult::kCancelled);

    if (!copy.TakeName(order_.destination, replacing_)) {
      return errno == EEXIST ? Ended(CopyResult::kDestinationExists) : Failed(errno);
    }
    if (safe) SyncFolder(FolderOf(order_.destination));
    if (Moving() && unlink(order_.source.c_str()) != 0) return Failed(errno);
    return Ended(CopyResult::kDone);
  }

  // Also that the name still means the file that was copied.
  bool SourceUnchanged(const FileDescriptor& source) const {
    struct stat now {};
    struct stat named {};
    return fstat(source.Number(), &now) == 0 && SameContent(now, status_) &&
           lstat(order_.source.c_str(), &named) == 0 && SameFile(named, status_);
  }

  // Up to the size that the source had, or its end. False, with errno set, on an error; when
  // stopped, wherever it was.
  bool CopyBlocks(const FileDescriptor& source, const FileDescriptor& copy) {
    const std::int64_t total = status_.st_size;
    for (std::int64_t copied = 0; copied < total && !stop_.stop_requested();) {
      const std::int64_t block_end = std::min<std::int64_t>(copied + order_.block_size, total);
      while (copied < block_end) {
        if (stop_.stop_requested()) return true;
        const std::ptrdiff_t put = CopyPiece(source, copy, std::min(block_end - copied, kPiece));
        if (put < 0) return false;
        if (put == 0) return true;  // the source has become shorter
        copied += put;
      }
      if (hooks_.after_block) hooks_.after_block(copied, total);
    }
    return true;
  }

  // Answers the bytes copied, 0 at the end of the source, -1 with errno set.
  std::ptrdiff_t CopyPiece(const FileDescriptor& source, const FileDescriptor& copy,
                           std::int64_t size) {
    const auto wanted = static_cast<std::size_t>(size);
    while (in_kernel_) {
      const ssize_t put =
          copy_file_range(source.Number(), nullptr, copy.Number(), nullptr, wanted, 0);
      if (put > 0) return put;
      if (put < 0 && errno == EINTR) continue;
      // Not between these two files, or an end that some file systems tell wrongly. Errors of the
      // disk come again from the plain way.
      in_kernel_ = false;
    }
    buffer_.resize(std::min<std::size_t>(kPiece, static_cast<std::size_t>(order_.block_size)));
    const std::ptrdiff_t got = source.Read(buffer_.data(), std::min(wanted, buffer_.size()));
    if (got <= 0) return got;
    return copy.Write(std::string_view(buffer_.data(), static_cast<std::size_t>(got))) ? got : -1;
  }

  const CopyOrder& order_;
  const CopyHooks& hooks_;
  const std::stop_token& stop_;
  struct stat status_ {};  // of the source
  bool replacing_ = false;
  bool in_kernel_ = true;
  std::vector<char> buffer_;
};

}  // namespace

CopyOutcome CopyOrMoveFile(const CopyOrder& order, const CopyHooks& hooks,
                           const std::stop_token& stop) {
  return Copying(order, hooks, stop).Run();
}

}  // namespace kv
