#include "system/files.h"

#include "system/ascii_text.h"
#include "system/file_descriptor.h"
#include "system/paths.h"
#include "system/special_folders.h"
#include "system/temporary_file.h"
#include "system/utf8.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <random>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <system_error>
#include <unistd.h>

namespace kv {
namespace {

constexpr std::size_t kCopyBlock = std::size_t{1024} * 1024;

// A NUL would cut the name short and reach another file.
bool IsName(const std::string& path) {
  return !path.empty() && path.find('\0') == std::string::npos;
}

// Opens a plain file for reading. A pipe or device is refused without waiting for it.
FileDescriptor OpenPlainFile(const std::string& path, struct stat& status) {
  if (!IsName(path)) return {};
  FileDescriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  if (!file.IsOpen() || fstat(file.Number(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
  return file;
}

using Entry = std::filesystem::directory_entry;

std::vector<std::string> ListEntries(const std::string& folder,
                                     const std::function<bool(const Entry&)>& keep) {
  std::vector<std::string> names;
  if (!IsName(folder)) return names;
  std::error_code error;
  std::filesystem::directory_iterator at(folder, error);
  for (const std::filesystem::directory_iterator end; !error && at != end; at.increment(error)) {
    if (keep(*at)) names.push_back(at->path().filename().native());
  }
  return names;
}

std::string InHex(std::uint64_t number, int digits) {
  std::array<char, 20> text{};
  const int size = std::snprintf(text.data(), text.size(), "%0*llx", digits,
                                 static_cast<unsigned long long>(number));
  return {text.data(), static_cast<std::size_t>(size)};
}

// The move between two file systems: the old file goes only when the new one is whole.
bool CopyThenRemove(const std::string& old_path, const std::string& new_path) {
  struct stat status {};
  struct stat link {};
  if (lstat(old_path.c_str(), &link) != 0 || !S_ISREG(link.st_mode)) return false;
  const FileDescriptor source = OpenPlainFile(old_path, status);
  if (!source.IsOpen()) return false;
  TemporaryFile copy(new_path.substr(0, new_path.rfind('/') + 1));
  if (!copy.IsOpen()) return false;
  std::string block(kCopyBlock, '\0');
  while (true) {
    const std::ptrdiff_t got = source.Read(block.data(), block.size());
    if (got < 0) return false;
    if (got == 0) break;
    if (!copy.Write(std::string_view(block).substr(0, static_cast<std::size_t>(got)))) return false;
  }
  const std::array<timespec, 2> times = {status.st_atim, status.st_mtim};
  if (fchmod(copy.Number(), status.st_mode & 0777U) != 0) return false;
  if (futimens(copy.Number(), times.data()) != 0) return false;
  if (!copy.Finish() || !copy.MoveTo(new_path)) return false;
  if (unlink(old_path.c_str()) == 0) return true;
  unlink(new_path.c_str());
  return false;
}

}  // namespace

double FileSizeBytes(const std::string& path) {
  struct stat status {};
  if (!IsName(path) || stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return 0;
  return static_cast<double>(status.st_size);
}

double GetDriveFreeBytes(const std::string& root) {
  struct statvfs status {};
  if (!IsName(root) || statvfs(root.c_str(), &status) != 0) return 0;
  return static_cast<double>(status.f_bavail) * static_cast<double>(status.f_frsize);
}

std::vector<std::string> ListFilesInFolder(const std::string& folder, std::string_view types) {
  const bool all = types == "*.*";
  return ListEntries(folder, [&](const Entry& entry) {
    const std::string name = entry.path().filename().native();
    std::error_code error;
    return (all || ContainsIgnoringCase(types, LastCharacters(name, 3))) &&
           entry.is_regular_file(error);
  });
}

std::vector<std::string> ListSubFolders(const std::string& folder) {
  return ListEntries(folder, [](const Entry& entry) {
    std::error_code error;
    return entry.is_directory(error);
  });
}

bool ReadWholeFile(const std::string& path, std::size_t max_bytes, std::string& bytes) {
  struct stat status {};
  const FileDescriptor file = OpenPlainFile(path, status);
  if (!file.IsOpen() || status.st_size < 0) return false;
  // The size told may be wrong by now, or 0 for a file that the kernel makes up; one byte more than
  // expected shows that there is more.
  std::string content;
  std::size_t expected = static_cast<std::size_t>(status.st_size);
  while (expected <= max_bytes) {
    const std::size_t had = content.size();
    content.resize(expected + 1);
    const std::ptrdiff_t got = file.Read(content.data() + had, content.size() - had);
    if (got < 0) return false;
    const std::size_t size = had + static_cast<std::size_t>(got);
    if (size <= expected) {
      content.resize(size);
      bytes = std::move(content);
      return true;
    }
    if (size > max_bytes) return false;
    expected = std::min(max_bytes, std::max<std::size_t>(size * 2, 4096));
  }
  return false;
}

std::string ReadTextFile(const std::string& path, std::size_t max_bytes) {
  std::string text;
  if (!ReadWholeFile(path, max_bytes, text)) return {};
  if (text.ends_with("\r\n")) text.resize(text.size() - 2);
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(kByteOrderMark)) text.erase(0, kByteOrderMark.size());
  return text;
}

bool MakeTempFileName(const std::string& folder, std::string_view prefix, unsigned unique,
                      std::string& result) {
  std::string base = folder.empty() ? GetTempFolder() : folder;
  if (!base.ends_with('/')) base += '/';
  base += prefix.substr(0, 3);
  if (!IsName(base) || prefix.substr(0, 3).find('/') != std::string_view::npos) return false;
  if (unique != 0) {
    if (!FolderExists(base.substr(0, base.rfind('/') + 1))) return false;
    result = base + InHex(unique & 0xFFFFU, 1) + ".tmp";
    return true;
  }
  constexpr int kTries = 100;  // against 2^64 names one is enough
  std::random_device random;
  for (int i = 0; i < kTries; ++i) {
    const std::uint64_t number = (std::uint64_t{random()} << 32U) | random();
    const std::string name = base + InHex(number, 16) + ".tmp";
    const FileDescriptor file(open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (file.IsOpen()) {
      result = name;
      return true;
    }
    if (errno != EEXIST) return false;
  }
  return false;
}

bool RenameFileInFolder(const std::string& old_path, const std::string& new_path) {
  // Where "\" separates, folders ignore case; on this system's own paths they do not.
  const std::string old_folder = FolderOfPath(old_path);
  const std::string new_folder = FolderOfPath(new_path);
  const bool same = IsNativePath(old_path) ? old_folder == new_folder
                                           : EqualsIgnoringCase(old_folder, new_folder);
  return !same || MoveFileApi(old_path, new_path);
}

bool MoveFileApi(const std::string& old_path, const std::string& new_path) {
  if (!IsName(old_path) || !IsName(new_path)) return false;
  if (RenameNoReplace(old_path, new_path)) return true;
  return errno == EXDEV && CopyThenRemove(old_path, new_path);
}

bool CreateFolders(const std::string& folder) {
  if (!IsName(folder)) return false;
  for (std::size_t at = 0; at != std::string::npos;) {
    at = folder.find('/', at + 1);
    const std::string part = folder.substr(0, at);
    if (!FolderExists(part) && mkdir(part.c_str(), 0700) != 0 && errno != EEXIST) return false;
  }
  if (FolderExists(folder)) return true;
  errno = ENOTDIR;
  return false;
}

}  // namespace kv
