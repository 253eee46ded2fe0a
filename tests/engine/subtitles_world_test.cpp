// Subtitles of the real engine, inside a medium and beside it, as they are seen.

#include "engine_world_qt.h"
#include "http_server_qt.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace kv {
namespace {

constexpr const char* kText = "1\n00:00:00,000 --> 00:00:03,000\nFrom a file\n";

class SubtitlesWorld : public ::testing::Test, protected EngineWorld {
 protected:
  // A medium of the test's own folder, halted at its first picture.
  std::shared_ptr<FilterGraph> Film() {
    const std::string film = Folder().Path("film.mkv");
    std::filesystem::copy_file(Path("dual.mkv"), film,
                               std::filesystem::copy_options::overwrite_existing);
    auto graph = Graph();
    EXPECT_TRUE(graph->RenderFile(film));
    graph->put_Owner(Surface().Handle());
    graph->put_WindowStyle(0x10000000);
    graph->SetWindowPosition(0, 0, 320, 240);
    return graph;
  }

  // What is shown, by language or title; empty for nothing.
  static std::string Shown(const FilterGraph& graph) {
    for (const MediaTrack& track : graph.Tracks()) {
      if (track.kind == TrackKind::kSubtitle && track.selected) {
        return track.language + " " + track.title;
      }
    }
    return {};
  }

  bool BecomesShown(const FilterGraph& graph, const std::string& what) {
    return Becomes([&] { return Shown(graph) == what; }, 3000);
  }
};

TEST_F(SubtitlesWorld, AreSeenAndGoneAtOnceAlsoWhileHalted) {
  const auto graph = Film();
  EXPECT_EQ(Shown(*graph), "eng ");
  const auto look = [this] { return Look(Surface()); };
  ASSERT_TRUE(Becomes([this] { return Engine().Video().PaintedPictures() > 0; }));
  const QImage with = look();
  ASSERT_TRUE(graph->SelectTrack(TrackKind::kSubtitle, 0));
  ASSERT_TRUE(Becomes([&] { return look() != with; }));
  const QImage without = look();
  ASSERT_TRUE(graph->SelectTrack(TrackKind::kSubtitle, 2));
  EXPECT_TRUE(Becomes([&] { return look() != without && look() != with; }));
  ASSERT_TRUE(graph->SelectTrack(TrackKind::kSubtitle, 0));
  EXPECT_TRUE(Becomes([&] { return look() == without; }));
}

TEST_F(SubtitlesWorld, AFileBesideTheMediumIsShownAndWhatIsNoneDoesNoHarm) {
  mkfifo(Folder().Path("film.srt").c_str(), 0600);
  Folder().MakeFolder("film.ass");
  Folder().Write("film.aa.srt", std::string(5000, '\xEE'));
  Folder().Write("film.ab.srt", "#EXTM3U\n#EXTINF:3,\n" + Path("tone.wav") + "\n");
  Folder().Write("film.zz.srt", kText);
  const Heartbeat heart;
  const auto graph = Film();
  EXPECT_TRUE(BecomesShown(*graph, "zz film.zz.srt")) << Shown(*graph);
  EXPECT_EQ(graph->Tracks().size(), 5U);
  EXPECT_LT(heart.LongestGap(), 500);
}

TEST_F(SubtitlesWorld, WhatWasChosenLastHoldsForTheNextMedium) {
  Film()->SelectTrack(TrackKind::kSubtitle, 2);
  EXPECT_EQ(Shown(*Film()), "ger Alles");
  Folder().Write("film.srt", kText);
  Folder().Write("film.ger.srt", kText);
  auto graph = Film();
  EXPECT_TRUE(BecomesShown(*graph, "ger film.ger.srt")) << Shown(*graph);
  graph->SelectTrack(TrackKind::kSubtitle, 0);
  graph->SelectTrack(TrackKind::kSound, 2);
  graph = Film();
  ASSERT_TRUE(Becomes([&] { return graph->Tracks().size() == 6; }));
  EXPECT_EQ(Shown(*graph), "");
  EXPECT_TRUE(graph->Tracks()[1].selected);
}

TEST_F(SubtitlesWorld, NothingIsLookedForBesideARemoteMedium) {
  HttpServer server;
  const auto graph = Graph();
  const QByteArray film = Bytes(Path("film25.mkv"));
  server.Serve("/film.srt", {.body = kText});
  ASSERT_TRUE(graph->RenderFile(server.Serve("/film.mkv", {.body = film, .ranges = true})));
  Pass(200);
  EXPECT_EQ(server.Requests("/film.srt"), 0);
}

}  // namespace
}  // namespace kv
