// What is read from the files of lists, of ours and of other programs, and what is written.
#include "playlist/asx_file.h"
#include "playlist/foreign_list.h"
#include "playlist/m3u_file.h"
#include "playlist/ost_list.h"
#include "playlist/playlist_test.h"

#include <sys/stat.h>

namespace kv {
namespace {

using namespace std::string_literals;

std::string Joined(const AsxInfo& info) {
  return info.title + "|" + info.author + "|" + info.copyright + "|" + info.moreInfo + "|" +
         info.entry;
}

TEST(AsxFile, TakesTheFirstOfEach) {
  const std::pair<std::string, std::string> cases[] = {
      {"<ASX version=\"3\"><TITLE>  My \xFFRadio </Title><author>Me</author>"
       "<Copyright>2000</copyright><moreinfo HREF = \" http://x/ \" />"
       "<Entry><ref href=\"mms://a/1\"/></entry><entry><ref href=\"mms://a/2\"/></entry></ASX>",
       "My \xFFRadio|Me|2000|http://x/|mms://a/1"},
      {"<title>never closed <author>a</author>", "|a|||"},
      {"</title><title>x</title>", "x||||"},
      {"<title><title>x</title>", "<title>x||||"},
      {"<title>\t x</title>", "\t x||||"},
      {"<entry>\"only one", "||||"},
      {"<entry name=\"x\"><ref href=\"mms://a\"/>", "||||"},
      {"\xFF\xFE<", "||||"},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(Joined(ParseAsx(text)), expected) << text;
}

TEST(AsxFile, ReadsMetafilesAndNothingElse) {
  const TempFolder folder;
  const std::string text = "<entry>\"mms://a\"";
  const std::string medium("\x30\x26\xB2\x75\x8E\x66\xCF\x11\xA6\xD9\x00\xAA\x00\x62\xCE\x6C", 16);
  ASSERT_EQ(mkfifo(folder.Path("pipe.asx").c_str(), 0600), 0);
  const std::pair<std::string, const char*> rows[] = {
      {folder.Write("a.asx", text), "mms://a"},
      {folder.Write("short.asx", "<entry>\"x\""), "x"},
      {folder.Write("film.asf", medium + text), ""},
      {folder.Path("missing.asx"), ""},
      {folder.MakeFolder("folder.asx"), ""},
      {folder.Path("pipe.asx"), ""}};
  for (const auto& [file, entry] : rows) EXPECT_EQ(ReadAsxFile(file).entry, entry) << file;
}

TEST(AsxFile, LargeRubbishEnds) {
  constexpr std::size_t kBytes = std::size_t{1024} * 1024;
  std::string tags;
  while (tags.size() < kBytes) tags += "<title><entry>";
  EXPECT_EQ(Joined(ParseAsx(tags)), "||||");
  EXPECT_EQ(Joined(ParseAsx(std::string(kBytes, '<'))), "||||");
  EXPECT_EQ(Joined(ParseAsx("<entry>" + std::string(kBytes, '"'))), "||||");
}

TEST(M3uFile, SplitsAtCrLfAlone) {
  EXPECT_THAT(SplitM3u(""), IsEmpty());
  EXPECT_THAT(SplitM3u("a\r\n\r\nb\nc\rd\r\n"), ElementsAre("a", "", "b\nc\rd", ""));
  std::string text;
  for (int i = 1; i <= 10001; ++i) text += std::to_string(i) + "\r\n";
  const auto lines = SplitM3u(text);
  ASSERT_EQ(lines.size(), 9999U);
  EXPECT_EQ(lines[9997], "9998");
  EXPECT_EQ(lines[9998], "9999\r\n10000\r\n10001\r\n");
}

TEST(M3uFile, ResolvesLines) {
  const struct {
    std::string playlist, line, path;
  } cases[] = {
      {R"(D:\lists\x.m3u)", R"(\sub\a.mp3)", R"(D:\lists\sub\a.mp3)"},
      {R"(D:\lists\x.m3u)", R"(\\srv\a.mp3)", R"(\\srv\a.mp3)"},
      {R"(D:\lists\x.m3u)", R"(C:\a.mp3)", R"(C:\a.mp3)"},
      {R"(D:\lists\x.m3u)", R"(\C:\a.mp3)", R"(C:\a.mp3)"},
      {R"(D:\lists\x.m3u)", "sub/a.mp3", R"(D:\lists\sub/a.mp3)"},
      {R"(D:\lists\x.m3u)", "HTTPS://h/a.mp3", "HTTPS://h/a.mp3"},
      {"/l/x.m3u", "/m/a\\b.mp3", "/m/a\\b.mp3"},
      {"/l/x.m3u", " /m/a.mp3", "/l/ /m/a.mp3"},
      {"/l/x.m3u", "\xC3\xA9:a", "\xC3\xA9:a"},
      {"/l/x.m3u", "\xFF.mp3", "/l/\xFF.mp3"},
      {"/l/x.m3u", "file:a.mp3", "/l/file:a.mp3"},
      // Foreign separators are taken for such where that leads to a file.
      {"/a\\b/x.m3u", "sub\\one.mp3", "/a\\b/sub/one.mp3"},
      {"/a\\b/x.m3u", "odd\\two.mp3", "/a\\b/odd\\two.mp3"},
      {"/a\\b/x.m3u", "sub\\gone.mp3", "/a\\b/sub\\gone.mp3"},
  };
  const std::set<std::string> files = {"/a\\b/sub/one.mp3", "/a\\b/odd\\two.mp3",
                                       "/a\\b/odd/two.mp3"};
  const FileTest exists = [&](const std::string& path) { return files.count(path) != 0; };
  for (const auto& c : cases) EXPECT_EQ(GetPlaylistFile(c.line, c.playlist, exists), c.path);
}

TEST(M3uFile, WritesWhatReadsBack) {
  const FakeTextPlatform text;
  const struct {
    std::string playlist, item, line;
  } cases[] = {
      {R"(C:\Music\x.m3u)", R"(c:\music\Sub\A.mp3)", R"(Sub\A.mp3)"},
      {"C:\\\xC3\x84\\x.m3u", "c:\\\xC3\xA4\\A.mp3", "A.mp3"},
      {R"(C:\Music\x.m3u)", R"(C:\Musical\A.mp3)", R"(C:\Musical\A.mp3)"},
      {R"(C:\Music\x.m3u)", R"(C:\Music\\A.mp3)", R"(C:\Music\\A.mp3)"},
      {"/l/x.m3u", "/l/sub/a.mp3", "sub/a.mp3"},
      {"/l/x.m3u", "/l/\xFF.mp3", "\xFF.mp3"},
      {"/l/x.m3u", "/l/  a b.mp3 ", "  a b.mp3 "},
      {"/l/x.m3u", "/m/a.mp3", "/m/a.mp3"},
      {"/l/x.m3u", "http://h/l/a.mp3", "http://h/l/a.mp3"},
      // Cut, each of these would mean something else, or nothing.
      {"/l/x.m3u", "/L/a.mp3", "/L/a.mp3"},
      {"/l/x.m3u", "/l//etc/a.mp3", "/l//etc/a.mp3"},
      {"/l/x.m3u", "/l/\\a.mp3", "/l/\\a.mp3"},
      {"/l/x.m3u", "/l/a\\b.mp3", "/l/a\\b.mp3"},
      {"/l/x.m3u", "/l/A:b.mp3", "/l/A:b.mp3"},
      {"/l/x.m3u", "/l/http://h/a.mp3", "/l/http://h/a.mp3"},
      {"/l/x.m3u", "/l/  #1.mp3", "/l/  #1.mp3"},
      {"/l/x.m3u", "/l/  ", "/l/  "},
      {"/l/x.m3u", "/l/", "/l/"},
      {"/l/x.m3u", "/l/a\r\nb.mp3", "/l/a\r\nb.mp3"},
      {"/l/x.m3u", "/l/\xEF\xBB\xBFz.mp3", "/l/\xEF\xBB\xBFz.mp3"},
  };
  for (const auto& c : cases) {
    OSTList list(text);
    list.add(c.item);
    list.add("/m/last.mp3");
    EXPECT_EQ(M3uText(list, c.playlist, false, text), c.line + "\r\n/m/last.mp3\r\n");
    EXPECT_EQ(M3uText(list, c.playlist, true, text), c.item + "\r\n/m/last.mp3\r\n");
  }
  // These would be a remark, and lose their beginning at the start of a file.
  for (const std::string item : {"#:a.mp3", "\xEF\xBB\xBF:a.mp3"}) {
    OSTList list(text);
    list.add(item);
    EXPECT_EQ(M3uText(list, "/l/x.m3u", true, text), "\\" + item + "\r\n");
  }
}

TEST(ForeignList, IsRecognised) {
  const struct {
    std::string text, locale;
    std::set<std::string> files;
    bool line_ends;
    std::string encoding, entries;  // empty: nothing to ask
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
      {"\xC4\xE0", "C", {"\xD0\x94\xD0\xB0"}, false, "Windows-1251", "\xD0\x94\xD0\xB0"},
      {"\xE9.mp3\r\n\xE8.mp3", "C", {"\xE9.mp3"}, false, "", ""},
      {"\xE9\r\n\xE8\r\n\xEA",
       "C",
       {"\xE9", "\xC3\xA8"},
       false,
       "Windows-1252",
       "\xE9\r\n\xC3\xA8\r\n\xEA"},
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
