// The one way in which the player writes a file of its own: all of it or nothing.
//
// The bytes go into a temporary file in the same folder, every write checked, are brought to the
// disk, and then take the place of the old file in one step. A crash, a full disk or a failing
// write leaves the old file whole and no temporary behind. Any thread; two saves of one path at the
// same time end with one of the two contents.
#pragma once

#include <string>
#include <string_view>

namespace kv {

// Makes `bytes` the content of `path`. A new file gets mode 0600, an old one keeps its mode;
// missing folders are created 0700. Where `path` is a symbolic link the file that it leads to is
// replaced and the link stays, unless another user made the link in a folder that is everybody's.
// Fails, with the reason in `error` if given, when something other than a plain file stands there,
// when the old file is write-protected, and on any system error.
bool SaveFileChecked(const std::string& path, std::string_view bytes, std::string* error = nullptr);

}  // namespace kv
