// A folder for one test, empty at first and gone with everything in it at the end.
#pragma once

#include "system/special_folders.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <string_view>
#include <system_error>

namespace kv {

class TempFolder {
 public:
  TempFolder() : path_(GetTempFolder() + "kv_test_XXXXXX") {
    if (mkdtemp(path_.data()) == nullptr) ADD_FAILURE() << "no scratch folder at " << path_;
    path_ += '/';
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  // The folder, with a trailing "/".
  const std::string& Path() const { return path_; }

  // The whole path of `name` in the folder.
  std::string Path(std::string_view name) const { return path_ + std::string(name); }

  // Creates a file, and the folders above it; answers its path.
  std::string Write(std::string_view name, std::string_view bytes) const {
    std::string file = Path(name);
    std::filesystem::create_directories(std::filesystem::path(file).parent_path());
    std::ofstream(file, std::ios::binary) << bytes;
    return file;
  }

  std::string MakeFolder(std::string_view name) const {
    std::filesystem::create_directories(Path(name));
    return Path(name);
  }

  // The content of a file, empty when it is not there.
  std::string Read(std::string_view name) const {
    std::ifstream file(Path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  // How many entries of any kind stand directly in the folder.
  int Entries() const {
    return static_cast<int>(std::distance(std::filesystem::directory_iterator(path_),
                                          std::filesystem::directory_iterator()));
  }

 private:
  std::string path_;
};

}  // namespace kv
