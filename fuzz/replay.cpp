// Runs a target over the files of folders, once each: no fuzzer, any compiler. The empty input and
// every first half of a file come along.
#include "support.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

int main(int count, char** arguments) {
  int runs = 0;
  for (int i = 1; i < count; ++i) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(arguments[i])) {
      if (!entry.is_regular_file()) continue;
      std::ifstream file(entry.path(), std::ios::binary);
      const std::string bytes{std::istreambuf_iterator<char>(file), {}};
      kv::fuzz::Try(bytes);
      kv::fuzz::Try(std::string_view(bytes).substr(0, bytes.size() / 2));
      ++runs;
    }
  }
  kv::fuzz::Try({});
  std::printf("%d files\n", runs);
  return runs > 0 ? 0 : 1;
}
