#include "playlist/playlist_commands.h"

#include <algorithm>

namespace kv {

std::string_view KeysOf(ListCommand command) {
  const auto found = std::find_if(kListKeys.begin(), kListKeys.end(),
                                  [command](const ListKey& key) { return key.command == command; });
  return found != kListKeys.end() ? found->keys : std::string_view();
}

}  // namespace kv
