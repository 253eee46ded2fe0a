// Settings in text files: the profile routines, and the registry that stands on them.
#include "system/ini_file.h"

#include "support/temp_folder.h"
#include "system/files.h"
#include "system/registry.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <utility>

namespace kv {
namespace {

TEST(IniFile, ReadsAsTheProfileRoutinesDo) {
  const TempFolder folder;
  const std::string file = folder.Write(
      "a.ini",
      "\xEF\xBB\xBFstray=0\n"
      "[RESUME_FILE] ; tail\r\n; Path=no\r\n  Path =  /m/a b.mp3 \t\r\nPATH=second\r\n"
      "quoted=\" x = y \"\r\nsingle='q'\r\nodd=\"one\r\nempty=\r\nnothing\r\nbytes=\xFF\xE9\n"
      "[ Other ]\nPath=other\n"
      "[resume_file]\nlate=1\n[broken\nkey=v");
  const struct {
    const char *section, *key, *value;
  } cases[] = {
      {"resume_file", "path", "/m/a b.mp3"},
      {"RESUME_FILE", " Quoted ", " x = y "},
      {"RESUME_FILE", "single", "q"},
      {"RESUME_FILE", "odd", "\"one"},
      {"RESUME_FILE", "empty", ""},
      {"RESUME_FILE", "nothing", "default"},
      {"RESUME_FILE", "bytes", "\xFF\xE9"},
      {"RESUME_FILE", "late", "default"},  // only the first section of a name counts
      {"RESUME_FILE", "stray", "default"},
      {"other", "PATH", "other"},
      {"missing", "path", "default"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ReadIniString(file, c.section, c.key, "default"), c.value) << c.key;
  }
}

TEST(IniFile, WritingKeepsEveryOtherByte) {
  const TempFolder folder;
  const struct {
    const char *before, *section, *key;
    const char* after;  // with the value "V"
  } cases[] = {
      {"", "S", "K", "[S]\r\nK=V\r\n"},
      {"[S]\nk = old\nb=2\n", "s", "K", "[S]\nk =V\nb=2\n"},
      {"[S]\r\nk=old", "S", "k", "[S]\r\nk=V"},
      {"[S]\na=1\n\n\n[T]\nk=1\n", "S", "K", "[S]\na=1\nK=V\n\n\n[T]\nk=1\n"},
      {"; c\r\njunk\r\n[T]\r\nx", "S", "K", "; c\r\njunk\r\n[T]\r\nx\r\n[S]\r\nK=V\r\n"},
      {"[S]\n; k=no\nk=1\nk=2\n", "S", "k", "[S]\n; k=no\nk=V\nk=2\n"},
      {"\xEF\xBB\xBF", "S", "K", "\xEF\xBB\xBF[S]\r\nK=V\r\n"},
  };
  for (const auto& c : cases) {
    const std::string file = folder.Write("a.ini", c.before);
    EXPECT_EQ(WriteIniString(file, c.section, c.key, "V"), 1) << c.before;
    EXPECT_EQ(folder.Read("a.ini"), c.after);
    EXPECT_EQ(ReadIniString(file, c.section, c.key, ""), "V");
  }
}

TEST(IniFile, AChannelTakesTheLineInsteadOfAFile) {
  std::ostringstream channel;
  EXPECT_EQ(WriteIniString("/unused", "unused", "POS", " 1 ", &channel), 1);
  EXPECT_EQ(channel.str(), "POS=\" 1 \"\r\n");
}

TEST(IniFile, WhatCannotBeWrittenChangesNothing) {
  const TempFolder folder;
  const std::string file = folder.Write("a.ini", "[S]\nk=1\n");
  for (const char* const key : {"k\r", "a=b", "[k", ";k", " "}) {
    EXPECT_EQ(WriteIniString(file, "S", key, "v"), 0) << key;
  }
  for (const char* const section : {"S\n", "S]"}) {
    EXPECT_EQ(WriteIniString(file, section, "k", "v"), 0) << section;
  }
  for (const std::string& value : {std::string("a\n[T]"), std::string("a\0b", 3)}) {
    EXPECT_EQ(WriteIniString(file, "S", "k", value), 0) << value;
  }
  EXPECT_EQ(folder.Read("a.ini"), "[S]\nk=1\n");
  // A file of an absurd size reads as empty and must not be replaced by a small one.
  const std::string huge = folder.Write("huge.ini", "[S]\nk=1\n");
  std::filesystem::resize_file(huge, kMaxTextFileBytes + 1);
  EXPECT_EQ(ReadIniString(huge, "S", "k", "none"), "none");
  EXPECT_EQ(WriteIniString(huge, "S", "k", "2"), 0);
  EXPECT_EQ(std::filesystem::file_size(huge), kMaxTextFileBytes + 1);
}

constexpr RegistryRoot kUser = RegistryRoot::kCurrentUser;

TEST(Registry, ValuesComeBack) {
  const TempFolder folder;
  const std::string file = folder.Path("registry.ini");
  Registry registry(file);
  EXPECT_EQ(registry.RegReadValue(kUser, "Software\\Kestrelview\\Process", "Priority"), "");
  ASSERT_EQ(registry.RegWriteValue(kUser, "Software\\Kestrelview\\Process", "Priority",
                                   kRegistryText, "High"),
            kRegistrySuccess);
  Registry later(file);
  EXPECT_EQ(later.RegReadValue(kUser, "\\software\\\\KESTRELVIEW\\process\\", "PRIORITY"), "High");

  const std::string longest(2047, 'v');
  for (const auto& [data, read] : {std::pair<std::string, std::string>{"", ""},
                                   {"a=b;[c]\n%41\xFF", "a=b;[c]\n%41\xFF"},
                                   {"  x  ", "x  "},  // the closing NUL keeps the blanks at the end
                                   {std::string("cut\0here", 8), "cut"},
                                   {longest, longest},
                                   {longest + "v", ""}}) {  // no room for the NUL
    for (const char* name : {"", "@", "odd = [name];"}) {
      ASSERT_EQ(registry.RegWriteValue(kUser, "K]", name, kRegistryText, data), kRegistrySuccess);
      EXPECT_EQ(registry.RegReadValue(kUser, "K]", name), read) << data;
    }
  }
  Registry folder_instead(folder.MakeFolder("folder.ini"));
  EXPECT_EQ(folder_instead.RegWriteValue(kUser, "K", "n", kRegistryText, "v"), kRegistryDenied);
}

}  // namespace
}  // namespace kv
