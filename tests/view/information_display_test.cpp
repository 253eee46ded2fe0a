// What the labels say of each kind of medium.
#include "view/information_display.h"

#include "support/fake_text_platform.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>
#include <map>
#include <string>

namespace kv {
namespace {

class InformationDisplayTest : public testing::Test, protected InformationView {
 protected:
  void SetDisp(DispLabel label, const std::string& text) override { disp[label] = text; }
  void SetDispUnderline(DispLabel label, bool underline) override {
    if (label == kDispDataLine1) underlined = underline;
  }
  void SetTrayTip(const std::string& text) override { tray = text; }
  int PanelTextWidth(std::string_view text) const override {
    return 10 * static_cast<int>(text.size());
  }
  int PanelScaleWidth() const override { return width + 12; }
  int TitleLeft() const override { return 10; }
  int DisplayPathWidth() const override { return path_width; }

  std::string Title(const std::string& file) {
    settings.CurrentFile = file;
    display.UpdateFileDisp("");
    return disp[kDispTitle];
  }
  std::string Data(const std::string& file) {
    settings.CurrentFile = file;
    display.UpdateFileDataDisplay();
    return disp[kDispDataLine1] + (underlined ? "_|" : "|") + disp[kDispDataLine2];
  }

  std::map<DispLabel, std::string> disp;
  std::string tray;
  bool underlined = false;
  int width = 1000;  // pixels for the title
  int path_width = 1000;
  int count = 12;
  TempFolder temp;
  FakeTextPlatform platform;
  Settings settings;
  Session session;
  InformationDisplay display{*this, settings, session, platform, [this] { return count; }};
};

TEST_F(InformationDisplayTest, CountsOnlyWhatPlaysFromTheList) {
  const struct {
    int index;
    bool from_list;
    std::string counter;
  } rows[] = {{0, true, "0000 / 0000"},
              {3, false, "0000 / 0000"},
              {3, true, "0003 / 0012"},
              {-1, true, "0000 / 0000"}};
  for (const auto& row : rows) {
    settings.PlaylistIndex = row.index;
    settings.PlayingFromPlaylist = FromBool(row.from_list);
    Title("/m/100%25 & more.mp3");
    EXPECT_EQ(disp[kDispCounter], row.counter);
    EXPECT_EQ(disp[kDispTitle], "100% & more.mp3");
    EXPECT_EQ(tray, "Kestrelview: 100%25 & more.mp3 - " + row.counter);  // not decoded
  }
  disp.clear();
  tray.clear();
  display.UpdateFileDisp("Loading a&b.mp3");
  EXPECT_EQ(disp, (std::map<DispLabel, std::string>{{kDispTitle, "Loading a&b.mp3"}}));
  EXPECT_EQ(tray, "");
}

TEST_F(InformationDisplayTest, TakesTheTitleFromStreamPathOrName) {
  EXPECT_EQ(Title("/m/a.mp3"), "a.mp3");
  settings.IncludePathInFileTitle = FromBool(true);
  EXPECT_EQ(Title("/music/a.mp3"), "/music/a.mp3");
  path_width = 110;
  EXPECT_EQ(Title("/music/a.mp3"), "/m.../a.mp3");
  EXPECT_EQ(tray, "Kestrelview: /m.../a.mp3 - 0000 / 0000");
  session.AsxInfo.entry = "http://h/s%20t";
  EXPECT_EQ(Title("/music/a.asx"), "http://h/s t");
}

TEST_F(InformationDisplayTest, GivesUpTheBeginningOfALongTitle) {
  const struct {
    int width;
    std::string name;
    std::string shown;
  } rows[] = {
      {80, "abcdefgh", "abcdefgh"},
      {70, "abcdefgh", "efgh..."},
      {10, "abc", "abc"},  // three characters are never cut
      {10, "abcd", "..."},
      {50, "a%20b%20c", "a b c"},
      {40, "a%20b%20c", "c..."},
      {50, "%41%42%43%44%45%46", "46..."},  // cut from the name as it is written
      {60, "\xC3\xA4\xC3\xB6\xC3\xBC\xC3\xA4", "\xC3\xA4..."},  // two bytes each
  };
  for (const auto& row : rows) {
    width = row.width;
    EXPECT_EQ(Title("/m/" + row.name), row.shown) << row.name << " in " << row.width;
  }
}

TEST_F(InformationDisplayTest, DescribesALocalFile) {
  const std::string wave = temp.Write("a.wav", std::string(4'404'019, 'x'));
  EXPECT_EQ(Data(wave), "4.20 MB, .WAV file|");
  session.MovieWidth = 640;
  session.MovieHeight = 480;
  platform.decimal_separator = ",";
  EXPECT_EQ(Data(wave), "4,20 MB, 640 x 480, .WAV file|");
  session.MovieHeight = 0;
  EXPECT_EQ(Data(temp.Write("noname", "x")), "1,00 Bytes,  file|");
  session.AsxInfo = {"t", "a", "me", "more", "http://h/s"};
  underlined = true;
  EXPECT_EQ(Data(temp.Write("a.ASX", "x")), "more|Copyright: me");
  EXPECT_EQ(Data(temp.Write("a.asf", "x")), "more|Copyright: me");
  EXPECT_EQ(Data(temp.Write("a.wax", "x")), "1,00 Bytes, .WAX file|");
  EXPECT_EQ(Data(""), "1,00 Bytes, .WAX file|");  // nothing is open: nothing changes
}

TEST_F(InformationDisplayTest, DescribesAnAddressAndWhatIsGone) {
  disp[kDispDataLine2] = "before";
  const struct {
    std::string file;
    std::string shown;
  } rows[] = {
      {"/gone.mp3", "Size not available!|Copyright info not available!"},
      {"https://h.org/a%20b/c.mp3", "https://h.org/_|Internet (SSL) Connection"},
      {"HTTP://h:80/c", "http://h:80/_|Internet Connection"},
      {"ftp://h/c", "ftp://h/_|Internet (FTP) Connection"},
      {"mms://h/c", "\\\\h/_|LAN Connection"},
      {"http://h", "http://http-__h/_|Internet Connection"},
      {"\\\\server\\a.mp3", "Size not available!|Copyright info not available!"},
  };
  for (const auto& row : rows) EXPECT_EQ(Data(row.file), row.shown);
}

TEST(GetDomain, IsTheHostOrTheWholeInAnotherSpelling) {
  const struct {
    std::string url;
    std::string domain;
  } rows[] = {{"http://h.org/x/y", "h.org"},
              {"http://host", "http-__host"},
              {"no slashes", ""},
              {"http:///x", "http-___x"},
              {"http:////x", "/"},
              {"//", "__"},
              {"//h/", "h"},
              {"", ""}};
  for (const auto& row : rows) EXPECT_EQ(GetDomain(row.url), row.domain) << row.url;
}

}  // namespace
}  // namespace kv
