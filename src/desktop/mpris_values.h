// The values of the media player interface, as far as they go over the bus. Plain data; any thread.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <variant>
#include <vector>

namespace kv {

// D-Bus type "o".
struct BusPath {
  std::string path;
  friend bool operator==(const BusPath&, const BusPath&) = default;
};

// What is told of a medium. The list type is "as", the numbers are "x" and "i".
using MetadataValue =
    std::variant<BusPath, std::int64_t, std::int32_t, std::string, std::vector<std::string>>;
using MediaMetadata = std::map<std::string, MetadataValue>;

using MprisValue =
    std::variant<bool, double, std::int64_t, std::string, std::vector<std::string>, MediaMetadata>;
using MprisProperties = std::map<std::string, MprisValue>;

enum class MprisInterface { kRoot, kPlayer };

}  // namespace kv
