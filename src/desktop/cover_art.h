// The picture that goes with the medium, as an address that other programs can read.
//
// A picture beside the file is told as it lies there; one inside it is written into the user's
// runtime folder, readable by the user alone, and goes with the medium and with the program. Files
// are read on a thread, which is left behind if one of them hangs. Interface thread.
#pragma once

#include <atomic>
#include <memory>
#include <string>

namespace kv {

class CoverArt {
 public:
  // `runtime_folder` is the user's own, with a trailing "/"; with an empty one nothing is written.
  explicit CoverArt(std::string runtime_folder);
  ~CoverArt();
  CoverArt(const CoverArt&) = delete;
  CoverArt& operator=(const CoverArt&) = delete;

  // The address of the picture of the medium `path`, which may be a URL and then has none. Empty
  // while it is being looked for: the next calls tell.
  std::string Of(const std::string& path);

 private:
  struct Shared;
  void Forget();

  const std::string folder_;
  std::shared_ptr<std::atomic<int>> threads_;  // that search, this one's and those left behind
  int pictures_ = 0;
  std::string path_;
  std::shared_ptr<Shared> search_;  // of `path_`
};

// The picture beside a file that is meant for its folder: "cover", "folder", "front", "album" with
// the extension of a picture, any case. Empty when there is none.
std::string FolderCover(const std::string& file);

}  // namespace kv
