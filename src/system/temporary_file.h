// A file that is being written beside its final place and disappears unless it gets there.
//
// What a killed process has left of this kind is removed by the next one made in the same folder.
// Inside the file routines of this room only. Operations that answer false leave errno set.
#pragma once

#include "system/file_descriptor.h"

#include <string>
#include <string_view>
#include <sys/types.h>

namespace kv {

class TemporaryFile {
 public:
  // Creates an empty file of mode 0600 in `folder`, which ends in "/" or is empty.
  explicit TemporaryFile(const std::string& folder);
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile();

  bool IsOpen() const { return file_.IsOpen(); }
  bool Write(std::string_view bytes) const { return file_.Write(bytes); }
  int Number() const { return file_.Number(); }

  // Brings the content to the disk. Nothing may be written afterwards.
  bool Finish() const;

  // Takes the place of `path`, and of what stands there.
  bool ReplaceTo(const std::string& path);

  // Takes the place of `path` unless something stands there.
  bool MoveTo(const std::string& path);

 private:
  std::string path_;
  FileDescriptor file_;
};

// Renames on one file system without replacing anything. False, with errno set, on an error.
bool RenameNoReplace(const std::string& old_path, const std::string& new_path);

}  // namespace kv
