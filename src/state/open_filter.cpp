#include "state/open_filter.h"

#include "system/translation.h"

#include <algorithm>
#include <array>

namespace kv {
namespace {

constexpr std::array<std::string_view, 6> kLabels = {
    TrLater("All supported files"), TrLater("Video"),        TrLater("Audio"),
    TrLater("Playlists"),           TrLater("Resume files"), TrLater("All files")};

}  // namespace

std::string TranslatedFilter(std::string_view filter) {
  std::string result;
  for (bool label = true;; label = !label) {
    const std::string_view part = filter.substr(0, filter.find('|'));
    const bool ours = label && std::find(kLabels.begin(), kLabels.end(), part) != kLabels.end();
    result += ours ? Tr(part) : part;
    if (part.size() == filter.size()) return result;
    result += '|';
    filter.remove_prefix(part.size() + 1);
  }
}

}  // namespace kv
