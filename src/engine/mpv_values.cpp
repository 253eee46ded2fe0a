#include "engine/mpv_values.h"

#include "system/ascii_text.h"

#include <cstdint>
#include <string_view>
#include <utility>

namespace kv {
namespace {

// Null when the property is no map.
const mpv_node_list* AsMap(const mpv_event_property& property) {
  if (property.format != MPV_FORMAT_NODE) return nullptr;
  const auto& node = *static_cast<const mpv_node*>(property.data);
  return node.format == MPV_FORMAT_NODE_MAP ? node.u.list : nullptr;
}

}  // namespace

const double* AsDouble(const mpv_event_property& property) {
  return property.format == MPV_FORMAT_DOUBLE ? static_cast<const double*>(property.data) : nullptr;
}

bool AsFlag(const mpv_event_property& property) {
  return property.format == MPV_FORMAT_FLAG && *static_cast<const int*>(property.data) != 0;
}

std::string AsText(const mpv_event_property& property) {
  if (property.format != MPV_FORMAT_STRING) return {};
  return *static_cast<char* const*>(property.data);
}

MediaTags AsTags(const mpv_event_property& property) {
  MediaTags tags;
  const mpv_node_list* const map = AsMap(property);
  for (int i = 0; map != nullptr && i < map->num; ++i) {
    const mpv_node& value = map->values[i];
    if (value.format == MPV_FORMAT_STRING) tags[LowerAscii(map->keys[i])] = value.u.string;
  }
  return tags;
}

VideoSize AsVideoSize(const mpv_event_property& property) {
  VideoSize size;
  std::int64_t rotation = 0;
  const mpv_node_list* const map = AsMap(property);
  for (int i = 0; map != nullptr && i < map->num; ++i) {
    const std::string_view name = map->keys[i];
    const mpv_node& value = map->values[i];
    if (value.format != MPV_FORMAT_INT64) continue;
    if (name == "dw") size.width = static_cast<int>(value.u.int64);
    if (name == "dh") size.height = static_cast<int>(value.u.int64);
    if (name == "rotate") rotation = value.u.int64;
  }
  if (rotation % 180 != 0) std::swap(size.width, size.height);
  return size;
}

}  // namespace kv
