// The list of media opened last.
#pragma once

#include "state/settings.h"
#include "system/text_platform.h"

#include <array>
#include <string>

namespace kv {

// Newest first, each name once, no gaps, empty texts at the end.
using RecentFileList = std::array<std::string, kRecentFiles>;

// Puts `file` at the top, in the letter case it comes in. A name that is listed already, ignoring
// case, moves up; otherwise the oldest falls off the end of a full list. Gaps close.
void AddRecentFile(RecentFileList& list, const std::string& file, const TextPlatform& text);

}  // namespace kv
