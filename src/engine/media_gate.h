// What may be handed to a media back end.
//
// A back end trusts what it is told to open: its own pseudo schemes reach devices, memory, loaded
// libraries and lists of other files. So nothing passes here but a plain local file and the four
// URL schemes that the player names its remote media by, whoever asks: the user, a playlist line, a
// second start or a resume file. Any thread.
#pragma once

#include <string>

namespace kv {

struct GateVerdict {
  bool allowed = false;
  bool remote = false;
  std::string target;  // what to hand over: an absolute path, or the URL as it came
};

// Judges one target. A local name passes when it is a regular file, behind symbolic links or not;
// directories, devices, FIFOs and sockets do not, nor what cannot be examined. A relative name is
// taken against the working directory. The schemes "http://", "https://", "ftp://" and "mms://"
// pass in any letter case, unless the URL holds a control character.
GateVerdict CheckMedium(const std::string& target);

}  // namespace kv
