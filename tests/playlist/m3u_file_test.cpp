// Lines of a playlist: what counts, what it means, and that what is written reads back.
#include "playlist/m3u_file.h"

#include "support/fake_text_platform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>
#include <string>

namespace kv {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

bool Nothing(const std::string& /*path*/) {
  return false;
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
    std::string playlist;
    std::string line;
    std::string path;
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
  };
  for (const auto& c : cases) EXPECT_EQ(GetPlaylistFile(c.line, c.playlist, Nothing), c.path);
}

TEST(M3uFile, TakesForeignSeparatorsWhereTheyLeadToAFile) {
  std::set<std::string> files = {"/a\\b/sub/one.mp3", "/a\\b/odd\\two.mp3", "/a\\b/odd/two.mp3"};
  const FileTest exists = [&](const std::string& path) { return files.count(path) != 0; };
  const std::string list = "/a\\b/x.m3u";
  EXPECT_EQ(GetPlaylistFile("sub\\one.mp3", list, exists), "/a\\b/sub/one.mp3");
  EXPECT_EQ(GetPlaylistFile("\\sub\\one.mp3", list, exists), "/a\\b/sub/one.mp3");
  EXPECT_EQ(GetPlaylistFile("odd\\two.mp3", list, exists), "/a\\b/odd\\two.mp3");
  EXPECT_EQ(GetPlaylistFile("sub\\gone.mp3", list, exists), "/a\\b/sub\\gone.mp3");
}

TEST(M3uFile, WritesWhatReadsBack) {
  const FakeTextPlatform text;
  const struct {
    std::string playlist;
    std::string item;
    std::string line;
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
  EXPECT_EQ(M3uText(OSTList(text), "/l/x.m3u", false, text), "");
}

}  // namespace
}  // namespace kv
