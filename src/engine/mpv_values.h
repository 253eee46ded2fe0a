// What the core tells in its properties, as values of ours. A property that holds another kind of
// value, or none, reads as nothing. Pure; any thread.
#pragma once

#include "engine/filter_graph.h"

#include <mpv/client.h>

#include <string>

namespace kv {

// Null for anything but a number with a fraction; lives as long as the event.
const double* AsDouble(const mpv_event_property& property);
bool AsFlag(const mpv_event_property& property);
std::string AsText(const mpv_event_property& property);

// Of the property "metadata": names in lower case ASCII, values that are texts.
MediaTags AsTags(const mpv_event_property& property);

// Of the property "video-out-params": pixels as they are to be shown, square and turned; 0 x 0 for
// no picture.
VideoSize AsVideoSize(const mpv_event_property& property);

}  // namespace kv
