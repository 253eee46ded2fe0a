// Details of media, read on a thread ahead of the row that will show them.
//
// A disk that sleeps or a network folder that is gone must hold up neither the interface nor the
// end of the program: the thread shares nothing with its owner but what it works on, and one that
// does not come back from a read is left behind. Used from the interface thread; `Read` is called
// on the other one.
#pragma once

#include "playlist/media_details.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kv {

class DetailsReadAhead {
 public:
  // Reads one file. Kept alive by a thread that is left behind, so it must own what it refers to.
  using Read = std::function<MediaDetails(const std::string& path)>;

  // Without a thread of its own nothing is read until `ReadOne` is called.
  enum class Worker { kThread, kByHand };

  explicit DetailsReadAhead(Read read, Worker worker = Worker::kThread);
  // Waits for the thread a moment, not for a read that hangs.
  ~DetailsReadAhead();
  DetailsReadAhead(const DetailsReadAhead&) = delete;
  DetailsReadAhead& operator=(const DetailsReadAhead&) = delete;

  // What is wanted now, the most urgent first: a few paths, since all are kept until they are
  // taken. What was wanted earlier and is no more is dropped.
  void Want(std::vector<std::string> paths);

  // The details of a wanted path if they are ready; they are handed over once.
  std::optional<MediaDetails> Take(const std::string& path);

  // Wants nothing more and lets go of a read under way.
  void Abandon();

  // Reads the most urgent path that is not ready; false when there is none.
  bool ReadOne();

 private:
  struct Shared;
  std::shared_ptr<Shared> shared_;
  Worker worker_;
};

}  // namespace kv
