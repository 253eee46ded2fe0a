// Command lines: one argument a part.
#include "shell/command_line.h"

#include "support.h"
#include "system/ascii_text.h"

namespace kv::fuzz {

void Try(std::string_view input) {
  static const Folder folder;
  static const std::string film = folder.Write("my film/debug -debug /dde.avi", "film");
  static const std::string other = folder.Write("a b.mp3", "song");

  std::vector<std::string> arguments;
  for (Parts parts(input); !parts.Rest().empty();) arguments.emplace_back(parts.Next());
  const RawCommandLine raw = JoinArguments(arguments, folder.Path());
  Require(raw.name_begin <= raw.name_end && raw.name_end <= raw.text.size(),
          "the name lies inside");
  const std::string name = raw.text.substr(raw.name_begin, raw.name_end - raw.name_begin);
  Require(name.empty() || name.starts_with('/'), "a file's name is absolute");

  const ParsedCommandLine parsed = ParseDebugSwitch(raw);
  Require(parsed.CommandLine.size() <= raw.text.size(), "a switch is taken out, nothing put in");
  Require(parsed.CommandLine.find(name) != std::string::npos, "a name is no switch");
  if (!ContainsIgnoringCase(raw.text, "debug")) {
    Require(!parsed.DebugMode && parsed.CommandLine == raw.text, "without a switch nothing goes");
  }
  const std::string file = CommandFileOf(parsed.CommandLine);
  Require(file.find('"') == std::string::npos, "quotes are no part of a path");
  HasClearSwitch(parsed.CommandLine);

  // What is one file's name on the command line opens that file.
  for (const std::string& path : {film, other}) {
    const RawCommandLine one = JoinArguments({path}, "/");
    Require(one.text == path && one.name_end == path.size(), "a file's name stands as it is");
    Require(ParseDebugSwitch(one).CommandLine == path, "no switch inside a file's name");
  }
  const std::string stretched = Stretched(input);
  CommandFileOf(stretched);
  ParseDebugSwitch({stretched, 0, 0});
}

}  // namespace kv::fuzz
