// What is taken from a metafile, and what is left of a broken one.
#include "playlist/asx_file.h"

#include "support/temp_folder.h"

#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>

namespace kv {
namespace {

std::string Joined(const AsxInfo& info) {
  return info.title + "|" + info.author + "|" + info.copyright + "|" + info.moreInfo + "|" +
         info.entry;
}

TEST(AsxFile, TakesTheFirstOfEach) {
  const struct {
    std::string text;
    std::string expected;
  } cases[] = {
      {"<ASX version=\"3\"><TITLE>  My \xFFRadio </Title><author>Me</author>"
       "<Copyright>2000</copyright><moreinfo HREF = \" http://x/ \" />"
       "<Entry><ref href=\"mms://a/1\"/></entry><entry><ref href=\"mms://a/2\"/></entry></ASX>",
       "My \xFFRadio|Me|2000|http://x/|mms://a/1"},
      {"", "||||"},
      {"<title>never closed <author>a</author>", "|a|||"},
      {"</title><title>x</title>", "x||||"},
      {"<title><title>x</title>", "<title>x||||"},
      {"<title>\t x</title>", "\t x||||"},
      {"<entry>no quote", "||||"},
      {"<entry>\"only one", "||||"},
      {"<entry name=\"x\"><ref href=\"mms://a\"/>", "||||"},
      {"\xFF\xFE<", "||||"},
  };
  for (const auto& c : cases) EXPECT_EQ(Joined(ParseAsx(c.text)), c.expected) << c.text;
}

TEST(AsxFile, ReadsMetafilesAndNothingElse) {
  const TempFolder folder;
  const std::string text = "<entry>\"mms://a\"";
  const std::string medium("\x30\x26\xB2\x75\x8E\x66\xCF\x11\xA6\xD9\x00\xAA\x00\x62\xCE\x6C", 16);
  EXPECT_EQ(ReadAsxFile(folder.Write("a.asx", text)).entry, "mms://a");
  EXPECT_EQ(ReadAsxFile(folder.Write("short.asx", "<entry>\"x\"")).entry, "x");
  EXPECT_EQ(ReadAsxFile(folder.Write("film.asf", medium + text)).entry, "");
  EXPECT_EQ(ReadAsxFile(folder.Path("missing.asx")).entry, "");
  EXPECT_EQ(ReadAsxFile(folder.MakeFolder("folder.asx")).entry, "");
  ASSERT_EQ(mkfifo(folder.Path("pipe.asx").c_str(), 0600), 0);
  EXPECT_EQ(ReadAsxFile(folder.Path("pipe.asx")).entry, "");
}

TEST(AsxFile, LargeRubbishEnds) {
  constexpr std::size_t kBytes = std::size_t{1024} * 1024;
  std::string tags;
  while (tags.size() < kBytes) tags += "<title><entry>";
  EXPECT_EQ(Joined(ParseAsx(tags)), "||||");
  EXPECT_EQ(Joined(ParseAsx(std::string(kBytes, '<'))), "||||");
  EXPECT_EQ(Joined(ParseAsx("<entry>" + std::string(kBytes, '"'))), "||||");
}

}  // namespace
}  // namespace kv
