// What the desktop does for the player: the trash, opening documents, sounds.
//
// Behind it stand the freedesktop trash, the user's preferred programs and the sound server.
// Interface thread only.
#pragma once

#include <string>

namespace kv {

class ShellServices {
 public:
  virtual ~ShellServices() = default;

  // Moves a file or folder to the trash, after asking when `confirm`; with `silent` no progress is
  // shown. Answers 0 when it is gone, another number when it was refused or failed.
  virtual int SendToRecycleBin(const std::string& path, bool confirm, bool silent) = 0;

  // Opens a document or URL with the program that the user prefers for it. With `parameters` the
  // file is a program that is started with them (split at blanks, quotes kept together), in
  // `folder` unless that is empty. `verb` is accepted for callers and only "open" and "" act.
  // Answers a number above 32 on success; 0 when the file does not exist.
  virtual int ShellOpenDocument(const std::string& file, const std::string& parameters,
                                const std::string& folder, const std::string& verb) = 0;

  // Plays a wave file. With `wait` the call pumps until the sound has ended; `loop` repeats it
  // until the next call; `no_stop` gives way to a sound that is still playing; without `no_default`
  // a file that is missing gives the system's default sound. With no sound output at all a box says
  // so and nothing plays.
  virtual void PlaySoundEx(const std::string& file, bool wait, bool loop, bool no_stop,
                           bool no_default) = 0;
};

}  // namespace kv
