// Media files as the details columns of the list read them.
#include "playlist/media_details.h"
#include "playlist/tag_readers_taglib.h"
#include "support.h"
#include "support/fake_text_platform.h"

#include <cmath>

namespace kv::fuzz {
namespace {

void RequireShown(const std::string& text) {
  Require(IsWellFormedUtf8(text), "texts are UTF-8");
  Require(!HasControl(text), "texts have no control characters");
  Require(CountCharacters(text) <= kMaxDetailCharacters, "texts are bounded");
}

void TryTag(TagReader& tag, const std::string& path) {
  tag.Load(path);
  Require(tag.Genre() >= -1 && tag.Genre() <= 255, "a number of the list of genres");
  for (const std::string& text :
       {tag.Title(), tag.Artist(), tag.Album(), tag.GenreName(tag.Genre())}) {
    RequireShown(text);
    Require(tag.HasTag() || text.empty(), "without a tag there are no texts");
  }
}

void TryMpeg(MpegHeaderInfo& header, const std::string& path) {
  const bool valid = header.IsValid(path);
  Require(std::isfinite(header.Duration()) && header.Duration() >= 0, "a length");
  Require(valid == (header.Frequency() > 0), "measured, or nothing told");
  Require(header.Bitrate() >= 0 && header.Bitrate() <= 1000, "a sane bit rate");
}

}  // namespace

void Try(std::string_view input) {
  static const FakeTextPlatform platform;
  static const TagLibReaders readers;
  static MemoryFile file;
  const std::string& path = file.Holding(input);
  TryMpeg(*readers.MakeMpegHeaderInfo(), path);
  TryTag(*readers.MakeTagReaderPrimary(), path);
  TryTag(*readers.MakeTagReaderSecondary(), path);
  const MediaDetails details = ReadMediaDetails(path, readers, platform, ",");
  for (const std::string* text : {&details.title, &details.artist, &details.album, &details.genre,
                                  &details.bitrate, &details.mode, &details.frequency}) {
    RequireShown(*text);
  }
  GetFileTime(path, readers);
}

}  // namespace kv::fuzz
