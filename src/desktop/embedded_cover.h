// The picture that a medium carries in its tag: ID3v2 (2.2 to 2.4), FLAC and MP4.
//
// Reads foreign bytes: every length is checked against what is there, what is walked and read is
// bounded, and a picture counts only if it begins like one. Any thread.
#pragma once

#include <string>

namespace kv {

struct CoverPicture {
  std::string bytes;      // empty: none
  std::string extension;  // of its kind, with the dot: ".jpg", ".png", ".gif", ".webp"
};

// The front cover of a plain file, or else its first picture. At most 16 MB.
CoverPicture FindEmbeddedCover(const std::string& path);

// The extension that belongs to the first bytes of a picture; empty when it is none of the four.
std::string PictureExtension(const std::string& bytes);

}  // namespace kv
