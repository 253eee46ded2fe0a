// The sliders as the user moves them: through the models, on a fake medium.
//
// The media last 100 s, so that a second is a pixel.
#include "shell/sliders.h"

#include "shell/shell_test.h"
#include "support/slider_world.h"

namespace kv {
namespace {

struct Bench : SliderWorld {
  Bench() {
    factory.media["/m/sound.mp3"] = {.duration = 100};
    factory.media["/m/movie.avi"] = {.duration = 100, .width = 640, .height = 480};
  }

  void Open(bool video, bool play) {
    movie.DS_OpenFile(video ? "/m/movie.avi" : "/m/sound.mp3", 0, 0, 0, 0, 0);
    slider1.SetMax(movie.DS_GetDuration());
    movie.DS_GetMovieSize(session.MovieWidth, session.MovieHeight);
    movie.DS_SetPosition(10);
    slider1.SetValue(10);
    movie.DS_Play();
    if (!play) movie.DS_Pause();
  }
};

TEST(Sliders, ADragOfThePositionFollowsOrWaits) {
  const struct {
    const char* what;
    bool video, ctrl, show_frames, playing;  // before
    bool follows, paused, scrubbing;         // with the knob at 40
    bool plays_on;                           // after it was let go
  } drags[] = {
      {"sound, playing", false, false, true, true, false, false, false, true},
      {"sound, paused", false, false, true, false, false, true, false, false},
      {"sound, Ctrl", false, true, true, true, false, true, false, true},
      {"picture stays, playing", true, false, false, true, false, false, false, true},
      {"picture follows, playing", true, false, true, true, true, true, false, true},
      {"picture follows, paused", true, false, true, false, true, true, false, false},
      {"picture, Ctrl, playing", true, true, false, true, true, true, true, true},
      {"picture, Ctrl, paused", true, true, false, false, true, true, true, false},
  };
  for (const bool on_track : {false, true}) {
    for (const auto& drag : drags) {
      SCOPED_TRACE(std::string(drag.what) + (on_track ? ", from the track" : ", from the knob"));
      Bench bench;
      bench.settings.ShowFramesWhileScrolling = FromBool(drag.show_frames);
      bench.Open(drag.video, drag.playing);
      const std::int16_t shift = drag.ctrl ? kCtrlKey : std::int16_t{0};
      // A press on the track brings the knob there, its edge to be under the pointer.
      const float press = on_track ? 80.0F : 15.0F;
      bench.slider1.PointerDown(kLeftButton, shift, press, 10);
      bench.slider1.PointerMove(kLeftButton, on_track ? 60.0F : 65.0F, 10);
      bench.slider1.PointerMove(kLeftButton, on_track ? 40.0F : 45.0F, 10);
      EXPECT_EQ(bench.strip, "00:00:40.00");
      EXPECT_DOUBLE_EQ(bench.movie.DS_GetPosition(), drag.follows ? 40 : 10);
      EXPECT_EQ(bench.movie.DS_IsPaused(), drag.paused);
      EXPECT_EQ(bench.sliders.CtrlScrubbing(), drag.scrubbing);
      bench.factory.calls.clear();
      bench.slider1.PointerUp(kLeftButton, shift, 45, 10);
      EXPECT_THAT(bench.factory.calls,
                  testing::Contains("put_CurrentPosition 40").Times(drag.scrubbing ? 0 : 1));
      EXPECT_DOUBLE_EQ(bench.movie.DS_GetPosition(), 40);
      EXPECT_EQ(bench.Playing(), drag.plays_on);
      EXPECT_FALSE(bench.sliders.CtrlScrubbing());
      // Nothing of it is left for the next drag.
      bench.movie.DS_Pause();
      bench.slider1.PointerDown(kLeftButton, 0, 45, 10);
      bench.slider1.PointerUp(kLeftButton, 0, 45, 10);
      EXPECT_FALSE(bench.Playing());
    }
  }
}

TEST(Sliders, ALostDragEndsAsOneLetGo) {
  for (const std::int16_t shift : {std::int16_t{0}, kCtrlKey}) {
    Bench bench;
    bench.settings.ShowFramesWhileScrolling = FromBool(true);
    bench.Open(true, true);
    bench.slider1.PointerDown(kRightButton, shift, 80, 10);  // this one does not scrub
    EXPECT_FALSE(bench.sliders.CtrlScrubbing());
    bench.slider1.PointerUp(kRightButton, shift, 80, 10);
    EXPECT_TRUE(bench.Playing());
    bench.slider1.PointerDown(kLeftButton, shift, 15, 10);
    bench.slider1.PointerMove(kLeftButton, 45, 10);
    EXPECT_FALSE(bench.Playing());
    bench.slider1.CancelDrag();
    EXPECT_TRUE(bench.Playing());
    EXPECT_FALSE(bench.sliders.CtrlScrubbing());
  }
}

TEST(Sliders, AStreamWithoutPositionShowsNoTime) {
  Bench bench;
  bench.Open(true, true);
  bench.session.AsxInfo.entry = "http://host/stream";
  bench.settings.ShowFramesWhileScrolling = FromBool(true);
  bench.strip.clear();
  bench.sliders.Scroller1_Scroll(40, 0, kLeftButton);
  EXPECT_EQ(bench.strip, "");
  EXPECT_TRUE(bench.Playing());
}

// Every row goes through a pick in the slider's menu, which scrolls and finishes: labels are "~"
// while it changes and "=" settled.
TEST(Sliders, SettingsReachLabelEngineAndRecord) {
  const struct {
    ScrollerModel Bench::*slider;
    double value;
    const char *moving, *settled;
    double engine;
    int stored;
  } rows[] = {
      {&Bench::slider2, 0, "6~00", "6=00", -5000, 0},
      {&Bench::slider2, 49.5, "6~50", "6=50", -2475, 50},
      {&Bench::slider2, 99, "6~99", "6=99", 0, 99},
      // The label of the rate is twice the factor.
      {&Bench::slider3, 0, "3~0.0", "3=0.0", 0.1, 0},
      {&Bench::slider3, 40, "3~4.0", "3=4.0", 2.0, 40},
      // Balance is rounded on its label and not in the engine.
      {&Bench::slider4, 0, "0~-9.0", "0~-9.0", -9000, 0},
      {&Bench::slider4, 8.7, "0~0.0", "0~0.0", -300, 9},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.moving);
    Bench bench;
    bench.Open(false, true);
    (bench.*row.slider).SetValue(row.value);
    bench.labels.clear();
    (bench.*row.slider).SetAndFinish(row.value);
    ASSERT_GE(bench.labels.size(), 2U);
    EXPECT_EQ(bench.labels.front(), row.moving);
    EXPECT_EQ(bench.labels.back(), row.settled);
    const bool volume = row.slider == &Bench::slider2;
    const bool rate = row.slider == &Bench::slider3;
    const auto& movie = bench.movie;
    EXPECT_NEAR(volume ? movie.DS_GetVolume()
                : rate ? movie.DS_GetRate()
                       : movie.DS_GetBalance(),
                row.engine, 1e-9);
    const Settings& record = bench.settings;
    EXPECT_EQ(volume ? record.Volume : rate ? record.PlayRate : record.Balance, row.stored);
  }
}

TEST(Sliders, ADragOfTheRateIsHeardOnlyWhenItEnds) {
  Bench bench;
  bench.Open(false, true);
  bench.slider3.SetValue(20);
  bench.slider3.PointerDown(kLeftButton, 0, 55, 10);
  bench.slider3.PointerMove(kLeftButton, 80, 10);
  EXPECT_EQ(bench.labels.back(), "3~3.0");
  EXPECT_DOUBLE_EQ(bench.movie.DS_GetRate(), 1.0);
  bench.slider3.PointerUp(kLeftButton, 0, 80, 10);
  EXPECT_DOUBLE_EQ(bench.movie.DS_GetRate(), 1.5);
}

}  // namespace
}  // namespace kv
