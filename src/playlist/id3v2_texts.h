// The few texts of an ID3v2 tag that the player shows, picked out of a tag of any size.
//
// A tag may hold hundreds of megabytes of pictures, or frames nested so deep that taking them apart
// never ends. So its frames are walked by their headers, and only the wanted ones are read.
#pragma once

#include <taglib/tiostream.h>

#include <string>

namespace kv {

// A small ID3v2 tag (2.3 or 2.4) with the first title, artist, album and genre frame of the tag in
// `stream`; the tag alone when it has none of them. Empty when there is no tag, or one without any
// frame. At most 4096 frames are walked, frames of more than 1 MB (16 kB where compressed) are left
// out, and of a tag that is unsynchronised as a whole the first 16 MB count.
std::string TextsOfId3v2(TagLib::IOStream& stream);

}  // namespace kv
