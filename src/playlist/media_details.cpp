#include "playlist/media_details.h"

#include "system/ascii_text.h"
#include "system/files.h"
#include "system/paths.h"
#include "system/text_case.h"
#include "system/text_format.h"
#include "system/translation.h"
#include "system/utf8.h"

#include <memory>

namespace kv {
namespace {

constexpr const char* kUnknownTime = "??:??:??";

bool IsControl(const Utf8Char& character) {
  return character.code < 0x20 || character.code == 0x7F ||
         (character.valid && character.code >= 0x80 && character.code < 0xA0);
}

// One line, trimmed, of bounded length.
std::string Clean(std::string_view value) {
  std::string line;
  std::size_t characters = 0;
  for (std::size_t at = 0; at < value.size() && characters < kMaxDetailCharacters; ++characters) {
    const Utf8Char next = DecodeUtf8(value, at);
    if (IsControl(next)) {
      line += ' ';
    } else {
      line.append(value.substr(at, next.size));
    }
    at += next.size;
  }
  return std::string(TrimBlanks(line));
}

// A second more, so that a file never shows less than its true length.
std::string TimeText(double duration) {
  return FormatTimeCode(duration + 1.0, false, 1);
}

std::string NameWithoutExtension(const std::string& path) {
  const std::string name = FileNameOfPath(path);
  return name.substr(0, name.rfind('.'));
}

void ReadTag(TagReader& tag, const std::string& path, const TextPlatform& text,
             MediaDetails& details) {
  if (Clean(tag.Title()).empty()) tag.SetTitle(ProperCase(NameWithoutExtension(path), text));
  details.title = Clean(tag.Title());
  details.artist = Clean(tag.Artist());
  details.album = Clean(tag.Album());
  details.genre = Clean(tag.GenreName(tag.Genre()));
}

}  // namespace

MediaDetails ReadMediaDetails(const std::string& path, const MediaReaders& readers,
                              const TextPlatform& text, std::string_view decimal_separator) {
  MediaDetails details;
  details.file_size = FormatByteSize(FileSizeBytes(path), decimal_separator);
  details.extension = Clean(GetFileExtension(path, false));

  const std::unique_ptr<MpegHeaderInfo> header = readers.MakeMpegHeaderInfo();
  if (!header->IsValid(path)) return details;
  details.time = TimeText(header->Duration());
  details.bitrate = std::to_string(header->Bitrate());
  details.mode = Clean(Tr(header->Mode().c_str()));
  details.frequency = std::to_string(header->Frequency());

  std::unique_ptr<TagReader> tag = readers.MakeTagReaderPrimary();
  tag->Load(path);
  if (!tag->HasTag()) {
    tag = readers.MakeTagReaderSecondary();
    tag->Load(path);
  }
  if (tag->HasTag()) ReadTag(*tag, path, text, details);
  return details;
}

std::string GetFileTime(const std::string& path, const MediaReaders& readers) {
  const std::unique_ptr<MpegHeaderInfo> header = readers.MakeMpegHeaderInfo();
  return header->IsValid(path) ? TimeText(header->Duration()) : kUnknownTime;
}

}  // namespace kv
