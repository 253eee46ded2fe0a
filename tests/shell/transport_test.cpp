// The buttons, the A > B marks and the wheel, on a fake medium.
#include "shell/transport.h"

#include "shell/transport_player.h"

namespace kv {
namespace {

using Player = TransportPlayer;

TEST(Transport, TheStepsAndTheSecondClickOfADoubleClick) {
  Player player;
  for (const int index : {3, 4, 8, 9, -1, 12}) player.transport.BUtton_Click(index);
  for (const int index : {3, 4, 6, 8, -1}) player.transport.Button_DblClick(index);
  EXPECT_THAT(player.log, ElementsAre("previous 0 1", "next 0 -1 1", "previous 1 1", "next 1 -1 1",
                                      "previous 0 1", "next 0 -1 1"));
}

TEST(Transport, PlayWithNothingOpenTakesTheListOrAsks) {
  const std::vector<std::string> ask = {"command mOpen", "meter"};
  const std::vector<std::string> take = {"title ", "data", "timer 0", "meter"};
  const struct {
    std::vector<std::string> list;
    int index, index_after;
    std::vector<std::string> log;
  } rows[] = {
      {{}, 0, 0, ask},
      {{"/a", "/b"}, 0, 1, take},
      {{"/a", "/b"}, 2, 2, take},
      {{"/a"}, 2, 2, ask},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.index);
    Player player;
    player.list = row.list;
    player.settings.PlaylistIndex = row.index;
    player.transport.BUtton_Click(Transport::kPlay);
    EXPECT_EQ(player.log, row.log);
    EXPECT_EQ(player.settings.PlaylistIndex, row.index_after);
    EXPECT_EQ(player.settings.CurrentFile,
              row.log == take ? player.PlaylistItem(row.index_after) : "");
  }
}

TEST(Transport, PlayStartsGoesOnOrStartsOver) {
  enum { kHalted, kPaused, kPlays };
  const struct {
    const char* what;
    int state;
    bool marks;  // from 20 to 30
    double position;
  } rows[] = {{"starts", kHalted, false, 0},
              {"starts over", kPlays, false, 0},
              {"goes on", kPaused, false, 5},
              {"begins at A", kHalted, true, 20},
              {"starts over", kPlays, true, 0}};
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.what << (row.marks ? " with marks" : ""));
    Player player;
    player.Open("/m/a.mp3");
    if (row.state != kHalted) player.movie.DS_Play();
    player.time.Advance(5000);
    if (row.state == kPaused) player.movie.DS_Pause();
    if (row.marks) player.session.MarkA = 20;
    if (row.marks) player.session.MarkB = 30;
    player.transport.BUtton_Click(Transport::kPlay);
    EXPECT_EQ(player.movie.DS_GetPosition(), row.position);
    EXPECT_TRUE(player.Playing());
  }
}

TEST(Transport, PlayOfAnAsxStreamWaitsForItsBuffer) {
  Player player;
  player.session.AsxInfo.entry = "http://host/none";
  player.Open("http://host/none");
  player.transport.BUtton_Click(Transport::kPlay);  // it could not be rendered
  EXPECT_THAT(player.log, IsEmpty());
  player.Open("/m/a.mp3");
  player.transport.BUtton_Click(Transport::kPlay);
  EXPECT_THAT(player.log, ElementsAre("status 0", "state 0"));
  player.transport.BUtton_Click(Transport::kPlay);
  EXPECT_EQ(player.log.size(), 2U);
}

TEST(Transport, StopHoldsThePictureAndPausePlaysAgain) {
  Player player;
  player.OpenAt("/m/a.avi", 50, true);
  player.transport.BUtton_Click(Transport::kStop);
  EXPECT_THAT(player.factory.calls, ElementsAre("Stop", "put_CurrentPosition 0", "Pause"));
  EXPECT_THAT(player.log, ElementsAre("state 1", "state 2", "release"));
  EXPECT_EQ(player.movie.State(), 2);
  EXPECT_FALSE(player.movie.DS_IsRunning());
  player.transport.BUtton_Click(Transport::kPause);
  EXPECT_TRUE(player.Playing());
  player.transport.BUtton_Click(Transport::kPause);
  EXPECT_FALSE(player.Playing());
  EXPECT_EQ(player.log.back(), "meter");
}

TEST(Transport, RepeatStepsAndForgivesAStrangeMode) {
  Player player;
  for (const int after : {1, 2, 0}) {
    player.transport.BUtton_Click(Transport::kRepeat);
    EXPECT_EQ(player.settings.RepeatMode, after);
  }
  player.settings.RepeatMode = 7;
  player.transport.SetRepeatButtonColor();
  player.transport.BUtton_Click(Transport::kRepeat);
  EXPECT_EQ(player.settings.RepeatMode, 0);
}

TEST(Transport, TheMeterGoesOnAfterTheMenuIfItRan) {
  Player player;
  player.transport.BottonPanel_MouseUp(kLeftButton);
  player.transport.BottonPanel_MouseUp(kRightButton);
  player.meter_runs = false;
  player.transport.BUtton_Click(Transport::kMenu);
  EXPECT_THAT(player.log, ElementsAre("stop meter", "popup", "start meter", "stop meter", "popup"));
}

TEST(Marks, ThreePressesSetOrderAndClear) {
  Player player;
  const struct {
    double position;
    int face;
    const char* tip;
    double first, second;
  } presses[] = {{30, 1, "00:00:30.00 > ...", 30, kNoPosition},
                 {10, 2, "00:00:10.00 > 00:00:30.00", 10, 30},
                 {10, 0, "Click to set A > B", kNoPosition, kNoPosition}};
  player.OpenAt("/m/a.mp3", 0, false);
  for (const auto& press : presses) {
    SCOPED_TRACE(press.tip);
    player.movie.DS_SetPosition(press.position);
    player.transport.BUtton_Click(Transport::kMarks);
    EXPECT_EQ(player.ab_face, press.face);
    EXPECT_EQ(player.ab_tip, press.tip);
    EXPECT_EQ(player.session.MarkA, press.first);
    EXPECT_EQ(player.session.MarkB, press.second);
    if (press.face == 1) continue;  // the slider shows a range when it has both
    EXPECT_EQ(player.slider1.Properties().range_start, press.first);
    EXPECT_EQ(player.slider1.Properties().range_end, press.second);
  }

  // An open clears them and leaves the tip.
  player.movie.DS_SetPosition(0);
  for (int press = 0; press < 2; ++press) player.transport.BUtton_Click(Transport::kMarks);
  EXPECT_TRUE(player.marks.BothSet());  // of zero length, at the very start
  player.marks.ResetAB();
  EXPECT_FALSE(player.marks.BothSet());
  EXPECT_EQ(player.ab_face, 0);
  EXPECT_EQ(player.ab_tip, "00:00:00,00 > 00:00:00,00");
  EXPECT_EQ(player.slider1.Properties().range_start, kNoPosition);
}

TEST(WheelSeek, StepsThroughThePausedMedium) {
  const struct {
    const char* file;
    double from;
    bool back;
    int mode;
    double to;
  } rows[] = {
      {"/m/a.avi", 50, false, kWheelMinute, 100}, {"/m/a.avi", 70, true, kWheelMinute, 10},
      {"/m/a.avi", 20, true, kWheelFrame, 19.96}, {"/m/a.mp3", 20, false, kWheelFrame, 20.5},
      {"/m/a.avi", 0.4, true, kWheelSecond, 0},   {"/m/a.avi", 20, false, 4, 20},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.file << " from " << row.from << " mode " << row.mode);
    Player player;
    player.OpenAt(row.file, row.from, false);
    player.wheel.WheelMove(row.back, row.mode);
    EXPECT_DOUBLE_EQ(player.movie.DS_GetPosition(), row.to);
    EXPECT_TRUE(player.movie.DS_IsPaused());
  }
}

TEST(WheelSeek, AMediumThatPlayedPlaysOnWhenTheKeyIsLetGo) {
  for (const bool played : {true, false}) {
    Player player;
    player.OpenAt("/m/a.mp3", 20, played);
    player.wheel.WheelMove(false, kWheelSecond);
    player.wheel.WheelMove(false, kWheelSecond);
    EXPECT_TRUE(player.movie.DS_IsPaused());
    EXPECT_EQ(player.movie.DS_GetPosition(), 22);
    player.wheel.KeyUp(65);
    EXPECT_FALSE(player.Playing());
    player.wheel.KeyUp(16);
    EXPECT_EQ(player.Playing(), played);
    player.movie.DS_Pause();  // the stepping is over: what is paused now stays so
    player.wheel.KeyUp(17);
    EXPECT_FALSE(player.Playing());
  }
}

TEST(WheelSeek, WithoutKeysItTurnsTheVolumeWithinItsEnds) {
  Player player;
  for (const double start : {0.0, 50.0, 99.0}) {
    for (const bool down : {true, false}) {
      player.slider2.SetValue(start);
      player.wheel.WheelMove(down, kWheelVolume);
      EXPECT_EQ(player.slider2.Value(), std::clamp(start + (down ? -1 : 1), 0.0, 99.0));
    }
  }
}

}  // namespace
}  // namespace kv
