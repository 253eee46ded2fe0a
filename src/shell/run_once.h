// Has the desktop start the player once at the next login.
//
// Stands for a value of the run-once key: a desktop entry in the user's autostart folder
// (freedesktop Desktop Application Autostart) that the start it causes takes away again. Any
// thread.
#pragma once

#include <string>

namespace kv {

class RunOnce {
 public:
  // `autostart_folder`: usually "~/.config/autostart/", with a trailing "/".
  explicit RunOnce(std::string autostart_folder);

  // The folder of this user.
  static std::string UserFolder();

  // Writes the entry for `program`, an absolute path. False when it cannot be written.
  bool Register(const std::string& program) const;
  // Removes the entry, if there is one.
  void Clear() const;

 private:
  std::string File() const;

  std::string folder_;
};

}  // namespace kv
