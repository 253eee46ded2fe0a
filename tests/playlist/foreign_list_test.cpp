// Playlists of other programs: what is recognised, and that names of files stay what they are.
#include "playlist/foreign_list.h"

#include "playlist/ost_list.h"

#include <gtest/gtest.h>
#include <set>
#include <string>

namespace kv {
namespace {

using namespace std::string_literals;

TEST(ForeignList, IsRecognised) {
  const struct {
    std::string text;
    std::string locale;
    std::set<std::string> files;
    bool line_ends;
    std::string encoding;
    std::string entries;  // empty: nothing to ask
  } cases[] = {
      {"a.mp3\r\n\r\n#x\ny\r\n", "C", {}, true, "", "a.mp3\r\ny"},
      {"\n#EXTM3U\na.mp3\n  \n b.mp3 \rc.mp3\n", "C", {}, true, "", "a.mp3\r\n b.mp3 \r\nc.mp3"},
      {"a.mp3\r\n\xC3\xA9.mp3\r\n", "C", {}, false, "", ""},
      {"#\xE9\r\na.mp3\r\n", "C", {}, false, "", ""},
      // A name may hold line feeds, but then there is a file of that name.
      {"a\nb.mp3\r\nc.mp3", "C", {"a\nb.mp3"}, false, "", ""},
      {"a\nb.mp3\r\nc\nd.mp3", "C", {"a\nb.mp3"}, true, "", "a\nb.mp3\r\nc\r\nd.mp3"},
      {"caf\xE9.mp3\n", "de_DE.UTF-8", {}, true, "Windows-1252", "caf\xC3\xA9.mp3"},
      {"\xB3.mp3", "pl_PL", {}, false, "Windows-1250", "\xC5\x82.mp3"},
      {"\xA4\xA4.mp3", "zh_TW.UTF-8", {}, false, "CP950", "\xE4\xB8\xAD.mp3"},
      // What the page of the locale does not have is of another one.
      {"\xFF\xE9.mp3", "ja_JP.UTF-8", {}, false, "Windows-1252", "\xC3\xBF\xC3\xA9.mp3"},
      // Files bear witness: of the page, and of bytes that are names.
      {"\xC4\xE0.mp3",
       "C",
       {"\xD0\x94\xD0\xB0.mp3"},
       false,
       "Windows-1251",
       "\xD0\x94\xD0\xB0.mp3"},
      {"\xE9.mp3\r\n\xE8.mp3", "C", {"\xE9.mp3"}, false, "", ""},
      {"\xE9.mp3\r\n\xE8.mp3\r\n\xEA.mp3",
       "C",
       {"\xE9.mp3", "\xC3\xA8.mp3"},
       false,
       "Windows-1252",
       "\xE9.mp3\r\n\xC3\xA8.mp3\r\n\xEA.mp3"},
      {"\xFF\xFE"s + "a\0\r\0\n\0\xE9\0"s, "C", {}, false, "UTF-16LE", "a\r\n\xC3\xA9"},
      {"\xFE\xFF\0a\0\n\0b"s, "C", {}, true, "UTF-16BE", "a\r\nb"},
      {"\xFF\xFE.mp3", "C", {"\xFF\xFE.mp3"}, false, "", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(&c - cases);
    const LineTest names_file = [&](std::string_view line) {
      return c.files.count(std::string(line)) != 0;
    };
    const ForeignList list = ReadForeignList(c.text, c.locale, names_file);
    EXPECT_EQ(list.line_ends, c.line_ends);
    EXPECT_EQ(list.encoding, c.encoding);
    EXPECT_EQ(list.text, c.entries);
    EXPECT_TRUE(list.complete);
    EXPECT_EQ(HasPlainLines(c.text, names_file), !c.line_ends && c.encoding != "UTF-16LE");
  }
}

TEST(ForeignList, HoldsNoMoreThanAListHasRoomFor) {
  std::string text;
  for (int i = 0; i < kPlaylistLimit; ++i) text += "#\na\n";
  const LineTest nothing = [](std::string_view) { return false; };
  EXPECT_TRUE(ReadForeignList(text, "C", nothing).complete);
  const ForeignList list = ReadForeignList(text + "b\n", "C", nothing);
  EXPECT_FALSE(list.complete);
  EXPECT_TRUE(list.text.ends_with("\r\na\r\na\nb"));
}

}  // namespace
}  // namespace kv
