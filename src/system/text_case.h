// Letter case of whole texts that the user reads. Any thread.
#pragma once

#include "system/text_platform.h"

#include <string>
#include <string_view>

namespace kv {

// `text` with the first character of each word in upper case and all others in lower case. Words
// are divided by white space alone, so "don't" and "(live)" keep their beginnings. Bytes that are
// not UTF-8 stay as they are.
std::string ProperCase(std::string_view text, const TextPlatform& platform);

}  // namespace kv
