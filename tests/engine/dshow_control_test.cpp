// clsDShowControl over graphs on virtual time: what it asks of them, in which order, and what
// becomes of it when something happens in the middle of an open.

#include "engine/dshow_control.h"

#include "support/fake_graph.h"
#include "support/fake_pump.h"
#include "support/virtual_time.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace kv {
namespace {

using Calls = std::vector<std::string>;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr WindowHandle kTarget = 7;

class DShowControlTest : public ::testing::Test, protected clsDShowControl::Events {
 protected:
  DShowControlTest() {
    factory_.media["film"] = {.duration = 100.0, .width = 640, .height = 360};
    factory_.media["other"] = {.duration = 30.0, .width = 320, .height = 240};
    factory_.media["slow"] = {.duration = 20.0, .render_milliseconds = 50};
    factory_.media["slower"] = {.duration = 10.0, .render_milliseconds = 50};
    factory_.media["tone"] = {.duration = 5.0};
    factory_.media["corrupt"] = {.renders = false};
    factory_.media["radio"] = {.duration = 0.0, .seekable = false};
    movie_.SetEvents(this);
  }

  void Movie_PlayStateChange(clsDShowControl::PlayState /*State*/) override {}
  void Movie_PrepareMedia(const std::string& File) override {
    factory_.calls.push_back("PrepareMedia " + File);
    if (const auto incident = std::exchange(on_prepare_, nullptr)) incident();
  }
  void Movie_PrepareMediaFinish(const std::string& File) override {
    factory_.calls.push_back("PrepareMediaFinish " + File);
  }

  bool Open(const std::string& file) { return movie_.DS_OpenFile(file, 1, 2, 3, 4, kTarget); }

  Calls Taken() { return std::exchange(factory_.calls, {}); }

  void ExpectOpen(const std::string& file) {
    EXPECT_TRUE(movie_.DS_IsOpen());
    EXPECT_EQ(movie_.DS_CurFile(), file);
    EXPECT_EQ(movie_.DS_GetDuration(), factory_.media[file].duration);
    EXPECT_NE(factory_.Current(), nullptr);
    movie_.DS_Play();
    time_.Advance(2000);
    EXPECT_EQ(movie_.DS_GetPosition(), 2.0);
  }

  VirtualTime time_;
  FakePump pump_{&time_};
  FakeGraphFactory factory_{time_, pump_};
  clsDShowControl movie_{factory_, pump_};
  std::function<void()> on_prepare_;
};

TEST_F(DShowControlTest, OpeningReleasesWhatWasOpenFirst) {
  ASSERT_TRUE(Open("film"));
  movie_.DS_Play();
  movie_.DS_SetRate(2.0);
  Taken();
  // Two pumps, so that the surface is bare before the next medium comes.
  pump_.InPump(1, [&] { EXPECT_EQ(Taken(), (Calls{"PrepareMedia other", "Stop"})); });
  EXPECT_TRUE(Open("other"));
  EXPECT_EQ(Taken().back(), "PrepareMediaFinish other");
  EXPECT_EQ(movie_.State(), 0);
  EXPECT_EQ(movie_.DS_GetRate(), 1.0);
  EXPECT_EQ(factory_.Current()->Owner(), kTarget);
  ExpectOpen("other");
}

// --- What happens inside the pumps of an open: two before the graph is made, three while "slow"
// --- is rendered, one at the end. 0 stands for the event before the first.

constexpr int kPumps = 6;
class Incident : public DShowControlTest, public ::testing::WithParamInterface<int> {
 protected:
  // Runs `action` once, in the pump of the parameter.
  void Arrange(const std::function<void()>& action) {
    if (GetParam() == 0) {
      on_prepare_ = action;
    } else {
      pump_.InPump(GetParam() - 1, action);
    }
  }
};

TEST_F(DShowControlTest, ASlowOpenPumpsAsOftenAsTheIncidentsBelowExpect) {
  EXPECT_TRUE(Open("slow"));
  EXPECT_EQ(pump_.Pumps(), kPumps);
}

TEST_P(Incident, ASecondOpenThatFailsStillOvertakesTheFirst) {
  Arrange([&] { EXPECT_FALSE(Open("corrupt")); });
  EXPECT_FALSE(Open("slow"));
  EXPECT_EQ(movie_.DS_CurFile(), "");
  EXPECT_TRUE(movie_.DS_IsOpen());
  EXPECT_EQ(movie_.DS_GetDuration(), 0.0);
}

TEST_P(Incident, TheLastOfThreeOpensWins) {
  for (int inner = 0; inner < kPumps; ++inner) {
    SCOPED_TRACE(inner);
    bool third = false;
    Arrange([&] {
      pump_.InPump(inner, [&] { third = Open("film"); });
      EXPECT_FALSE(Open("slower"));
    });
    EXPECT_FALSE(Open("slow"));
    EXPECT_TRUE(third);
    ExpectOpen("film");
  }
}

INSTANTIATE_TEST_SUITE_P(EveryPump, Incident, ::testing::Range(0, kPumps + 1));

// --- Transport

TEST_F(DShowControlTest, PlayStartsOverNearTheEnd) {
  const struct {
    double duration, position;
    bool starts_over;
  } rows[] = {{100.0, 99.4, false}, {100.0, 100.0, true},  {100.0, 99.5, true},
              {99.0, 98.5, false},  {100.6, 100.4, false}, {0.3, 0.1, true}};
  for (const auto& row : rows) {  // halves go to the even number
    factory_.media["end"] = {.duration = row.duration};
    Open("end");
    movie_.DS_SetPosition(row.position);
    movie_.DS_Play();
    EXPECT_EQ(movie_.DS_GetPosition(), row.starts_over ? 0.0 : row.position) << row.position;
  }
}

TEST_F(DShowControlTest, PositionsStayInTheMedium) {
  Open("film");
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const struct {
    double value;
    double from_40, place;  // where it leads as a distance from 40, and as a place
  } rows[] = {{5.0, 45.0, 5.0},  {-3.0, 37.0, 0.0},         {60.5, 100.0, 60.5},
              {-40.5, 0.0, 0.0}, {kInfinity, 100.0, 100.0}, {-kInfinity, 0.0, 0.0}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.value);
    movie_.DS_SetPosition(40.0);
    movie_.DS_Seek(row.value);
    EXPECT_EQ(movie_.DS_GetPosition(), row.from_40);
    EXPECT_EQ(movie_.DS_SetPosition(row.value), row.place);
    EXPECT_EQ(movie_.DS_GetPosition(), row.place);
  }
  EXPECT_EQ(movie_.DS_SetPosition(kNan), 0.0);
}

TEST_F(DShowControlTest, OnlySettingThePositionSetsTheVolumeAnew) {
  Open("film");
  movie_.DS_SetVolume(-300, true);
  movie_.DS_SetVolume(-900, false);
  movie_.DS_Seek(5.0);
  EXPECT_EQ(movie_.DS_GetVolume(), -900);
  movie_.DS_SetPosition(7.0);
  EXPECT_EQ(movie_.DS_GetVolume(), -300);
  // A new medium starts loud; the volume that was remembered outlives it.
  Open("tone");
  EXPECT_EQ(movie_.DS_GetVolume(), 0);
  movie_.DS_SetPosition(1.0);
  EXPECT_EQ(movie_.DS_GetVolume(), -300);
  // Nothing is remembered without a graph.
  movie_.DS_Remove();
  EXPECT_EQ(movie_.DS_SetVolume(-20000, true), -10000);
  Open("tone");
  movie_.DS_SetPosition(1.0);
  EXPECT_EQ(movie_.DS_GetVolume(), -300);
}

TEST_F(DShowControlTest, LevelsAndRatesAreClamped) {
  Open("film");
  constexpr int kMin = std::numeric_limits<int>::min();
  constexpr int kMax = std::numeric_limits<int>::max();
  for (const int level : {5, -20000, -1, kMin, kMax}) {
    EXPECT_EQ(movie_.DS_SetVolume(level, true), std::clamp(level, -10000, 0));
    EXPECT_EQ(movie_.DS_GetVolume(), std::clamp(level, -10000, 0));
    EXPECT_EQ(movie_.DS_SetBalance(level), std::clamp(level, -10000, 10000));
    EXPECT_EQ(movie_.DS_GetBalance(), std::clamp(level, -10000, 10000));
  }
  for (const double rate : {0.0, -2.0, kNan}) EXPECT_EQ(movie_.DS_SetRate(rate), 0.1);
  for (const double rate : {0.05, 4.0}) EXPECT_EQ(movie_.DS_SetRate(rate), rate);
  EXPECT_EQ(movie_.DS_GetRate(), 4.0);
}

// --- Nothing open, nothing seekable, nobody listening

TEST_F(DShowControlTest, EverythingIsSafeWithNothingOpen) {
  for (const std::string before : {"", "film", "corrupt"}) {
    SCOPED_TRACE(before);
    if (!before.empty()) Open(before);
    movie_.DS_Play();
    if (before == "film") movie_.DS_Remove();
    movie_.DS_Play();
    movie_.DS_Pause();
    movie_.DS_Stop();
    movie_.DS_Seek(1.0);
    movie_.DS_SetPosition(1.0);
    movie_.DS_SetRate(2.0);
    movie_.DS_SetVolume(-5, true);
    movie_.DS_SetBalance(-5);
    movie_.DS_ChangeTarget(1, 2, 3, 4, kTarget);
    movie_.DS_SetScale(1, 2, 3, 4);
    movie_.DS_SetFullscreen(true);
    movie_.DS_HideCursor(true);
    EXPECT_EQ(movie_.DS_GetPosition() + movie_.DS_GetDuration() + movie_.DS_GetRate() +
                  movie_.DS_GetAvgTimePerFrame() + movie_.DS_GetVolume() + movie_.DS_GetBalance() +
                  movie_.DS_GetVideoBitRate() + movie_.DS_GetVideoBitErrorRate(),
              0.0);
    EXPECT_FALSE(movie_.DS_StillPlaying(100) || movie_.DS_IsCursorHidden());
    EXPECT_EQ(movie_.DS_CurFile(), "");
    movie_.DS_Remove();
    EXPECT_FALSE(movie_.DS_IsOpen());
    EXPECT_EQ(factory_.Current(), nullptr);
  }
}

TEST_F(DShowControlTest, AStreamThatCannotBeMovedPlaysOn) {
  movie_.SetEvents(nullptr);
  Open("radio");
  movie_.DS_Play();
  time_.Advance(3000);
  movie_.DS_Seek(5.0);
  movie_.DS_SetPosition(1.0);
  EXPECT_EQ(movie_.DS_GetPosition(), 3.0);
  EXPECT_EQ(movie_.DS_GetDuration(), 0.0);
  EXPECT_TRUE(movie_.DS_StillPlaying(100));
  movie_.DS_Stop();
  EXPECT_EQ(movie_.State(), 0);
}

}  // namespace
}  // namespace kv
