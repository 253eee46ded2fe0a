// What filter_graph.h promises, sentence by sentence, of whichever back end the program brings.

#include "counting_new.h"
#include "graph_bench.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <utility>

namespace kv {
namespace {

constexpr int kTick = 30;         // how often the player reads the position, milliseconds
constexpr double kStartUp = 1.0;  // what a decoder and a busy machine may take to begin, seconds
// A decoder ends while the last half second is still in the buffers of the sound output.
constexpr double kAhead = 0.6;
constexpr double kPatience = 10.0;  // seconds

class GraphContract : public ::testing::Test {
 protected:
  std::shared_ptr<FilterGraph> Render(Medium medium) {
    auto graph = bench_->MakeGraph();
    EXPECT_TRUE(graph->RenderFile(bench_->Name(medium)));
    return graph;
  }

  double Position(const FilterGraph& graph) { return graph.get_CurrentPosition().value_or(-1.0); }

  // True once `met` answers true.
  template <class Condition>
  bool Becomes(Condition met) {
    for (const double begin = bench_->Now(); bench_->Now() - begin < kPatience;) {
      if (met()) return true;
      bench_->Pass(10);
    }
    return met();
  }

  void ExpectStandsAt(const FilterGraph& graph, double position) {
    for (int i = 0; i < 10; ++i) {
      bench_->Pass(kTick);
      ASSERT_EQ(Position(graph), position);
    }
  }

  std::unique_ptr<GraphBench> bench_ = MakeBench();
};

struct Playing {
  Medium medium;
  double from;      // seconds
  double duration;  // seconds
  const char* name;
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

  const double begin = bench_->Now();
  double last = run.from;
  int equal = 0;
  while (last < duration && bench_->Now() - begin < kPatience) {
    bench_->Pass(kTick);
    const double elapsed = bench_->Now() - begin;
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
                         ::testing::Values(Playing{Medium::kFilm, 0.0, 3.0, "25fps"},
                                           Playing{Medium::kSlowFilm, 2.0, 5.0, "1fps"},
                                           Playing{Medium::kVfrFilm, 0.7, 3.0, "vfr"},
                                           Playing{Medium::kTone, 0.0, 2.0, "sound"}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_F(GraphContract, HaltedPositionStandsStillWhereItWasPut) {
  const auto graph = Render(Medium::kFilm);
  ExpectStandsAt(*graph, 0.0);
  ASSERT_TRUE(graph->put_CurrentPosition(1.2));
  ExpectStandsAt(*graph, 1.2);

  ASSERT_TRUE(graph->Run());
  ASSERT_TRUE(Becomes([&] { return Position(*graph) > 1.5; }));
  ASSERT_TRUE(graph->Pause());
  ExpectStandsAt(*graph, Position(*graph));
  ASSERT_TRUE(graph->Run());
  bench_->Pass(100);
  ASSERT_TRUE(graph->Stop());
  EXPECT_GT(Position(*graph), 1.5) << "Stop halts, it does not move";
  ExpectStandsAt(*graph, Position(*graph));
}

TEST_F(GraphContract, APositionPutWhilePlayingHoldsAndGoesOnFromThere) {
  const auto graph = Render(Medium::kFilm);
  ASSERT_TRUE(graph->Run());
  bench_->Pass(300);
  // One jump overtakes another, as when a slider is dragged: none shows where an earlier one went.
  for (int i = 0; i < 30; ++i) {
    const double target = i % 2 == 0 ? 2.2 : 0.4;
    ASSERT_TRUE(graph->put_CurrentPosition(target));
    EXPECT_NEAR(Position(*graph), target, 0.02);
    const double put = bench_->Now();
    for (int wait = i * 11 % 60; wait > 0; wait -= 5) {
      bench_->Pass(5);
      ASSERT_NEAR(Position(*graph), target, 0.1 + bench_->Now() - put) << "jump " << i;
    }
  }
  ASSERT_TRUE(graph->put_CurrentPosition(1.6));
  double last = 1.6;
  const double begin = bench_->Now();
  while (last < 2.2) {
    ASSERT_LT(bench_->Now() - begin, kPatience);
    bench_->Pass(kTick);
    const double position = Position(*graph);
    ASSERT_GE(position, last - 0.05);
    ASSERT_LE(position, 1.6 + bench_->Now() - begin + 0.3);
    last = position;
  }
}

TEST_F(GraphContract, PositionsOutsideOfTheMediumAreBroughtIn) {
  const auto graph = Render(Medium::kFilm);
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
  const auto graph = Render(Medium::kFilm);
  EXPECT_EQ(graph->get_Rate(), 1.0);
  for (const double wrong : {0.0, -1.0, std::nan("")}) EXPECT_FALSE(graph->put_Rate(wrong));
  EXPECT_EQ(graph->get_Rate(), 1.0);
  ASSERT_TRUE(graph->put_Rate(2.0));
  EXPECT_EQ(graph->get_Rate(), 2.0);
  ASSERT_TRUE(graph->Run());
  ASSERT_TRUE(Becomes([&] { return Position(*graph) >= 0.2; }));
  const double begin = bench_->Now();
  ASSERT_TRUE(Becomes([&] { return Position(*graph) >= 1.6; }));
  EXPECT_NEAR(bench_->Now() - begin, 0.7, 0.4);
  const double before = Position(*graph);
  ASSERT_TRUE(graph->put_Rate(0.1));
  EXPECT_NEAR(Position(*graph), before, 0.1) << "changing the speed does not move the position";
  // What lies in the sound output's buffer already is still played at the old speed.
  double last = before;
  EXPECT_TRUE(Becomes([&] {
    bench_->Pass(400);
    const double moved = Position(*graph) - std::exchange(last, Position(*graph));
    return moved > 0.0 && moved < 0.15;
  }));
  EXPECT_LT(last, before + 1.2);
}

TEST_F(GraphContract, RateChangedWhileHaltedDoesNotStartThePosition) {
  const auto graph = Render(Medium::kFilm);
  ASSERT_TRUE(graph->put_CurrentPosition(1.0));
  ASSERT_TRUE(graph->put_Rate(4.0));
  ExpectStandsAt(*graph, 1.0);
}

TEST_F(GraphContract, LevelsAreAnsweredAsPut) {
  const auto graph = Render(Medium::kTone);
  EXPECT_EQ(graph->get_Volume(), 0);
  EXPECT_EQ(graph->get_Balance(), 0);
  for (const int level : {-10000, -1, -2500}) {
    EXPECT_TRUE(graph->put_Volume(level));
    EXPECT_EQ(graph->get_Volume(), level);
    EXPECT_TRUE(graph->put_Balance(level));
    EXPECT_EQ(graph->get_Balance(), level);
  }
}

TEST_F(GraphContract, OnlyAPictureHasASizeAndAWindow) {
  for (const Medium medium : {Medium::kFilm, Medium::kTone}) {
    const bool picture = medium == Medium::kFilm;
    const auto graph = Render(medium);
    const VideoSize size = graph->GetVideoSize().value_or(VideoSize{});
    EXPECT_EQ(size.width, picture ? 160 : 0);
    EXPECT_EQ(size.height, picture ? 120 : 0);
    EXPECT_NEAR(graph->get_AvgTimePerFrame().value_or(0.0), picture ? 0.04 : 0.0, 0.001);
    EXPECT_EQ(graph->get_BitRate().has_value(), picture);
    EXPECT_EQ(graph->get_BitErrorRate().has_value(), picture);
    EXPECT_EQ(graph->put_Owner(0), picture);
    EXPECT_EQ(graph->put_WindowStyle(0x10000000), picture);
    EXPECT_EQ(graph->SetWindowPosition(1, 2, 30, 40), picture);
    for (const auto put : {&FilterGraph::put_Top, &FilterGraph::put_Left, &FilterGraph::put_Width,
                           &FilterGraph::put_Height}) {
      EXPECT_EQ((*graph.*put)(7), picture);
    }
    EXPECT_EQ(graph->HideCursor(true), picture);
    EXPECT_EQ(graph->IsCursorHidden().value_or(false), picture);
  }
}

void ExpectHoldsNothing(FilterGraph& graph) {
  EXPECT_FALSE(graph.Run());
  EXPECT_FALSE(graph.Pause());
  EXPECT_FALSE(graph.put_CurrentPosition(1.0));
  EXPECT_FALSE(graph.put_Rate(2.0));
  EXPECT_FALSE(graph.put_Volume(-100));
  EXPECT_FALSE(graph.put_Balance(100));
  EXPECT_FALSE(graph.put_Owner(1));
  EXPECT_FALSE(graph.put_WindowStyle(0));
  EXPECT_FALSE(graph.put_Width(10));
  EXPECT_FALSE(graph.SetWindowPosition(0, 0, 10, 10));
  EXPECT_FALSE(graph.put_FullScreenMode(true));
  EXPECT_FALSE(graph.HideCursor(true));
  EXPECT_EQ(graph.get_Duration(), std::nullopt);
  EXPECT_EQ(graph.get_CurrentPosition(), std::nullopt);
  EXPECT_EQ(graph.get_Rate(), std::nullopt);
  EXPECT_EQ(graph.get_Volume(), std::nullopt);
  EXPECT_EQ(graph.get_Balance(), std::nullopt);
  EXPECT_EQ(graph.IsCursorHidden(), std::nullopt);
  EXPECT_EQ(graph.get_AvgTimePerFrame(), std::nullopt);
  EXPECT_EQ(graph.get_BitRate(), std::nullopt);
  EXPECT_EQ(graph.get_BitErrorRate(), std::nullopt);
  EXPECT_FALSE(graph.GetVideoSize().has_value());
  EXPECT_EQ(graph.WaitForCompletion(1000), 2);
}

class FailureContract : public GraphContract, public ::testing::WithParamInterface<Medium> {};

TEST_P(FailureContract, LeavesAGraphThatHoldsNothing) {
  ExpectHoldsNothing(*bench_->MakeGraph());
  // Once as the first medium of all and once after another, whose values must not shine through.
  for (int round = 0; round < 2; ++round) {
    const auto failed = bench_->MakeGraph();
    const double begin = bench_->Now();
    EXPECT_FALSE(failed->RenderFile(bench_->Name(GetParam())));
    EXPECT_LT(bench_->Now() - begin, 5.0);
    ExpectHoldsNothing(*failed);
    failed->Stop();
    const auto next = Render(Medium::kFilm);
    EXPECT_EQ(next->GetVideoSize().value_or(VideoSize{}).width, 160);
    EXPECT_TRUE(next->Run());
    EXPECT_TRUE(Becomes([&] { return Position(*next) > 0.05; }));
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, FailureContract,
                         ::testing::Values(Medium::kMissing, Medium::kEmpty, Medium::kTruncated,
                                           Medium::kText, Medium::kPlaylist, Medium::kFolder,
                                           Medium::kFifo, Medium::kForeignScheme));

TEST_F(GraphContract, StopInsideThePumpAbandonsTheRendering) {
  const auto graph = bench_->MakeGraph();
  bool stopped = false;
  bench_->InsidePump([&] {
    graph->Stop();
    stopped = true;
  });
  EXPECT_FALSE(graph->RenderFile(bench_->Name(Medium::kFilm)));
  EXPECT_TRUE(stopped);
  ExpectHoldsNothing(*graph);
  EXPECT_TRUE(Render(Medium::kTone)->Run());
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
  EXPECT_FALSE(bench_->MakeGraph()->SelectTrack(TrackKind::kSubtitle, 0));
  const auto graph = Render(Medium::kDual);
  EXPECT_EQ(Told(*graph), " xa1eng a2ger xs1eng s2gerAlles");
  ASSERT_TRUE(graph->Run());
  const struct {
    TrackKind kind;
    int id;
    bool there;
    const char* told;
  } rows[] = {
      {TrackKind::kSubtitle, 2, true, " xa1eng a2ger s1eng xs2gerAlles"},
      {TrackKind::kSound, 2, true, " a1eng xa2ger s1eng xs2gerAlles"},
      {TrackKind::kSound, 0, false, " a1eng xa2ger s1eng xs2gerAlles"},
      {TrackKind::kSubtitle, 3, false, " a1eng xa2ger s1eng xs2gerAlles"},
      {TrackKind::kSubtitle, 0, true, " a1eng xa2ger s1eng s2gerAlles"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(graph->SelectTrack(row.kind, row.id), row.there);
    EXPECT_EQ(Told(*graph), row.told) << "at once";
    bench_->Pass(150);
    EXPECT_EQ(Told(*graph), row.told) << "and by what is played";
  }
  EXPECT_FALSE(graph->AddSubtitles(bench_->Name(Medium::kText)));
  EXPECT_TRUE(graph->AddSubtitles(bench_->Subtitles()));
  EXPECT_TRUE(Becomes([&] {
    return Told(*graph) == " a1eng xa2ger s1eng s2gerAlles xs3+words.srt";
  })) << Told(*graph);
  EXPECT_EQ(Told(*Render(Medium::kTone)).find('s'), std::string::npos);
}

TEST_F(GraphContract, WaitForCompletionWaitsForTheEndOrTheTime) {
  const auto graph = Render(Medium::kTone);
  double begin = bench_->Now();
  EXPECT_EQ(graph->WaitForCompletion(100), 0) << "halted, it goes on";
  EXPECT_NEAR(bench_->Now() - begin, 0.1, 0.09);
  ASSERT_TRUE(graph->put_CurrentPosition(1.2));
  ASSERT_TRUE(graph->Run());
  EXPECT_EQ(graph->WaitForCompletion(0), 0);
  begin = bench_->Now();
  EXPECT_EQ(graph->WaitForCompletion(8000), 1);
  EXPECT_EQ(Position(*graph), graph->get_Duration()) << "complete, but not heard to the end";
  EXPECT_NEAR(bench_->Now() - begin, 0.8, 0.7);
}

TEST_F(GraphContract, ReadingThePositionTakesNoMemory) {
  const auto graph = Render(Medium::kFilm);
  ASSERT_TRUE(graph->Run());
  bench_->Pass(200);
  const std::size_t before = AllocationsOfThisThread();
  double sum = 0.0;
  for (int i = 0; i < 100; ++i) sum += graph->get_CurrentPosition().value_or(0.0);
  EXPECT_EQ(AllocationsOfThisThread(), before);
  EXPECT_GT(sum, 0.0);
  const auto probe = std::make_unique<int>(1);
  EXPECT_EQ(AllocationsOfThisThread(), before + 1) << "the counter counts";
}

}  // namespace
}  // namespace kv
