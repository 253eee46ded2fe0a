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

// Writes down each graph that is made.
class JournalFactory : public FakeGraphFactory {
 public:
  using FakeGraphFactory::FakeGraphFactory;
  std::shared_ptr<FilterGraph> CreateGraph() override {
    calls.emplace_back("CreateGraph");
    return FakeGraphFactory::CreateGraph();
  }
};

// Lets something happen in one pump.
class IncidentPump : public FakePump {
 public:
  using FakePump::FakePump;
  void PumpOnce() override {
    FakePump::PumpOnce();
    if (on_pump) on_pump();
  }
  std::function<void()> on_pump;
};

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
    pump_.on_pump = [this] {
      factory_.calls.emplace_back("pump");
      ++pumps_;
      if (const auto incident = incident_) incident();  // it may set another
    };
    movie_.SetEvents(this);
  }

  void Movie_PlayStateChange(clsDShowControl::PlayState State) override {
    Note("PlayStateChange", std::to_string(State) + " in state " + std::to_string(movie_.State()));
  }
  void Movie_PrepareMedia(const std::string& File) override {
    Note("PrepareMedia", File);
    if (const auto incident = on_prepare_) incident();
  }
  void Movie_PrepareMediaFinish(const std::string& File) override {
    Note("PrepareMediaFinish", File);
  }

  bool Open(const std::string& file) { return movie_.DS_OpenFile(file, 1, 2, 3, 4, kTarget); }

  // Opens, and forgets the calls that it took.
  void OpenQuietly(const std::string& file) {
    ASSERT_TRUE(Open(file));
    factory_.calls.clear();
  }

  Calls Taken() { return std::exchange(factory_.calls, {}); }

  void ExpectNothingOpen() {
    EXPECT_FALSE(movie_.DS_IsOpen());
    EXPECT_EQ(movie_.DS_CurFile(), "");
    EXPECT_EQ(factory_.Current(), nullptr);
  }

  void ExpectOpen(const std::string& file) {
    EXPECT_TRUE(movie_.DS_IsOpen());
    EXPECT_EQ(movie_.DS_CurFile(), file);
    EXPECT_EQ(movie_.DS_GetDuration(), factory_.media[file].duration);
    EXPECT_NE(factory_.Current(), nullptr);
    movie_.DS_Play();
    time_.Advance(2000);
    EXPECT_EQ(movie_.DS_GetPosition(), 2.0);
  }

  void Note(const std::string& event, const std::string& argument) {
    factory_.calls.push_back(event + " " + argument);
  }

  VirtualTime time_;
  IncidentPump pump_{&time_};
  JournalFactory factory_{time_, pump_};
  clsDShowControl movie_{factory_, pump_};
  std::function<void()> incident_;
  std::function<void()> on_prepare_;
  int pumps_ = 0;
};

TEST_F(DShowControlTest, OpeningReleasesWhatWasOpenFirst) {
  ASSERT_TRUE(Open("film"));
  movie_.DS_Play();
  movie_.DS_Pause();
  movie_.DS_SetRate(2.0);
  Taken();
  EXPECT_TRUE(Open("other"));
  const Calls calls = Taken();
  // Two pumps, so that the surface is bare before the next medium comes.
  EXPECT_EQ(
      Calls(calls.begin(), calls.begin() + 6),
      (Calls{"PrepareMedia other", "Stop", "pump", "pump", "CreateGraph", "RenderFile other"}));
  EXPECT_EQ(calls.back(), "PrepareMediaFinish other");
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
    const auto once = [this, action] {
      incident_ = nullptr;
      on_prepare_ = nullptr;
      action();
    };
    if (GetParam() == 0) {
      on_prepare_ = once;
    } else {
      incident_ = [this, once] {
        if (pumps_ == GetParam()) once();
      };
    }
  }
};

TEST_F(DShowControlTest, ASlowOpenPumpsAsOftenAsTheIncidentsBelowExpect) {
  EXPECT_TRUE(Open("slow"));
  EXPECT_EQ(pumps_, kPumps);
}

TEST_P(Incident, ASecondOpenThatFailsStillOvertakesTheFirst) {
  Arrange([&] { EXPECT_FALSE(Open("corrupt")); });
  EXPECT_FALSE(Open("slow"));
  EXPECT_EQ(movie_.DS_CurFile(), "");
  EXPECT_TRUE(movie_.DS_IsOpen());
  EXPECT_EQ(movie_.DS_GetDuration(), 0.0);
}

TEST_P(Incident, TheLastOfThreeOpensWins) {
  for (int inner = 1; inner <= kPumps; ++inner) {
    SCOPED_TRACE(inner);
    pumps_ = 0;
    bool third = false;
    Arrange([&] {
      const int begin = pumps_;
      incident_ = [&, begin] {
        if (pumps_ != begin + inner) return;
        incident_ = nullptr;
        third = Open("film");
      };
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
  struct Row {
    double duration;
    double position;
    bool starts_over;
  };
  for (const Row& row : {Row{100.0, 99.4, false}, Row{100.0, 100.0, true},
                         Row{100.0, 99.5, true},  // halves go to the even number
                         Row{99.0, 98.5, false}, Row{100.6, 100.4, false}, Row{0.3, 0.1, true}}) {
    SCOPED_TRACE(row.position);
    factory_.media["end"] = {.duration = row.duration};
    OpenQuietly("end");
    movie_.DS_SetPosition(row.position);
    Taken();
    movie_.DS_Play();
    EXPECT_EQ(Taken().front(), row.starts_over ? "put_CurrentPosition 0" : "Run");
    EXPECT_EQ(movie_.DS_GetPosition(), row.starts_over ? 0.0 : row.position);
  }
}

TEST_F(DShowControlTest, PositionsStayInTheMedium) {
  OpenQuietly("film");
  struct Row {
    double value;
    double from_40;  // where it leads, as a distance from 40
    double place;    // where it leads, as a place
  };
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const Row& row :
       {Row{5.0, 45.0, 5.0}, Row{-3.0, 37.0, 0.0}, Row{60.5, 100.0, 60.5}, Row{-40.5, 0.0, 0.0},
        Row{kInfinity, 100.0, 100.0}, Row{-kInfinity, 0.0, 0.0}}) {
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
  OpenQuietly("film");
  movie_.DS_SetVolume(-300, true);
  movie_.DS_SetVolume(-900, false);
  Taken();
  movie_.DS_Seek(5.0);
  EXPECT_EQ(Taken(), Calls{"put_CurrentPosition 5"});
  EXPECT_EQ(movie_.DS_GetVolume(), -900);
  movie_.DS_SetPosition(7.0);
  EXPECT_EQ(Taken(), (Calls{"put_CurrentPosition 7", "put_Volume -1", "put_Volume -300"}));
  // A new medium starts loud; the volume that was remembered outlives it.
  OpenQuietly("tone");
  EXPECT_EQ(movie_.DS_GetVolume(), 0);
  movie_.DS_SetPosition(1.0);
  EXPECT_EQ(movie_.DS_GetVolume(), -300);
  // Nothing is remembered without a graph.
  movie_.DS_Remove();
  EXPECT_EQ(movie_.DS_SetVolume(-20000, true), -10000);
  OpenQuietly("tone");
  movie_.DS_SetPosition(1.0);
  EXPECT_EQ(movie_.DS_GetVolume(), -300);
}

TEST_F(DShowControlTest, LevelsAndRatesAreClamped) {
  OpenQuietly("film");
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
  for (const char* before : {"", "film", "corrupt"}) {
    SCOPED_TRACE(before);
    if (*before != '\0') {
      Open(before);
      movie_.DS_Play();
    }
    if (before == std::string("film")) movie_.DS_Remove();
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
    ExpectNothingOpen();
  }
}

TEST_F(DShowControlTest, AStreamThatCannotBeMovedPlaysOn) {
  movie_.SetEvents(nullptr);
  OpenQuietly("radio");
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
