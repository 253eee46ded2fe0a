// The real engine against a world that does not do as it should: servers that are slow, dead or
// lie, sound servers that say nothing, media of every kind.

#include "engine_world_qt.h"
#include "http_server_qt.h"
#include "support/self_signed_qt.h"
#include "support/unix_socket.h"
#include "system/name_tests.h"

#include <QTimer>

#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

namespace kv {
namespace {

constexpr qint64 kLongestGap = 500;  // milliseconds
constexpr int kEnd = 1;              // what `WaitForCompletion` answers at the end of a medium

// Describes sound that this machine would be sent, for which a player opens ports.
constexpr const char* kBroadcast =
    "v=0\r\no=- 0 0 IN IP4 127.0.0.1\r\ns=x\r\nc=IN IP4 127.0.0.1\r\nt=0 0\r\n"
    "m=audio 5704 RTP/AVP 0\r\na=rtpmap:0 PCMU/8000\r\n";

class MpvWorld : public ::testing::Test {
 protected:
  std::shared_ptr<FilterGraph> Graph() { return world_.Engine().CreateGraph(); }

  static double Position(const FilterGraph& graph) {
    return graph.get_CurrentPosition().value_or(-1.0);
  }

  // Plays from `from` to the end, the event loop turning all the while.
  void ExpectPlaysToItsEnd(FilterGraph& graph, double from) {
    EXPECT_TRUE(graph.put_CurrentPosition(from));
    EXPECT_TRUE(graph.Run());
    EXPECT_TRUE(world_.Becomes([&] { return Position(graph) > from + 0.1; }));
    EXPECT_TRUE(world_.Becomes([&] { return graph.WaitForCompletion(0) == kEnd; }, 15'000));
  }

  EngineWorld world_;
};

class HttpWorld : public MpvWorld {
 protected:
  HttpServer server_;
  const QByteArray film_ = Bytes(EngineWorld::Path("film25.mkv"));
};

TEST_F(HttpWorld, PlaysWithRangesAndWithout) {
  for (const bool ranges : {true, false}) {
    SCOPED_TRACE(ranges);
    const Heartbeat heart;
    const auto graph = Graph();
    ASSERT_TRUE(graph->RenderFile(server_.Serve("/film", {.body = film_, .ranges = ranges})));
    EXPECT_NEAR(graph->get_Duration().value_or(0.0), 3.0, 0.1);
    EXPECT_EQ(graph->GetVideoSize().value_or(VideoSize{}).width, 160);
    ExpectPlaysToItsEnd(*graph, 2.2);
    EXPECT_LT(heart.LongestGap(), kLongestGap);
  }
}

TEST_F(HttpWorld, ASlowServerIsWaitedForWithTheLoopTurning) {
  const Heartbeat heart;
  const auto graph = Graph();
  // 25 kB in 2 s, which is faster than the medium is played.
  const std::string url = server_.Serve("/slow", {.body = film_, .bytes_a_tick = 125});
  ASSERT_TRUE(graph->RenderFile(url));
  ASSERT_TRUE(graph->Run());
  EXPECT_TRUE(world_.Becomes([&] { return graph->WaitForCompletion(0) == kEnd; }, 15'000));
  EXPECT_EQ(Position(*graph), graph->get_Duration());
  EXPECT_LT(heart.LongestGap(), kLongestGap);
}

TEST_F(HttpWorld, CutOffInTheMiddleEndsThere) {
  const Heartbeat heart;
  const auto graph = Graph();
  const std::string url = server_.Serve("/cut", {.body = film_, .cut_after = film_.size() / 2});
  ASSERT_TRUE(graph->RenderFile(url));
  ASSERT_TRUE(graph->Run());
  EXPECT_TRUE(world_.Becomes([&] { return graph->WaitForCompletion(0) == kEnd; }, 20'000));
  EXPECT_LT(heart.LongestGap(), kLongestGap);
  EXPECT_TRUE(Graph()->RenderFile(EngineWorld::Path("tone.wav"))) << "the engine lives on";
}

TEST_F(HttpWorld, CutOffWithRangesGoesOnInAnotherConnection) {
  const auto graph = Graph();
  const std::string url =
      server_.Serve("/cut", {.body = film_, .ranges = true, .cut_after = film_.size() * 2 / 3});
  ASSERT_TRUE(graph->RenderFile(url));
  ExpectPlaysToItsEnd(*graph, 2.2);
  EXPECT_EQ(Position(*graph), graph->get_Duration());
  EXPECT_GT(server_.Requests("/cut"), 1);
}

TEST_F(HttpWorld, AStreamWithoutALengthPlays) {
  const auto graph = Graph();
  const std::string url = server_.Serve("/radio", {.body = Bytes(EngineWorld::Path("tone.mp2")),
                                                   .type = "audio/mpeg",
                                                   .endless = true,
                                                   .bytes_a_tick = 4096});
  ASSERT_TRUE(graph->RenderFile(url));
  ASSERT_TRUE(graph->Run());
  EXPECT_TRUE(world_.Becomes([&] { return Position(*graph) > 0.5; }));
  EXPECT_EQ(graph->WaitForCompletion(0), 0);
}

TEST_F(HttpWorld, WhatIsNoMediumIsRefused) {
  const QByteArray html = "<!DOCTYPE html><html><body><video src=\"film.mkv\"></video></html>";
  const struct {
    const char* name;
    HttpAnswer answer;
  } rows[] = {
      {"/missing", {.body = html, .status = 404, .type = "text/html"}},
      {"/broken", {.status = 500}},
      {"/page", {.body = html, .type = "text/html"}},
      {"/lie", {.body = html, .type = "video/mp4"}},
      {"/nothing", {.type = "video/mp4"}},
      {"/round", {.status = 302, .location = "/round"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const Heartbeat heart;
    const auto graph = Graph();
    EXPECT_FALSE(graph->RenderFile(server_.Serve(row.name, row.answer)));
    EXPECT_FALSE(graph->Run());
    EXPECT_GE(server_.Requests(row.name), 1);
    EXPECT_LT(heart.LongestGap(), kLongestGap);
  }
}

// Whoever runs a server must not learn or play what lies on the listener's disk.
TEST_F(HttpWorld, NoAnswerReachesALocalFile) {
  const std::string path = world_.Folder().Write("film.mkv", film_.toStdString());
  const QByteArray local = QByteArray::fromStdString(path);
  const QByteArray hls = "#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:3\n#EXTINF:3.0,\n";
  const QByteArray hls_end = "\n#EXT-X-ENDLIST\n";
  const struct {
    const char* name;
    HttpAnswer answer;
  } rows[] = {
      {"/redirect", {.status = 302, .location = "file://" + local}},
      {"/list.m3u", {.body = "#EXTM3U\nfile://" + local + "\n", .type = "audio/x-mpegurl"}},
      {"/bare.m3u", {.body = "#EXTM3U\n" + local + "\n", .type = "audio/x-mpegurl"}},
      {"/list.pls", {.body = "[playlist]\nFile1=" + local + "\n", .type = "audio/x-scpls"}},
      {"/hls.m3u8",
       {.body = hls + "file://" + local + hls_end, .type = "application/vnd.apple.mpegurl"}},
      {"/hls_bare.m3u8", {.body = hls + local + hls_end, .type = "application/vnd.apple.mpegurl"}},
      {"/hls_subfile.m3u8",
       {.body = hls + "subfile,,start,0,end,0,,:" + local + hls_end,
        .type = "application/vnd.apple.mpegurl"}},
      {"/hls_concat.m3u8",
       {.body = hls + "concat:file://" + local + hls_end, .type = "application/vnd.apple.mpegurl"}},
      {"/script.ffconcat", {.body = "ffconcat version 1.0\nfile 'file://" + local + "'\n"}},
      {"/edl", {.body = "# mpv EDL v0\n" + local + "\n"}},
      {"/ordered.sdp", {.body = "v=0\ns=x\nc=IN IP4 127.0.0.1\na=control:file://" + local}},
      {"/broadcast.mkv", {.body = kBroadcast}},
  };
  OpenWatch watch(path);
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    QElapsedTimer timer;
    timer.start();
    EXPECT_FALSE(Graph()->RenderFile(server_.Serve(row.name, row.answer)));
    ASSERT_LT(timer.elapsed(), 5000);
    EXPECT_GE(server_.Requests(row.name), 1);
    world_.Pass(30);
    EXPECT_FALSE(watch.Opened());
  }
  EXPECT_TRUE(Graph()->RenderFile(path));
  EXPECT_TRUE(watch.Opened()) << "the watch sees an open";
}

TEST_F(HttpWorld, NoLocalFileReachesAnother) {
  OpenWatch watch(world_.Folder().Write("film.mkv", film_.toStdString()));
  const struct {
    const char* name;
    std::string content;
  } rows[] = {
      {"broadcast.mkv", kBroadcast},
      {"script.mkv", "ffconcat version 1.0\nfile film.mkv\n"},
      {"edl.mkv", "# mpv EDL v0\nfilm.mkv\n"},
      {"list.mkv", "#EXTM3U\nfilm.mkv\n"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    QElapsedTimer timer;
    timer.start();
    EXPECT_FALSE(Graph()->RenderFile(world_.Folder().Write(row.name, row.content)));
    EXPECT_LT(timer.elapsed(), 5000) << "who waits for a broadcast listens";
    world_.Pass(30);
    EXPECT_FALSE(watch.Opened());
  }
}

TEST_F(HttpWorld, ARedirectionToAnotherAddressIsFollowed) {
  const std::string film = server_.Serve("/film", {.body = film_, .ranges = true});
  EXPECT_TRUE(Graph()->RenderFile(
      server_.Serve("/moved", {.status = 302, .location = QByteArray::fromStdString(film)})));
}

TEST_F(HttpWorld, StopAbandonsAServerThatNeverAnswers) {
  const Heartbeat heart;
  const auto graph = Graph();
  QElapsedTimer since_stop;
  QTimer::singleShot(300, [&] {
    graph->Stop();
    since_stop.start();
  });
  EXPECT_FALSE(graph->RenderFile(server_.Serve("/mute", {.mute = true})));
  ASSERT_TRUE(since_stop.isValid()) << "given up before it was stopped";
  EXPECT_LT(since_stop.elapsed(), 1000);
  EXPECT_FALSE(graph->Run());
  EXPECT_LT(heart.LongestGap(), kLongestGap);
  EXPECT_TRUE(Graph()->RenderFile(EngineWorld::Path("film25.mkv")));
}

TEST_F(HttpWorld, AnotherOpenInsideThePumpWins) {
  const Heartbeat heart;
  const auto waiting = Graph();
  const auto winner = Graph();
  qint64 took = -1;
  QTimer::singleShot(300, [&] {
    QElapsedTimer timer;
    timer.start();
    EXPECT_TRUE(winner->RenderFile(EngineWorld::Path("film25.mkv")));
    took = timer.elapsed();
  });
  EXPECT_FALSE(waiting->RenderFile(server_.Serve("/mute", {.mute = true})));
  EXPECT_GE(took, 0);
  EXPECT_LT(took, 1000);
  EXPECT_FALSE(waiting->Run());
  EXPECT_EQ(winner->GetVideoSize().value_or(VideoSize{}).width, 160);
  ExpectPlaysToItsEnd(*winner, 2.5);
  EXPECT_LT(heart.LongestGap(), kLongestGap);
}

TEST_F(HttpWorld, NobodyListening) {
  std::string url;
  { url = HttpServer().Serve("/gone", {}); }
  EXPECT_FALSE(Graph()->RenderFile(url));
}

// Neither does a part of a stream come from it. Named in SSL_CERT_FILE, it is believed.
TEST_F(HttpWorld, AServerThatSignedItselfIsNotBelieved) {
  const std::string certificate = world_.Folder().Path("certificate.pem");
  auto tls = SelfSignedServer(certificate);
  if (!tls) GTEST_SKIP() << "no TLS, or no openssl tool here";
  HttpServer server(std::move(tls), "https");
  const std::string film = server.Serve("/film", {.body = film_, .ranges = true});
  const QByteArray part = QByteArray::fromStdString(
      server.Serve("/part.ts", {.body = Bytes(EngineWorld::Path("film.ts"))}));
  const std::string list = server_.Serve(
      "/list.m3u8", {.body = "#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:3\n#EXTINF:3.0,\n" +
                             part + "\n#EXT-X-ENDLIST\n",
                     .type = "application/vnd.apple.mpegurl"});
  for (const std::string& url : {film, list}) {
    const auto graph = Graph();
    EXPECT_FALSE(graph->RenderFile(url)) << url;
    EXPECT_TRUE(graph->CertificateRefused()) << url;
  }
  const auto missing = Graph();
  EXPECT_FALSE(missing->RenderFile(server_.Serve("/missing", {.status = 404})));
  EXPECT_FALSE(missing->CertificateRefused());

  qputenv("SSL_CERT_FILE", certificate.c_str());
  {
    EngineWorld believing;
    for (const std::string& url : {film, list}) {
      EXPECT_TRUE(believing.Engine().CreateGraph()->RenderFile(url)) << url;
    }
  }
  qunsetenv("SSL_CERT_FILE");
}

// A sound server that takes every connection and says nothing.
struct MuteSoundServer {
  MuteSoundServer() { socket.Listen(); }
  ~MuteSoundServer() { unlink(EngineWorld::SoundServer().c_str()); }
  MuteSoundServer(const MuteSoundServer&) = delete;
  MuteSoundServer& operator=(const MuteSoundServer&) = delete;

  UnixSocket socket{EngineWorld::SoundServer()};
};

class SoundWorld : public ::testing::TestWithParam<bool> {};

TEST_P(SoundWorld, PlaysSilentlyToTheEndWithTheLoopTurning) {
  const auto mute = GetParam() ? std::make_unique<MuteSoundServer>() : nullptr;
  EngineWorld world;
  const Heartbeat heart;
  for (const char* name : {"tone.wav", "film25.mkv"}) {
    SCOPED_TRACE(name);
    const auto graph = world.Engine().CreateGraph();
    QElapsedTimer timer;
    timer.start();
    ASSERT_TRUE(graph->RenderFile(EngineWorld::Path(name)));
    EXPECT_LT(timer.elapsed(), 2000);
    ASSERT_TRUE(graph->put_CurrentPosition(1.4));
    ASSERT_TRUE(graph->Run());
    EXPECT_TRUE(graph->put_Volume(-600));
    EXPECT_TRUE(graph->put_Balance(600));
    EXPECT_TRUE(world.Becomes([&] { return graph->WaitForCompletion(0) == kEnd; }));
    EXPECT_EQ(graph->get_CurrentPosition(), graph->get_Duration());
  }
  EXPECT_LT(heart.LongestGap(), kLongestGap);
}

INSTANTIATE_TEST_SUITE_P(Servers, SoundWorld, ::testing::Bool(), [](const auto& test) {
  return std::string(test.param ? "mute" : "none");
});

// What the player's file dialog offers, the engine plays.
TEST_F(MpvWorld, EverySupportedKindRendersAndEveryBadOneIsRefused) {
  std::string supported;
  std::ifstream types(std::string(KV_DATA_FOLDER) + "/filesupport.dat");
  std::getline(types, supported);
  ASSERT_FALSE(supported.empty());
  std::ifstream list(EngineWorld::Path("list.tsv"));
  int media = 0;
  for (std::string line; std::getline(list, line); ++media) {
    const std::size_t tab = line.find('\t');
    ASSERT_NE(tab, std::string::npos) << line;
    const std::string path = line.substr(0, tab);
    const std::string kind = line.substr(tab + 1);
    SCOPED_TRACE(path);
    const auto graph = Graph();
    EXPECT_EQ(graph->RenderFile(path), kind != "bad");
    EXPECT_EQ(graph->GetVideoSize().has_value(), kind == "video");
    if (kind == "bad") continue;
    EXPECT_TRUE(IsPlayableName(path, supported));
    EXPECT_GT(graph->get_Duration().value_or(0.0), 0.2);
  }
  EXPECT_GT(media, 30);
}

}  // namespace
}  // namespace kv
