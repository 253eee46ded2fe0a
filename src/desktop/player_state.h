// What the desktop is told about: the state of the player at one moment, as plain data.
//
// Filled by the shell whenever a rule of this room asks; nothing here is kept. Interface thread.
#pragma once

#include <map>
#include <string>

namespace kv {

struct PlayerState {
  // The medium. Nothing is open while `target` is empty.
  std::string target;  // path or URL that the engine plays, byte for byte
  const std::map<std::string, std::string>* tags = nullptr;  // names in lower case; may be null
  std::string title;     // from a metafile; empty: the tags', else the name of the file
  std::string author;    // from a metafile
  double position = 0;   // seconds
  double duration = 0;   // seconds, 0 without a known end
  bool seekable = true;  // it has a position to move, and a rate to change
  bool picture = false;  // it is a video

  bool running = false;
  bool paused = false;

  double volume = 0;    // 0 to 1
  double rate = 1;      // factor
  int repeat_mode = 0;  // 0 off, 1 the medium, 2 the list

  // The list. `list_index` counts from 1, 0 is no current entry.
  int list_index = 0;
  int list_count = 0;
  bool from_list = false;

  bool full_screen = false;

  bool Playing() const { return !target.empty() && running && !paused; }
};

}  // namespace kv
