// "file:" addresses (RFC 8089) and the paths that they name, byte for byte. Any thread.
#pragma once

#include <string>
#include <string_view>

namespace kv {

// The address of an absolute path. Every byte but the unreserved characters is escaped, so that a
// name in any encoding survives.
std::string FileAddress(std::string_view path);

// True for an address of this scheme, in any case.
bool IsFileAddress(std::string_view text);

// The path in a "file:" address, whose host counts for nothing; empty when it has none.
std::string PathOfFileAddress(std::string_view address);

}  // namespace kv
