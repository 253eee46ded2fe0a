#include "shell/recent_files.h"

#include <algorithm>

namespace kv {

void AddRecentFile(RecentFileList& list, const std::string& file, const TextPlatform& text) {
  const std::string wanted = text.Lower(file);
  const auto known = std::find_if(list.begin(), list.end(), [&](const std::string& entry) {
    return !entry.empty() && text.Lower(entry) == wanted;
  });
  if (known != list.end()) known->clear();
  // The gap goes to the end, so that shifting drops it and not the oldest name.
  std::stable_partition(list.begin(), list.end(), [](const auto& entry) { return !entry.empty(); });
  std::rotate(list.begin(), list.end() - 1, list.end());
  list.front() = file;
  std::stable_partition(list.begin(), list.end(), [](const auto& entry) { return !entry.empty(); });
}

}  // namespace kv
