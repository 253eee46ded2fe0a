// The registry's store, which a user may have edited: key, name, data and the store's text.
#include "system/registry.h"

#include "support.h"

#include <algorithm>

namespace kv::fuzz {
namespace {

constexpr RegistryRoot kRoot = RegistryRoot::kCurrentUser;
constexpr std::size_t kMostBytes = 2048;

// What a text is read back as: without blanks at the ends, up to the first NUL.
std::string AsRead(std::string_view data, bool closed) {
  if (data.size() + (closed ? 1 : 0) > kMostBytes) return {};
  data.remove_prefix(std::min(data.find_first_not_of(' '), data.size()));
  if (const std::size_t end = data.find('\0'); end != std::string_view::npos) {
    return std::string(data.substr(0, end));
  }
  if (!closed) data = data.substr(0, data.find_last_not_of(' ') + 1);
  return std::string(data);
}

}  // namespace

void Try(std::string_view input) {
  Parts parts(input);
  const std::string_view key = parts.Next();
  const std::string_view name = parts.Next();
  const std::string_view data = parts.Next();
  static const Folder folder;
  Registry registry(folder.Write("registry.ini", parts.Rest()));

  Require(registry.RegReadValue(kRoot, key, name).size() <= 2 * kMostBytes, "values are bounded");
  registry.RegReadValue(RegistryRoot::kLocalMachine, name, key);
  for (const int type : {kRegistryText, 2}) {
    if (registry.RegWriteValue(kRoot, key, name, type, data) != kRegistrySuccess) continue;
    Require(registry.RegReadValue(kRoot, key, name) == AsRead(data, type == kRegistryText),
            "a text that was written is read");
  }
  if (registry.RegWriteValue(kRoot, key, name, kRegistryInteger, data) == kRegistrySuccess) {
    Require(registry.RegReadValue(kRoot, key, name).size() >= 3, "numbers have three digits");
  }
  const std::string before = folder.Read("registry.ini");
  if (registry.RegRemoveValue(kRoot, key, name) == kRegistrySuccess) {
    Require(folder.Read("registry.ini").size() < before.size(), "a removal takes something");
  }
  registry.RegRemoveKey(kRoot, key);
}

}  // namespace kv::fuzz
