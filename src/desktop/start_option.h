// Options by which a start does one thing and ends, instead of becoming a player.
//
// An option stands alone on the command line; beside anything else it is part of a name, as is a
// file of that name with "./" in front. Pure; any thread.
#pragma once

#include <string>
#include <vector>

namespace kv {

struct StartOption {
  enum class Kind { kTellUsage, kTellVersion, kCallPlayer };

  const char* name;
  Kind kind;
  const char* method;       // of org.mpris.MediaPlayer2.Player, for kCallPlayer
  const char* description;  // English, for the usage
};

// The option that `arguments` (without the program's own name) are, null for everything else.
const StartOption* StartOptionOf(const std::vector<std::string>& arguments);

// The text of "--help", in the user's language.
std::string UsageText();

}  // namespace kv
