// The time strip: what is printed where, and that nothing is printed or asked of the disk in vain.
#include "shell/time_display.h"

#include "shell/shell_test.h"

namespace kv {
namespace {

struct Strip : PicTime {
  void Cls() override { lines.clear(); }
  void Print(int x, const std::string& text) override {
    lines.push_back(std::to_string(x) + ":" + text);
    ++prints;
  }

  std::vector<std::string> lines;
  int prints = 0;
};

struct TimeDisplayTest : testing::Test, MovieWorld {
  void Open(const std::string& file, double duration) {
    factory.media[file].duration = duration;
    movie.DS_OpenFile(file, 0, 0, 0, 0, 0);
    settings.CurrentFile = file;
  }

  FakeTextPlatform text;
  Strip strip;
  double size = 10 * 1024;
  std::vector<std::string> asked;
  TimeDisplay display{movie, settings, text, strip, [this](const std::string& path) {
                        asked.push_back(path);
                        return size;
                      }};
};

TEST_F(TimeDisplayTest, PrintsBytesForLocalMediaOutsideTheAsfFamily) {
  Open("/m/a.mp3", 100);
  display.ShowPosition(50);
  EXPECT_THAT(strip.lines,
              ElementsAre("1:00:00:50.00", "65:/", "75:00:01:40.00", "140: [5.00 KB]"));
  for (const char* file : {"http://h/a.mp3", "MMS://h/a", "/m/a.WMA.asx", "/m/a.asf"}) {
    Open(file, 100);
    display.ShowPosition(50);
    EXPECT_THAT(strip.lines, ElementsAre("1:00:00:50.00", "65:/", "75:00:01:40.00")) << file;
  }
  EXPECT_THAT(asked, ElementsAre("/m/a.mp3"));
}

TEST_F(TimeDisplayTest, TouchesTheViewOnlyForAChange) {
  text.decimal_separator = ",";
  Open("/m/a.mp3", 100);
  for (const double position : {50.0, 50.0001, 50.0}) display.ShowPosition(position);
  EXPECT_EQ(strip.prints, 4);  // the text was the same
  EXPECT_EQ(strip.lines.back(), "140: [5,00 KB]");
  Open("/m/a.mp3", 200);
  display.ShowPosition(50);
  EXPECT_EQ(strip.lines.back(), "140: [2,50 KB]");
  movie.DS_Remove();
  EXPECT_EQ(display.GetCurBytes(25), "0,00 Bytes");
}

TEST_F(TimeDisplayTest, AsksForTheSizeOncePerMedium) {
  Open("/m/a.mp3", 100);
  for (const double position : {0.0, 1.0}) display.ShowPosition(position);
  settings.CurrentFile = "/m/b.mp3";  // a step through the list names the next medium at once
  display.ShowPosition(49);
  display.ShowPosition(49);
  EXPECT_THAT(asked, ElementsAre("/m/a.mp3", "/m/b.mp3"));
  size = 20 * 1024;
  display.MediumChanged();
  display.ShowPosition(49);
  EXPECT_THAT(asked, ElementsAre("/m/a.mp3", "/m/b.mp3", "/m/b.mp3"));
  EXPECT_EQ(strip.lines.back(), "140: [9.80 KB]");
}

}  // namespace
}  // namespace kv
