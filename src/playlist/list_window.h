// The windows of the list as its rules see them. Both may be absent; the session's flags
// `PlaylistWindowLoaded` and `ScanWindowOpen` say so. Interface thread only.
#pragma once

#include <string>

namespace kv {

// `frmPlaylist`, whose rows show the list.
class ListWindow {
 public:
  virtual ~ListWindow() = default;
  // Appends one row for `path`, the entry that was added last; an empty path builds all rows anew
  // from the list.
  virtual void FillPlaylist(const std::string& path) = 0;
  virtual int RowCount() const = 0;
};

// `frmScanning`, which tells how far a long adding has come.
class ScanWindow {
 public:
  virtual ~ScanWindow() = default;
  // The window compacts the path to what its label can hold.
  virtual void ShowPath(const std::string& path) = 0;
  virtual void ShowCount(const std::string& text) = 0;
};

}  // namespace kv
