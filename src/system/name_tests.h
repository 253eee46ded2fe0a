// What kind of thing a path or URL is, told from its text alone. Any thread.
#pragma once

#include <string>
#include <string_view>

namespace kv {

// The extension is ".asf", ".asx" or ".wax", any case.
bool IsAsfFile(std::string_view path);

// The extension is ".m3u", any case.
bool IsM3UFile(std::string_view path);

// True for a URL of one of the four schemes, and for a name whose extension with its dot occurs
// anywhere in `supported_extensions` ("*.mp3;*.wav"), any case. This is a search for text and not
// for an entry of the list: ".mp" is found in ".mp3", and an empty extension is found always.
bool IsPlayableName(std::string_view path, std::string_view supported_extensions);

// Begins with "https://", "http://", "ftp://" or "mms://", any case.
bool IsUrl(std::string_view text);

// The same as IsUrl.
bool IsUrlName(std::string_view text);

// "https://", "http://" or "ftp://" when the text begins so, any case; "\\" (two backslashes, the
// local network) for anything else, "mms://" included.
std::string UrlSchemeOf(std::string_view text);

}  // namespace kv
