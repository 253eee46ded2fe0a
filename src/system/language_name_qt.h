// Names of languages for the user. Any thread.
#pragma once

#include <string>
#include <string_view>

namespace kv {

// The name of the language of an ISO 639 code of two or three letters, with or without a region
// ("de", "ger", "pt-BR": "Portuguese (Brazil)"), in the user's language where the catalogue has it;
// empty for a code that names none.
std::string LanguageName(std::string_view code);

}  // namespace kv
