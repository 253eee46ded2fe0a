#include "playlist/details_read_ahead.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace kv {
namespace {

// Each read that never returns keeps a thread; with so many the folder is given up.
constexpr int kMostThreads = 4;

constexpr std::chrono::milliseconds kLastWait{200};

}  // namespace

// All fields but `read` belong to the mutex.
struct DetailsReadAhead::Shared {
  struct Ready {
    std::string path;
    MediaDetails details;
  };

  explicit Shared(Read read_file) : read(std::move(read_file)) {}

  const Read read;
  std::mutex mutex;
  std::condition_variable changed;
  std::vector<std::string> wanted;
  std::vector<Ready> ready;
  // A thread serves the generation that it was started for and ends with it.
  std::uint64_t generation = 0;
  bool has_thread = false;  // of this generation
  int threads = 0;          // of all

  bool IsWanted(const std::string& path) const {
    return std::find(wanted.begin(), wanted.end(), path) != wanted.end();
  }

  auto FindReady(const std::string& path) {
    return std::find_if(ready.begin(), ready.end(),
                        [&path](const Ready& entry) { return entry.path == path; });
  }

  // The most urgent path that is not ready; null when there is none.
  const std::string* Next() {
    const auto next = std::find_if(wanted.begin(), wanted.end(), [this](const std::string& path) {
      return FindReady(path) == ready.end();
    });
    return next == wanted.end() ? nullptr : &*next;
  }

  // Reads with the mutex let go meanwhile.
  bool ReadNext(std::unique_lock<std::mutex>& lock) {
    const std::string* next = Next();
    if (next == nullptr) return false;
    const std::string path = *next;
    const std::uint64_t begun = generation;
    lock.unlock();
    MediaDetails details;
    try {
      details = read(path);
    } catch (...) {
      details = MediaDetails{};  // a file that cannot be read has empty cells
    }
    lock.lock();
    if (generation == begun && IsWanted(path) && FindReady(path) == ready.end()) {
      ready.push_back({path, std::move(details)});
    }
    return true;
  }

  static void Work(const std::shared_ptr<Shared>& shared, std::uint64_t own) {
    std::unique_lock lock(shared->mutex);
    while (shared->generation == own) {
      if (shared->ReadNext(lock)) continue;
      shared->changed.wait(
          lock, [&shared, own] { return shared->generation != own || shared->Next() != nullptr; });
    }
    --shared->threads;
    shared->changed.notify_all();
  }
};

DetailsReadAhead::DetailsReadAhead(Read read, Worker worker)
    : shared_(std::make_shared<Shared>(std::move(read))), worker_(worker) {}

DetailsReadAhead::~DetailsReadAhead() {
  Abandon();
  std::unique_lock lock(shared_->mutex);
  shared_->changed.wait_for(lock, kLastWait, [this] { return shared_->threads == 0; });
}

void DetailsReadAhead::Want(std::vector<std::string> paths) {
  const std::lock_guard lock(shared_->mutex);
  shared_->wanted = std::move(paths);
  std::erase_if(shared_->ready,
                [this](const Shared::Ready& entry) { return !shared_->IsWanted(entry.path); });
  if (worker_ == Worker::kByHand || shared_->Next() == nullptr) return;
  if (!shared_->has_thread && shared_->threads < kMostThreads) {
    try {
      std::thread(Shared::Work, shared_, shared_->generation).detach();
      shared_->has_thread = true;
      ++shared_->threads;
    } catch (const std::system_error&) {
      return;  // no thread to be had now; the next call tries again
    }
  }
  shared_->changed.notify_all();
}

std::optional<MediaDetails> DetailsReadAhead::Take(const std::string& path) {
  const std::lock_guard lock(shared_->mutex);
  const auto found = shared_->FindReady(path);
  if (found == shared_->ready.end()) return std::nullopt;
  MediaDetails details = std::move(found->details);
  shared_->ready.erase(found);
  std::erase(shared_->wanted, path);
  return details;
}

void DetailsReadAhead::Abandon() {
  const std::lock_guard lock(shared_->mutex);
  ++shared_->generation;
  shared_->has_thread = false;
  shared_->wanted.clear();
  shared_->ready.clear();
  shared_->changed.notify_all();
}

bool DetailsReadAhead::ReadOne() {
  std::unique_lock lock(shared_->mutex);
  return shared_->ReadNext(lock);
}

}  // namespace kv
