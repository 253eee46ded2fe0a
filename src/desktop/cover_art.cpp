#include "desktop/cover_art.h"

#include "desktop/embedded_cover.h"
#include "system/ascii_text.h"
#include "system/file_address.h"
#include "system/files.h"
#include "system/paths.h"
#include "system/save_file.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <mutex>
#include <string_view>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>

namespace kv {
namespace {

constexpr std::string_view kPrefix = "kestrelview-cover-";
// Each search that never comes back keeps a thread; with so many none is begun any more.
constexpr int kMostThreads = 4;

// In the order in which they are taken.
constexpr std::array kNames = {"cover", "folder", "front", "album"};
constexpr std::array kExtensions = {".jpg", ".jpeg", ".png", ".webp"};

// Takes away the pictures of players that were killed.
void Sweep(const std::string& folder) {
  for (const std::string& name : ListFilesInFolder(folder, "*.*")) {
    if (!name.starts_with(kPrefix)) continue;
    pid_t process = 0;
    std::from_chars(name.data() + kPrefix.size(), name.data() + name.size(), process);
    if (process > 0 && kill(process, 0) != 0 && errno == ESRCH) unlink((folder + name).c_str());
  }
}

}  // namespace

// All but the first belong to the mutex.
struct CoverArt::Shared {
  std::mutex mutex;
  bool wanted = true;
  std::string address;
  std::string written;  // the file that goes with the medium

  // `stem` is the whole path of a picture that is to be written, without its extension.
  void Find(const std::string& path, const std::string& stem) {
    std::string found;
    std::string file;
    if (!stem.empty()) {
      Sweep(FolderOfPath(stem));
      const CoverPicture picture = FindEmbeddedCover(path);
      if (!picture.bytes.empty()) file = stem + picture.extension;
      if (!file.empty() && !SaveFileChecked(file, picture.bytes)) file.clear();
    }
    if (file.empty()) found = FolderCover(path);
    const std::scoped_lock lock(mutex);
    if (!wanted) {
      if (!file.empty()) unlink(file.c_str());
      return;
    }
    written = file;
    if (!file.empty()) found = file;
    if (!found.empty()) address = FileAddress(found);
  }
};

CoverArt::CoverArt(std::string runtime_folder)
    : folder_(std::move(runtime_folder)), threads_(std::make_shared<std::atomic<int>>(0)) {}

CoverArt::~CoverArt() {
  Forget();
}

void CoverArt::Forget() {
  if (!search_) return;
  const std::scoped_lock lock(search_->mutex);
  search_->wanted = false;
  if (!search_->written.empty()) unlink(search_->written.c_str());
}

std::string CoverArt::Of(const std::string& path) {
  if (path != path_) {
    Forget();
    path_ = path;
    search_ = std::make_shared<Shared>();
    if (path.empty() || path[0] != '/' || *threads_ >= kMostThreads) return {};
    // Clients remember a picture by its address, so that each has a name of its own.
    const std::string stem = folder_.empty()
                                 ? std::string()
                                 : folder_ + std::string(kPrefix) + std::to_string(getpid()) + "-" +
                                       std::to_string(++pictures_);
    ++*threads_;
    try {
      std::thread([search = search_, threads = threads_, path, stem] {
        search->Find(path, stem);
        --*threads;
      }).detach();
    } catch (const std::system_error&) {
      --*threads_;  // the system has no thread to give: no picture
    }
    return {};
  }
  const std::scoped_lock lock(search_->mutex);
  return search_->address;
}

std::string FolderCover(const std::string& file) {
  const std::string folder = FolderOfPath(file);
  std::string best;
  std::size_t best_rank = kNames.size() * kExtensions.size();
  for (const std::string& name : ListFilesInFolder(folder, "*.*")) {
    const std::string lower = LowerAscii(name);
    for (std::size_t rank = 0; rank < best_rank; ++rank) {
      if (lower !=
          std::string(kNames[rank / kExtensions.size()]) + kExtensions[rank % kExtensions.size()]) {
        continue;
      }
      best = folder + name;
      best_rank = rank;
    }
  }
  return best;
}

}  // namespace kv
