// What filter_graph.h promises, of the real engine in real time.

#include "engine_world_qt.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <utility>

namespace kv {
namespace {

constexpr int kTick = 30;         // how often the player reads the position, milliseconds
constexpr double kStartUp = 1.0;  // what a decoder and a busy machine may take to begin, seconds
// A decoder ends while the last half second is still in the buffers of the sound output.
constexpr double kAhead = 0.6;
constexpr double kPatience = 10.0;  // seconds

class GraphContract : public ::testing::Test, protected EngineWorld {
 protected:
  GraphContract() { clock_.start(); }

  double Now() const { return static_cast<double>(clock_.nsecsElapsed()) / 1e9; }

  void ExpectStandsAt(const FilterGraph& graph, double position) {
    for (int i = 0; i < 10; ++i) {
      Pass(kTick);
      ASSERT_EQ(Position(graph), position);
    }
  }

  QElapsedTimer clock_;
};

struct Playing {
  const char* name;
  const char* medium;
  double from, duration;  // seconds
};

class PlayingContract : public GraphContract, public ::testing::WithParamInterface<Playing> {};

// A player that reads a position that does not move takes it for the end of the medium.
TEST_P(PlayingContract, PositionRunsLikeAClockUpToTheDuration) {
  const Playing run = GetParam();
  const auto graph = Render(run.medium);
  const double duration = graph->get_Duration().value_or(0.0);
  EXPECT_NEAR(duration, run.duration, 0.1);
  EXPECT_EQ(Position(*graph), 0.0);
  if (run.from > 0.0) {
    EXPECT_TRUE(graph->put_CurrentPosition(run.from));
  }
  ASSERT_TRUE(graph->Run());

  const double begin = Now();
  double last = run.from;
  int equal = 0;
  while (last < duration && Now() - begin < kPatience) {
    Pass(kTick);
    const double elapsed = Now() - begin;
    const double position = Position(*graph);
    ASSERT_GE(position, last);
    equal = position == last ? equal + 1 : 0;
    ASSERT_LT(equal, 5) << "looks frozen at " << position;
    ASSERT_LE(position, run.from + elapsed + kAhead);
    ASSERT_GE(position, std::min(duration, run.from + elapsed - kStartUp));
    last = position;
  }
  // A length told by the file's header can be a moment too short.
  EXPECT_NEAR(last, duration, 0.01);
  EXPECT_TRUE(Becomes([&] { return Position(*graph) == graph->get_Duration().value_or(0.0); }));
  ExpectStandsAt(*graph, graph->get_Duration().value_or(0.0));
  EXPECT_EQ(graph->WaitForCompletion(1000), 1);
}

INSTANTIATE_TEST_SUITE_P(Media, PlayingContract,
                         ::testing::Values(Playing{"25fps", "film25.mkv", 0.0, 3.0},
                                           Playing{"1fps", "film1.mkv", 2.0, 5.0},
                                           Playing{"vfr", "film_vfr.mkv", 0.7, 3.0},
                                           Playing{"sound", "tone.wav", 0.0, 2.0}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_F(GraphContract, HaltedPositionStandsStillWhereItWasPut) {
  const auto graph = Render("film25.mkv");
  ExpectStandsAt(*graph, 0.0);
  ASSERT_TRUE(graph->put_CurrentPosition(1.2));
  ASSERT_TRUE(graph->put_Rate(4.0));
  ExpectStandsAt(*graph, 1.2);
  ASSERT_TRUE(graph->put_Rate(1.0));

  ASSERT_TRUE(graph->Run());
  ASSERT_TRUE(Becomes([&] { return Position(*graph) > 1.5; }));
  ASSERT_TRUE(graph->Pause());
  ExpectStandsAt(*graph, Position(*graph));
  ASSERT_TRUE(graph->Run());
  Pass(100);
  ASSERT_TRUE(graph->Stop());
  EXPECT_GT(Position(*graph), 1.5) << "Stop halts, it does not move";
  ExpectStandsAt(*graph, Position(*graph));
}

TEST_F(GraphContract, APositionPutWhilePlayingHoldsAndGoesOnFromThere) {
  const auto graph = Render("film25.mkv");
  ASSERT_TRUE(graph->Run());
  Pass(300);
  // One jump overtakes another, as when a slider is dragged: none shows where an earlier one went.
  for (int i = 0; i < 30; ++i) {
    const double target = i % 2 == 0 ? 2.2 : 0.4;
    ASSERT_TRUE(graph->put_CurrentPosition(target));
    EXPECT_NEAR(Position(*graph), target, 0.02);
    const double put = Now();
    for (int wait = i * 11 % 60; wait > 0; wait -= 5) {
      Pass(5);
      ASSERT_NEAR(Position(*graph), target, 0.1 + Now() - put) << "jump " << i;
    }
  }
  ASSERT_TRUE(graph->put_CurrentPosition(1.6));
  double last = 1.6;
  const double begin = Now();
  while (last < 2.2) {
    ASSERT_LT(Now() - begin, kPatience);
    Pass(kTick);
    const double position = Position(*graph);
    ASSERT_GE(position, last - 0.05);
    ASSERT_LE(position, 1.6 + Now() - begin + 0.3);
    last = position;
  }
}

TEST_F(GraphContract, PositionsOutsideOfTheMediumAreBroughtIn) {
  const auto graph = Render("film25.mkv");
  const double duration = graph->get_Duration().value_or(0.0);
  for (const double beyond : {duration, 1e9}) {
    ASSERT_TRUE(graph->put_CurrentPosition(beyond));
    EXPECT_EQ(Position(*graph), duration);
    ExpectStandsAt(*graph, duration);
    ASSERT_TRUE(graph->Run());
    ExpectStandsAt(*graph, duration);
    EXPECT_EQ(graph->WaitForCompletion(2000), 1);
  }
  ASSERT_TRUE(graph->put_CurrentPosition(-1.0));
  EXPECT_NEAR(Position(*graph), 0.0, 0.02);
  EXPECT_EQ(graph->WaitForCompletion(100), 0) << "put back from its end a medium goes on";
  EXPECT_TRUE(Becomes([&] { return Position(*graph) > 0.3; }));
  EXPECT_LT(Position(*graph), 2.0);
}

TEST_F(GraphContract, RateIsTheSpeedOfThePosition) {
  const auto graph = Render("film25.mkv");
  EXPECT_EQ(graph->get_Rate(), 1.0);
  for (const double wrong : {0.0, -1.0, std::nan("")}) EXPECT_FALSE(graph->put_Rate(wrong));
  EXPECT_EQ(graph->get_Rate(), 1.0);
  ASSERT_TRUE(graph->put_Rate(2.0));
  EXPECT_EQ(graph->get_Rate(), 2.0);
  ASSERT_TRUE(graph->Run());
  ASSERT_TRUE(Becomes([&] { return Position(*graph) >= 0.2; }));
  const double begin = Now();
  ASSERT_TRUE(Becomes([&] { return Position(*graph) >= 1.6; }));
  EXPECT_NEAR(Now() - begin, 0.7, 0.4);
  const double before = Position(*graph);
  ASSERT_TRUE(graph->put_Rate(0.1));
  EXPECT_NEAR(Position(*graph), before, 0.1) << "changing the speed does not move the position";
  // What lies in the sound output's buffer already is still played at the old speed.
  double last = before;
  EXPECT_TRUE(Becomes([&] {
    Pass(400);
    const double moved = Position(*graph) - std::exchange(last, Position(*graph));
    return moved > 0.0 && moved < 0.15;
  }));
  EXPECT_LT(last, before + 1.2);
}

TEST_F(GraphContract, OnlyAPictureHasASizeAndAWindow) {
  for (const bool picture : {true, false}) {
    const auto graph = Render(picture ? "film25.mkv" : "tone.wav");
    const VideoSize size = graph->GetVideoSize().value_or(VideoSize{});
    EXPECT_EQ(size.width, picture ? 160 : 0);
    EXPECT_EQ(size.height, picture ? 120 : 0);
    EXPECT_NEAR(graph->get_AvgTimePerFrame().value_or(0.0), picture ? 0.04 : 0.0, 0.001);
    EXPECT_EQ(graph->get_BitRate().has_value(), picture);
    EXPECT_EQ(graph->get_BitErrorRate().has_value(), picture);
    EXPECT_EQ(graph->put_Owner(0), picture);
    EXPECT_EQ(graph->put_WindowStyle(0x10000000), picture);
    EXPECT_EQ(graph->SetWindowPosition(1, 2, 30, 40), picture);
    EXPECT_EQ(graph->HideCursor(true), picture);
    EXPECT_EQ(graph->IsCursorHidden().value_or(false), picture);
  }
}

void ExpectHoldsNothing(FilterGraph& graph) {
  for (const bool took : {graph.Run(), graph.Pause(), graph.put_CurrentPosition(1.0),
                          graph.put_Rate(2.0), graph.put_Volume(-100), graph.put_Balance(100),
                          graph.put_Owner(1), graph.SetWindowPosition(0, 0, 10, 10),
                          graph.put_FullScreenMode(true), graph.HideCursor(true)}) {
    EXPECT_FALSE(took);
  }
  EXPECT_FALSE(graph.get_Duration() || graph.get_CurrentPosition() || graph.get_Rate());
  EXPECT_FALSE(graph.get_Volume() || graph.get_Balance());
  EXPECT_FALSE(graph.get_AvgTimePerFrame() || graph.GetVideoSize());
  EXPECT_EQ(graph.WaitForCompletion(1000), 2);
}

TEST_F(GraphContract, AFailureLeavesAGraphThatHoldsNothing) {
  ExpectHoldsNothing(*Graph());
  const std::string pipe = Folder().Path("pipe.mkv");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  // The first as the first medium of all, the others after one whose values must not shine through.
  for (const std::string& name :
       {Path("missing.mkv"), Path("empty.mp4"), Path("truncated.mp4"), Path("text.mp4"),
        Path("playlist.mp4"), Path(""), pipe, std::string("av://lavfi:testsrc")}) {
    SCOPED_TRACE(name);
    const auto failed = Graph();
    const double begin = Now();
    EXPECT_FALSE(failed->RenderFile(name));
    EXPECT_LT(Now() - begin, 5.0);
    ExpectHoldsNothing(*failed);
    failed->Stop();
    const auto next = Render("film25.mkv");
    EXPECT_EQ(next->GetVideoSize().value_or(VideoSize{}).width, 160);
    EXPECT_TRUE(next->Run());
    EXPECT_TRUE(Becomes([&] { return Position(*next) > 0.05; }));
  }
}

TEST_F(GraphContract, StopInsideThePumpAbandonsTheRendering) {
  const auto graph = Graph();
  bool stopped = false;
  QTimer::singleShot(0, [&] {
    graph->Stop();
    stopped = true;
  });
  EXPECT_FALSE(graph->RenderFile(Path("film25.mkv")));
  EXPECT_TRUE(stopped);
  ExpectHoldsNothing(*graph);
  EXPECT_TRUE(Render("tone.wav")->Run());
}

// "kind id language title" of each, "x" in front of what is played.
std::string Told(const FilterGraph& graph) {
  std::string told;
  for (const MediaTrack& track : graph.Tracks()) {
    told += track.selected ? " x" : " ";
    told += (track.kind == TrackKind::kSound ? "a" : "s") + std::to_string(track.id);
    told += (track.external ? "+" : "") + track.language + track.title;
  }
  return told;
}

TEST_F(GraphContract, TracksAreToldAndChosen) {
  EXPECT_FALSE(Graph()->SelectTrack(TrackKind::kSubtitle, 0));
  const auto graph = Render("dual.mkv");
  EXPECT_EQ(Told(*graph), " xa1eng a2ger xs1eng s2gerAlles");
  ASSERT_TRUE(graph->Run());
  const auto expect_chosen = [&](TrackKind kind, int id, const char* told) {
    EXPECT_TRUE(graph->SelectTrack(kind, id));
    EXPECT_EQ(Told(*graph), told) << "at once";
    Pass(150);
    EXPECT_EQ(Told(*graph), told) << "and by what is played";
  };
  expect_chosen(TrackKind::kSubtitle, 2, " xa1eng a2ger s1eng xs2gerAlles");
  expect_chosen(TrackKind::kSound, 2, " a1eng xa2ger s1eng xs2gerAlles");
  EXPECT_FALSE(graph->SelectTrack(TrackKind::kSound, 0));
  EXPECT_FALSE(graph->SelectTrack(TrackKind::kSubtitle, 3));
  expect_chosen(TrackKind::kSubtitle, 0, " a1eng xa2ger s1eng s2gerAlles");
  EXPECT_FALSE(graph->AddSubtitles(Path("text.mp4")));
  EXPECT_TRUE(graph->AddSubtitles(
      Folder().Write("words.srt", "1\n00:00:00,000 --> 00:00:03,000\nWords\n")));
  const std::string with_words = " a1eng xa2ger s1eng s2gerAlles xs3+words.srt";
  EXPECT_TRUE(Becomes([&] { return Told(*graph) == with_words; })) << Told(*graph);
  EXPECT_EQ(Told(*Render("tone.wav")).find('s'), std::string::npos);
}

TEST_F(GraphContract, WaitForCompletionWaitsForTheEndOrTheTime) {
  const auto graph = Render("tone.wav");
  double begin = Now();
  EXPECT_EQ(graph->WaitForCompletion(100), 0) << "halted, it goes on";
  EXPECT_NEAR(Now() - begin, 0.1, 0.09);
  ASSERT_TRUE(graph->put_CurrentPosition(1.2));
  ASSERT_TRUE(graph->Run());
  EXPECT_EQ(graph->WaitForCompletion(0), 0);
  begin = Now();
  EXPECT_EQ(graph->WaitForCompletion(8000), 1);
  EXPECT_EQ(Position(*graph), graph->get_Duration()) << "complete, but not heard to the end";
  EXPECT_NEAR(Now() - begin, 0.8, 0.7);
}

}  // namespace
}  // namespace kv
