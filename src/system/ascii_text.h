// Plain helpers for texts whose letter case matters only in ASCII: schemes, extensions, INI names.
//
// Bytes outside ASCII stand for themselves, so UTF-8 and names in any other encoding pass unharmed.
// Folding of the whole of Unicode is a platform operation, see text_platform.h. Any thread.
#pragma once

#include <string>
#include <string_view>

namespace kv {

// `c` in lower case if it is one of A-Z.
char LowerAscii(char c);

// `text` with A-Z in lower case.
std::string LowerAscii(std::string_view text);

// The comparisons below take A-Z and a-z for the same letters.
bool EqualsIgnoringCase(std::string_view a, std::string_view b);
bool StartsWithIgnoringCase(std::string_view text, std::string_view prefix);

// True also for an empty `needle`, whatever `text` is.
bool ContainsIgnoringCase(std::string_view text, std::string_view needle);

// `text` without blanks, tabs and line ends at both ends.
std::string_view TrimBlanks(std::string_view text);

}  // namespace kv
