// What the fuzz targets share: properties, inputs of several parts, and files that are not on a
// disk.
//
// A target is one function `Try`, given any bytes. It ends the program where a property does not
// hold, and the fuzzer keeps the bytes. One thread.
#pragma once

#include <string>
#include <string_view>

namespace kv::fuzz {

// One run of the target; each target's file defines it.
void Try(std::string_view input);

// Ends the program unless `holds`, telling the property.
void Require(bool holds, std::string_view property);

// Divides an input at the separator RS (0x1E), which no reader here gives a meaning to.
class Parts {
 public:
  explicit Parts(std::string_view input) : rest_(input) {}
  // What comes before the next separator, all that is left without one.
  std::string_view Next();
  std::string_view Rest() const { return rest_; }

 private:
  std::string_view rest_;
};

// For inputs that a checksum of theirs picks, one of 64, the input over and over up to 64 kB; else
// empty. Where time grows with the square of the size, this is what shows it.
std::string Stretched(std::string_view input);

bool IsWellFormedUtf8(std::string_view text);

// Holds a control character (C0, DEL, C1), which no text that is shown may.
bool HasControl(std::string_view text);

std::size_t CountCharacters(std::string_view text);

// A file in memory with a name, which is the same for its whole life.
class MemoryFile {
 public:
  MemoryFile();
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  ~MemoryFile();

  // Makes `bytes` its content; answers its name.
  const std::string& Holding(std::string_view bytes);

 private:
  int file_;
  std::string name_;
};

// A folder of the temporary folder, which tools/fuzz puts into memory. Gone at the end.
class Folder {
 public:
  Folder();
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  ~Folder();

  const std::string& Path() const { return path_; }  // with a trailing "/"
  // Replaces the file, and makes the folders above it; answers its whole path.
  std::string Write(std::string_view name, std::string_view bytes) const;
  std::string Read(std::string_view name) const;

 private:
  std::string path_;
};

}  // namespace kv::fuzz
