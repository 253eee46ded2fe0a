// The filter of the open dialogs in the user's language. Any thread.
#pragma once

#include <string>
#include <string_view>

namespace kv {

// `filter` is "label|patterns|label|patterns". The labels that come with the program are
// translated; others, which the user has written into "filesupport.dat", stay as they are.
std::string TranslatedFilter(std::string_view filter);

}  // namespace kv
