// A media file as the tag readers see it: its bytes, and where its tags end and its sound begins.
#pragma once

#include <taglib/tfilestream.h>

#include <memory>
#include <optional>
#include <string>

namespace kv {

// A plain file opened for reading; null for anything else.
std::unique_ptr<TagLib::FileStream> OpenMedia(const std::string& path);

// Up to `size` bytes from `offset`; fewer at the end of the stream or on an error.
std::string ReadBytes(TagLib::IOStream& stream, long offset, std::size_t size);

inline constexpr long kId3v1Bytes = 128;
inline constexpr long kId3v2HeaderBytes = 10;

// Where the ID3v1 tag begins, if there is one.
std::optional<long> FindId3v1(TagLib::IOStream& stream);

struct Id3v2Header {
  long begin = 0;   // of the header
  long body = 0;    // behind the header
  long end = 0;     // behind the whole tag, its footer included; may lie behind the end of the file
  int version = 0;  // 2 to 4
  unsigned flags = 0;
};

// The ID3v2 tag whose header stands at `offset`.
std::optional<Id3v2Header> ReadId3v2Header(TagLib::IOStream& stream, long offset);

// The ID3v2 tag that counts: at the very beginning, or else at the end, before an ID3v1 tag.
std::optional<Id3v2Header> FindId3v2(TagLib::IOStream& stream);

struct SoundRange {
  long begin = 0;
  long end = 0;
};

// What is left between the tags in front (ID3v2) and behind (ID3v1, APE, ID3v2).
SoundRange FindSound(TagLib::IOStream& stream);

}  // namespace kv
