// What is asked of a medium's MPEG audio frames and of its two kinds of tags.
//
// Readers are made for one file and released after it; a file that cannot be read has neither
// frames nor tag, and no file is ever changed. Behind these stands a tag library; the tests script
// them. Any thread, one reader on one thread at a time.
#pragma once

#include <memory>
#include <string>

namespace kv {

// The frames of MPEG audio: MPEG 1, 2 and 2.5, layers I to III (ISO/IEC 11172-3, 13818-3).
class MpegHeaderInfo {
 public:
  virtual ~MpegHeaderInfo() = default;
  // Reads the file; true when it holds MPEG audio that can be measured. All others answer 0 or
  // empty until it has.
  virtual bool IsValid(const std::string& path) = 0;
  virtual double Duration() const = 0;   // seconds
  virtual int Bitrate() const = 0;       // kbit/s, the average where it varies
  virtual int Frequency() const = 0;     // Hz
  virtual std::string Mode() const = 0;  // "Stereo", "Joint stereo", "Dual channel", "Mono"
  virtual int HeaderValue() const = 0;   // second byte of the first frame header, 0 to 255:
                                         // version, layer and protection
};

// A tag: ID3v1 behind the primary reader, ID3v2 behind the secondary. Texts are UTF-8.
class TagReader {
 public:
  virtual ~TagReader() = default;
  virtual void Load(const std::string& path) = 0;
  virtual bool HasTag() const = 0;
  virtual std::string Title() const = 0;
  virtual void SetTitle(const std::string& title) = 0;  // in this object alone
  virtual std::string Artist() const = 0;
  virtual std::string Album() const = 0;
  virtual int Genre() const = 0;  // number in the ID3 genre list; -1 when there is none in it
  // Name of a number; for this tag's own number the name that the tag itself gives, if any.
  virtual std::string GenreName(int number) const = 0;
};

class MediaReaders {
 public:
  virtual ~MediaReaders() = default;
  virtual std::unique_ptr<MpegHeaderInfo> MakeMpegHeaderInfo() const = 0;
  virtual std::unique_ptr<TagReader> MakeTagReaderPrimary() const = 0;    // ID3v1
  virtual std::unique_ptr<TagReader> MakeTagReaderSecondary() const = 0;  // ID3v2
};

}  // namespace kv
