// From the arguments of the process to one path: switches, quotes, URLs of the desktop.
#include "shell/command_line.h"

#include "support/temp_folder.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kv {
namespace {

struct Understood {
  std::string command_line;
  bool debug = false;
  std::string file;
};

Understood Understand(const std::vector<std::string>& arguments, const std::string& folder) {
  const ParsedCommandLine parsed = ParseDebugSwitch(JoinArguments(arguments, folder));
  return {parsed.CommandLine, parsed.DebugMode, CommandFileOf(parsed.CommandLine)};
}

TEST(CommandLine, TakesTheSwitchesOutAndTheRestAsOnePath) {
  const struct {
    std::vector<std::string> arguments;
    std::string command_line;
    bool debug;
    std::string file;
  } rows[] = {
      {{}, "", false, ""},
      {{"/debug"}, "", true, ""},
      {{"/DEBUG"}, "/DEBUG", true, "/DEBUG"},  // turns the mode on and stays
      {{"-DeBug", "/x/a.mp3"}, "-DeBug /x/a.mp3", true, "-DeBug /x/a.mp3"},
      {{"/x/a.mp3", "/debug"}, "/x/a.mp3", true, "/x/a.mp3"},
      {{"/debug", "/x/a.mp3"}, " /x/a.mp3", true, " /x/a.mp3"},  // nothing of that name is there
      {{"/x/a.mp3", "/DDE", "-debug"}, "/x/a.mp3 /DDE", true, "/x/a.mp3"},
      {{"\"/x/my song.mp3\""}, "\"/x/my song.mp3\"", false, "/x/my song.mp3"},
      {{"http://h/a.mp3"}, "http://h/a.mp3", false, "http://h/a.mp3"},
      {{"--debugdebug"}, "-debug", true, "-debug"},  // removed once, not again
  };
  for (const auto& row : rows) {
    const Understood got = Understand(row.arguments, "/nowhere");
    EXPECT_EQ(got.command_line, row.command_line);
    EXPECT_EQ(got.debug, row.debug) << row.command_line;
    EXPECT_EQ(got.file, row.file);
  }
}

TEST(CommandLine, FindsAFileOnDiskAndLeavesItsNameAlone) {
  const TempFolder temp;
  const std::string song = temp.Write("debug/-debug/my /debug song.mp3", "x");
  const std::string folder = temp.Path("debug");
  const std::string plain = temp.Write("debug/a.mp3", "x");
  const std::string bytes = temp.Write("debug/\xFFname.mp3", "x");
  const struct {
    std::vector<std::string> arguments;
    bool debug;
    std::string file;
  } rows[] = {
      {{song}, false, song},
      {{"-debug/my /debug song.mp3"}, false, folder + "/-debug/my /debug song.mp3"},
      {{"-debug/my", "/debug", "song.mp3"}, true, "/my song.mp3"},  // a word of its own is a switch
      {{"a.mp3", "-debug", "/dde"}, true, plain},
      {{"../debug/a.mp3"}, false, folder + "/../debug/a.mp3"},
      {{"\xFFname.mp3"}, false, bytes},
      {{"a.mp3", "\xFFname.mp3"}, false, "a.mp3 \xFFname.mp3"},  // two files are one bad path
      {{"FILE://LocalHost" + temp.Path() + "debug/%61.mp%33"}, false, plain},
      {{"file://elsewhere" + plain}, true, "file://elsewhere" + temp.Path() + "a.mp3"},
      {{"file:///x%00y.mp3"}, false, "file:///x%00y.mp3"},
      {{"file:///x/100%.mp3"}, false, "/x/100%.mp3"},
  };
  for (const auto& row : rows) {
    const Understood got = Understand(row.arguments, folder);
    EXPECT_EQ(got.file, row.file);
    EXPECT_EQ(got.debug, row.debug) << row.file;
  }
}

TEST(CommandLine, JoinsTheWordsOfANameThatNobodyQuoted) {
  const TempFolder temp;
  const std::string song = temp.Write("debug/my old song.mp3", "x");
  const Understood got = Understand({"-debug", "my", "old", "song.mp3"}, temp.Path("debug"));
  EXPECT_EQ(got.file, song);
  EXPECT_TRUE(got.debug);
}

}  // namespace
}  // namespace kv
