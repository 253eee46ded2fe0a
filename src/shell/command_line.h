// The command line: what the shell hands over, and what it asks for.
//
// One path, quoted or not, with an optional " /dde" behind it, and "/debug" or "-debug" anywhere.
// Pure functions on texts; any thread.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kv {

// The arguments as one text, and where in it the name of a file stands that was found on disk:
// switches are not looked for inside a name, for folders are called "debug" too.
struct RawCommandLine {
  std::string text;
  std::size_t name_begin = 0;
  std::size_t name_end = 0;  // == name_begin: no argument names a file
};

// Joins the arguments (without the program's own name) by one blank. "file://" URLs become paths
// first. What is left beside the switches is one name; a relative one of something that exists is
// made absolute against `folder`.
RawCommandLine JoinArguments(const std::vector<std::string>& arguments, const std::string& folder);

struct ParsedCommandLine {
  std::string CommandLine;  // the arguments with the debug switch taken out
  bool DebugMode = false;
};

// Finds and removes the debug switch. It is looked for in any case and removed only in lower case,
// so that "/DEBUG" turns the mode on and then fails as a file name.
ParsedCommandLine ParseDebugSwitch(const RawCommandLine& raw);

// The file that a command line names: without " /dde" in any case and without double quotes. The
// whole of the remaining text is one path.
std::string CommandFileOf(std::string_view command_line);

// True when "-clear" stands anywhere in it, in any case: the settings are to forget this run's
// state when they are saved.
bool HasClearSwitch(std::string_view command_line);

}  // namespace kv
