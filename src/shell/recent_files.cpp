#include "shell/recent_files.h"

#include <cstddef>
#include <utility>

namespace kv {

void AddRecentFile(RecentFileList& list, const std::string& file, const TextPlatform& text) {
  const std::string wanted = text.Lower(file);
  RecentFileList renewed;
  renewed.front() = file;
  std::size_t next = 1;
  for (std::string& entry : list) {
    if (next == renewed.size()) break;
    if (!entry.empty() && text.Lower(entry) != wanted) renewed.at(next++) = std::move(entry);
  }
  list = std::move(renewed);
}

}  // namespace kv
