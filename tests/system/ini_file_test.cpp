#include "system/ini_file.h"

#include "support/temp_folder.h"
#include "system/files.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sstream>

namespace kv {
namespace {

TEST(IniFile, ReadsAsTheProfileRoutinesDo) {
  const TempFolder folder;
  const std::string file = folder.Write("a.ini",
                                        "\xEF\xBB\xBF"
                                        "stray=0\n"
                                        "[RESUME_FILE] ; tail\r\n"
                                        "; Path=no\r\n"
                                        "  Path =  /m/a b.mp3 \t\r\n"
                                        "PATH=second\r\n"
                                        "quoted=\" x = y \"\r\n"
                                        "single='q'\r\n"
                                        "odd=\"one\r\n"
                                        "empty=\r\n"
                                        "nothing\r\n"
                                        "bytes=\xFF\xE9\n"
                                        "[ Other ]\nPath=other\n"
                                        "[resume_file]\nlate=1\n[broken\nkey=v");
  struct Case {
    const char* section;
    const char* key;
    const char* value;
  };
  const Case cases[] = {
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
  for (const Case& c : cases) {
    EXPECT_EQ(ReadIniString(file, c.section, c.key, "default"), c.value) << c.key;
  }
}

TEST(IniFile, WritingKeepsEveryOtherByte) {
  const TempFolder folder;
  struct Case {
    const char* before;
    const char* section;
    const char* key;
    const char* after;  // with the value "V"
  };
  const Case cases[] = {
      {"", "S", "K", "[S]\r\nK=V\r\n"},
      {"[S]\nk = old\nb=2\n", "s", "K", "[S]\nk =V\nb=2\n"},
      {"[S]\r\nk=old", "S", "k", "[S]\r\nk=V"},
      {"[S]\na=1\n\n\n[T]\nk=1\n", "S", "K", "[S]\na=1\nK=V\n\n\n[T]\nk=1\n"},
      {"; c\r\njunk\r\n[T]\r\nx", "S", "K", "; c\r\njunk\r\n[T]\r\nx\r\n[S]\r\nK=V\r\n"},
      {"[S]\n; k=no\nk=1\nk=2\n", "S", "k", "[S]\n; k=no\nk=V\nk=2\n"},
      {"\xEF\xBB\xBF", "S", "K", "\xEF\xBB\xBF[S]\r\nK=V\r\n"},
  };
  for (const Case& c : cases) {
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
  struct Case {
    std::string section, key, value;
  };
  const Case cases[] = {
      {"S", "k", "a\n[T]"}, {"S", "k\r", "v"}, {"S\n", "k", "v"},
      {"S]", "k", "v"},     {"S", "a=b", "v"}, {"S", "[k", "v"},
      {"S", ";k", "v"},     {"S", " ", "v"},   {"S", "k", std::string("a\0b", 3)},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(WriteIniString(file, c.section, c.key, c.value), 0) << c.key;
  }
  EXPECT_EQ(folder.Read("a.ini"), "[S]\nk=1\n");
  // A file of an absurd size reads as empty and must not be replaced by a small one.
  const std::string huge = folder.Write("huge.ini", "[S]\nk=1\n");
  std::filesystem::resize_file(huge, kMaxTextFileBytes + 1);
  EXPECT_EQ(ReadIniString(huge, "S", "k", "none"), "none");
  EXPECT_EQ(WriteIniString(huge, "S", "k", "2"), 0);
  EXPECT_EQ(std::filesystem::file_size(huge), kMaxTextFileBytes + 1);
}

}  // namespace
}  // namespace kv
