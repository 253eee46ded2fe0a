// clsDShowControl over graphs on virtual time: what it asks of them, in which order, and what
// becomes of it when something happens in the middle of an open.

#include "engine/dshow_control.h"

#include "support/fake_graph.h"
#include "support/fake_pump.h"
#include "support/virtual_time.h"

#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

namespace kv {
namespace {

using Calls = std::vector<std::string>;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr WindowHandle kTarget = 7;
constexpr WindowHandle kOtherTarget = 8;

// Writes down each graph that is made, and whether the one before was still there.
class JournalFactory : public FakeGraphFactory {
 public:
  using FakeGraphFactory::FakeGraphFactory;
  std::shared_ptr<FilterGraph> CreateGraph() override {
    calls.emplace_back(Current() ? "CreateGraph beside another" : "CreateGraph");
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
    factory_.media["film"] = {.duration = 100.0,
                              .width = 640,
                              .height = 360,
                              .frames_per_second = 25.0,
                              .bit_rate = 1500};
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

  Calls EventsTaken() {
    Calls calls = Taken();
    std::erase_if(calls, [](const std::string& call) { return !call.starts_with("Prepare"); });
    return calls;
  }

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

const Calls kDressing = {
    "put_Volume 0", "put_Balance 0", "put_Owner 7", "put_WindowStyle 268435456",
    "put_Top 1",    "put_Left 2",    "put_Width 3", "put_Height 4",
    "put_Owner 7",  "put_Rate 1",    "pump"};

Calls OpenCalls(const std::string& file) {
  Calls calls = {"PrepareMedia " + file, "pump", "pump", "CreateGraph", "RenderFile " + file};
  calls.insert(calls.end(), kDressing.begin(), kDressing.end());
  calls.push_back("PrepareMediaFinish " + file);
  return calls;
}

TEST_F(DShowControlTest, OpensStepByStep) {
  EXPECT_TRUE(Open("film"));
  EXPECT_EQ(Taken(), OpenCalls("film"));
  EXPECT_EQ(movie_.State(), 0);
  EXPECT_FALSE(movie_.DS_IsRunning());
  EXPECT_EQ(factory_.Current()->Video().owner, kTarget);
  ExpectOpen("film");
}

TEST_F(DShowControlTest, OpeningReleasesWhatWasOpenFirst) {
  OpenQuietly("film");
  movie_.DS_Play();
  movie_.DS_Pause();
  movie_.DS_SetRate(2.0);
  Taken();
  EXPECT_TRUE(Open("other"));
  Calls expected = OpenCalls("other");
  expected.insert(expected.begin() + 1, "Stop");
  EXPECT_EQ(Taken(), expected);
  EXPECT_EQ(movie_.State(), 0);
  EXPECT_EQ(movie_.DS_GetRate(), 1.0);
  ExpectOpen("other");
}

TEST_F(DShowControlTest, AFailedOpenGoesThroughEveryStepAndHoldsNothing) {
  for (const char* file : {"corrupt", "missing", ""}) {
    SCOPED_TRACE(file);
    EXPECT_FALSE(Open(file));
    EXPECT_EQ(Taken(), OpenCalls(file));
    EXPECT_TRUE(movie_.DS_IsOpen());
    EXPECT_EQ(movie_.DS_CurFile(), "");
    EXPECT_EQ(movie_.DS_GetDuration(), 0.0);
    EXPECT_EQ(movie_.DS_GetPosition(), 0.0);
    EXPECT_FALSE(movie_.DS_StillPlaying(0));
    movie_.DS_Play();
    EXPECT_EQ(movie_.DS_SetPosition(3.0), 3.0);
    movie_.DS_Seek(1.0);
    movie_.DS_Pause();
    movie_.DS_Stop();
    movie_.DS_Remove();
    ExpectNothingOpen();
    Taken();
  }
  EXPECT_TRUE(Open("film"));
}

// --- What happens inside the pumps of an open: two before the graph is made, three while "slow"
// --- is rendered, one at the end. 0 stands for the event before the first.

constexpr int kPumps = 6;
constexpr bool DuringRender(int pump) {
  return pump >= 3 && pump <= 5;
}

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

TEST_P(Incident, ASecondOpenWins) {
  bool second = false;
  Arrange([&] { second = Open("other"); });
  EXPECT_FALSE(Open("slow"));
  EXPECT_TRUE(second);
  const Calls calls = factory_.calls;
  // While it renders, a graph is at work and can only be told to stop.
  EXPECT_EQ(std::count(calls.begin(), calls.end(), "CreateGraph beside another"),
            DuringRender(GetParam()) ? 1 : 0);
  EXPECT_EQ(EventsTaken(), (Calls{"PrepareMedia slow", "PrepareMedia other",
                                  "PrepareMediaFinish other", "PrepareMediaFinish slow"}));
  EXPECT_EQ(factory_.Current()->Video().width, 3);
  ExpectOpen("other");
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

TEST_P(Incident, ReleasingAbandonsTheOpen) {
  OpenQuietly("film");
  pumps_ = 0;
  Arrange([&] { movie_.DS_Remove(); });
  EXPECT_FALSE(Open("slow"));
  EXPECT_EQ(EventsTaken(), (Calls{"PrepareMedia slow", "PrepareMediaFinish slow"}));
  ExpectNothingOpen();
}

INSTANTIATE_TEST_SUITE_P(EveryPump, Incident, ::testing::Range(0, kPumps + 1));

// --- Transport

TEST_F(DShowControlTest, PlayPauseAndStopRunThroughTheStates) {
  OpenQuietly("film");
  using Movie = clsDShowControl;
  const struct {
    void (Movie::*operation)();
    bool running, paused;
  } steps[] = {{&Movie::DS_Pause, false, true}, {&Movie::DS_Play, true, false},
               {&Movie::DS_Pause, true, true},  {&Movie::DS_Stop, false, true},
               {&Movie::DS_Play, true, false},  {&Movie::DS_Stop, false, false},
               {&Movie::DS_Pause, false, true}, {&Movie::DS_Play, true, false}};
  for (const auto& step : steps) {
    time_.Advance(1000);
    (movie_.*step.operation)();
    EXPECT_EQ(movie_.DS_IsRunning(), step.running);
    EXPECT_EQ(movie_.DS_IsPaused(), step.paused);
    EXPECT_EQ(movie_.State(), step.paused ? 2 : step.running ? 1 : 0);
    if (step.operation == &Movie::DS_Stop) {
      EXPECT_EQ(movie_.DS_GetPosition(), 0.0);
    }
  }
  Taken();
  movie_.DS_Remove();
  EXPECT_EQ(Taken(), Calls{"Stop"});
  ExpectNothingOpen();
  movie_.DS_Remove();
  EXPECT_EQ(Taken(), Calls{});
}

TEST_F(DShowControlTest, PlayStartsOverNearTheEnd) {
  struct Row {
    double duration;
    double position;
    bool starts_over;
  };
  for (const Row& row : {Row{100.0, 99.6, true}, Row{100.0, 99.4, false}, Row{100.0, 100.0, true},
                         Row{100.0, 99.5, true},  // halves go to the even number
                         Row{99.0, 98.5, false},  //
                         Row{100.4, 99.7, true}, Row{100.6, 100.4, false}, Row{0.3, 0.1, true}}) {
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
       {Row{5.0, 45.0, 5.0}, Row{-3.0, 37.0, 0.0}, Row{60.0, 100.0, 60.0}, Row{60.5, 100.0, 60.5},
        Row{-40.0, 0.0, 0.0}, Row{-40.5, 0.0, 0.0}, Row{1e9, 100.0, 100.0},
        Row{kInfinity, 100.0, 100.0}, Row{-kInfinity, 0.0, 0.0}, Row{0.0, 40.0, 0.0}}) {
    SCOPED_TRACE(row.value);
    movie_.DS_SetPosition(40.0);
    movie_.DS_Seek(row.value);
    EXPECT_EQ(movie_.DS_GetPosition(), row.from_40);
    EXPECT_EQ(movie_.DS_SetPosition(row.value), row.place);
    EXPECT_EQ(movie_.DS_GetPosition(), row.place);
  }
  EXPECT_EQ(movie_.DS_SetPosition(kNan), 0.0);
  EXPECT_EQ(movie_.DS_GetPosition(), 0.0);
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
  constexpr int kMin = std::numeric_limits<int>::min();
  constexpr int kMax = std::numeric_limits<int>::max();
  struct Level {
    int asked;
    int volume;
    int balance;
  };
  struct Rate {
    double asked;
    double put;
  };
  OpenQuietly("film");
  for (const Level& level : {Level{5, 0, 5}, Level{-20000, -10000, -10000}, Level{20000, 0, 10000},
                             Level{-1, -1, -1}, Level{-10000, -10000, -10000}, Level{0, 0, 0},
                             Level{kMin, -10000, -10000}, Level{kMax, 0, 10000}}) {
    EXPECT_EQ(movie_.DS_SetVolume(level.asked, true), level.volume);
    EXPECT_EQ(movie_.DS_GetVolume(), level.volume);
    EXPECT_EQ(movie_.DS_SetBalance(level.asked), level.balance);
    EXPECT_EQ(movie_.DS_GetBalance(), level.balance);
    movie_.DS_SetPosition(1.0);
    EXPECT_EQ(movie_.DS_GetVolume(), level.volume);
  }
  for (const Rate& rate : {Rate{0.0, 0.1}, Rate{-2.0, 0.1}, Rate{kNan, 0.1}, Rate{0.05, 0.05},
                           Rate{1.0, 1.0}, Rate{4.0, 4.0}}) {
    EXPECT_EQ(movie_.DS_SetRate(rate.asked), rate.put);
    EXPECT_EQ(movie_.DS_GetRate(), rate.put);
  }
}

// --- Picture

TEST_F(DShowControlTest, TellsVideoFromSound) {
  int width = 77;
  int height = 77;
  movie_.DS_GetMovieSize(width, height);
  EXPECT_EQ(width, 77);
  for (const bool video : {true, false}) {
    OpenQuietly(video ? "film" : "tone");
    movie_.DS_HideCursor(true);
    EXPECT_EQ(movie_.DS_IsCursorHidden(), video);
    movie_.DS_GetMovieSize(width, height);
    EXPECT_EQ(width, video ? 640 : 0);
    EXPECT_EQ(height, video ? 360 : 0);
    EXPECT_EQ(movie_.DS_GetAvgTimePerFrame(), video ? 0.04 : 0.0);
    EXPECT_EQ(movie_.DS_GetVideoBitRate(), video ? 1500 : 0);
  }
}

TEST_F(DShowControlTest, ThePictureMovesToAnotherTargetOnlyWhilePlayingOrPaused) {
  const auto change_target = [this] {
    Taken();
    movie_.DS_ChangeTarget(10, 20, 30, 40, kOtherTarget);
    return Taken();
  };
  for (const auto operation :
       {&clsDShowControl::DS_Play, &clsDShowControl::DS_Pause, &clsDShowControl::DS_Stop}) {
    OpenQuietly("film");
    EXPECT_EQ(change_target(), Calls{});
    (movie_.*operation)();
    const Calls calls = change_target();
    if (operation == &clsDShowControl::DS_Stop) {
      EXPECT_EQ(calls, Calls{});
      continue;
    }
    // At home in the new target before it takes its place there.
    ASSERT_GE(calls.size(), 3U);
    EXPECT_EQ(calls[1], "put_Owner 8");
    const FakeGraph::Window& video = factory_.Current()->Video();
    EXPECT_EQ(std::vector({video.top, video.left, video.width, video.height}),
              std::vector({10, 20, 30, 40}));
  }
}

TEST_F(DShowControlTest, ScalingPutsLeftBeforeTop) {
  OpenQuietly("film");
  movie_.DS_SetScale(10, 20, 30, 40);
  EXPECT_EQ(Taken(), Calls{"SetWindowPosition 20 10 30 40"});
}

// --- Nothing open, nothing seekable, nobody listening

TEST_F(DShowControlTest, EverythingIsSafeWithNothingOpen) {
  for (const bool was_open : {false, true}) {
    SCOPED_TRACE(was_open);
    if (was_open) {
      OpenQuietly("film");
      movie_.DS_Play();
      movie_.DS_Remove();
    }
    Taken();
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
    movie_.DS_Remove();
    EXPECT_EQ(movie_.DS_GetPosition() + movie_.DS_GetDuration() + movie_.DS_GetRate() +
                  movie_.DS_GetAvgTimePerFrame(),
              0.0);
    EXPECT_EQ(movie_.DS_GetVolume(), 0);
    EXPECT_EQ(movie_.DS_GetBalance(), 0);
    EXPECT_EQ(movie_.DS_GetVideoBitRate(), 0);
    EXPECT_EQ(movie_.DS_GetVideoBitErrorRate(), 0);
    EXPECT_FALSE(movie_.DS_StillPlaying(100));
    EXPECT_FALSE(movie_.DS_IsCursorHidden());
    EXPECT_FALSE(movie_.DS_IsPaused());
    EXPECT_EQ(Taken(), Calls{});
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
