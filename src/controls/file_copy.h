// One copy or move of one file, start to end, without any window.
//
// The bytes go into a temporary file beside the destination, which takes the destination's name
// only when it is whole; a copy that is stopped, fails or is killed leaves nothing else behind and
// never touches the source. Names are bytes. Blocks its thread, so it belongs on a thread of its
// own; for the interface there is file_copier.h.
#pragma once

#include "system/files.h"

#include <cstdint>
#include <functional>
#include <stop_token>
#include <string>

namespace kv {

// The numbers are those that callers of `xCopyFile` know.
enum class CopyResult {
  kDone = 0,
  kCancelled = 1,
  kNoSource = 2,
  kDestinationExists = 3,  // and overwriting was not asked for
  kNoFreeSpace = 4,
  kDiskError = 5,
};

enum class CopyKind { kCopy, kMove };

struct CopyOrder {
  CopyKind kind = CopyKind::kCopy;
  std::string source;
  std::string destination;
  std::int32_t block_size = 0;  // bytes, above 0
  bool overwrite = false;
};

struct CopyOutcome {
  CopyResult result = CopyResult::kDone;
  // Why it is kDiskError; empty when there is nothing to tell.
  std::string error;
  int error_number = 0;  // errno
  // A move that only changed the name, without copying a byte.
  bool renamed = false;
};

// What a copy asks of its surroundings; both are called on its thread.
struct CopyHooks {
  // After each whole block and the last one, when the temporary file holds `copied` of `total`
  // bytes.
  std::function<void(std::int64_t copied, std::int64_t total)> after_block;
  // Bytes free on the file system at this root.
  std::function<double(const std::string& root)> free_bytes = GetDriveFreeBytes;
};

// Carries out `order`; `stop` ends it with kCancelled at any time before the destination appears.
//
// A link as the source of a copy stands for its file. What is no plain file, and a destination that
// is the source itself by whatever name, are errors. The copy keeps the modification time and the
// permissions that the user's umask allows, a move all permissions; neither keeps a set-user bit.
// Where something goes away afterwards, a moved source or an overwritten destination, the copy is
// on the disk before that. A destination that appears meanwhile is not replaced unless `overwrite`.
CopyOutcome CopyOrMoveFile(const CopyOrder& order, const CopyHooks& hooks,
                           const std::stop_token& stop);

}  // namespace kv
