// The readers of MPEG audio and of ID3 tags, with TagLib behind them.
//
// Only plain files are opened, read-only and without waiting, so that a pipe or device cannot hold
// up the caller. What is read of a file is bounded whatever its tags claim. Any thread, one reader
// on one thread at a time.
#pragma once

#include "playlist/tag_readers.h"

#include <memory>

namespace kv {

class TagLibReaders : public MediaReaders {
 public:
  std::unique_ptr<MpegHeaderInfo> MakeMpegHeaderInfo() const override;
  std::unique_ptr<TagReader> MakeTagReaderPrimary() const override;
  std::unique_ptr<TagReader> MakeTagReaderSecondary() const override;
};

}  // namespace kv
