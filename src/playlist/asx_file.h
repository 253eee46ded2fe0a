// ASX metafiles (".asx", ".asf", ".wax"): a few texts and the address of one stream.
//
// The format is read by searching for its tags, any case, and not as XML. Any thread.
#pragma once

#include "state/session.h"

#include <string>
#include <string_view>

namespace kv {

// The five texts of a metafile, trimmed of blanks; what is not there, or not closed, is empty. Of
// several entries the first counts. UTF-16 with a byte order mark is read as well as UTF-8.
AsxInfo ParseAsx(std::string_view text);

// The same of a file. All empty when it cannot be read, is larger than any metafile, or holds the
// medium itself, which may bear the same extension.
AsxInfo ReadAsxFile(const std::string& path);

}  // namespace kv
