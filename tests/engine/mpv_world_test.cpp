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
#include <optional>
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

class MpvWorld : public ::testing::Test, protected EngineWorld {
 protected:
  // Plays from `from` to the end, the event loop turning all the while.
  void ExpectPlaysToItsEnd(FilterGraph& graph, double from) {
    EXPECT_TRUE(graph.put_CurrentPosition(from));
    EXPECT_TRUE(graph.Run());
    EXPECT_TRUE(Becomes([&] { return Position(graph) > from + 0.1; }));
    EXPECT_TRUE(Becomes([&] { return graph.WaitForCompletion(0) == kEnd; }, 20'000));
  }

  // Refused within five seconds: who waits for a broadcast listens.
  void ExpectRefused(const std::string& target) {
    QElapsedTimer timer;
    timer.start();
    const auto graph = Graph();
    EXPECT_FALSE(graph->RenderFile(target));
    EXPECT_FALSE(graph->Run());
    ASSERT_LT(timer.elapsed(), 5000);
  }
};

struct Answered {
  const char* path;
  HttpAnswer answer;
};

class HttpWorld : public MpvWorld {
 protected:
  void TearDown() override { EXPECT_LT(heart_.LongestGap(), kLongestGap); }

  HttpServer server_;
  const QByteArray film_ = Bytes(Path("film25.mkv"));
  const QByteArray html_ = "<!DOCTYPE html><html><body><video src=\"film.mkv\"></video></html>";
  const QByteArray hls_ = "#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:3\n#EXTINF:3.0,\n";
  const QByteArray hls_end_ = "\n#EXT-X-ENDLIST\n";
  const Heartbeat heart_;
};

TEST_F(HttpWorld, PlaysToTheEndWhatIsSent) {
  server_.Serve("/film", {.body = film_});
  const struct {
    const char* path;
    double from;  // seconds
    HttpAnswer answer;
    int requests;  // at least
  } rows[] = {
      {"/ranges", 2.2, {.body = film_, .ranges = true}, 1},
      {"/whole", 2.2, {.body = film_}, 1},
      // 25 kB in 2 s, which is faster than the medium is played.
      {"/slow", 0.0, {.body = film_, .bytes_a_tick = 125}, 1},
      {"/moved", 2.2, {.status = 302, .location = "/film"}, 1},
      {"/connection_lost",
       2.2,
       {.body = film_, .ranges = true, .cut_after = film_.size() * 2 / 3},
       2},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    const auto graph = Graph();
    ASSERT_TRUE(graph->RenderFile(server_.Serve(row.path, row.answer)));
    EXPECT_NEAR(graph->get_Duration().value_or(0.0), 3.0, 0.1);
    EXPECT_EQ(graph->GetVideoSize().value_or(VideoSize{}).width, 160);
    ExpectPlaysToItsEnd(*graph, row.from);
    EXPECT_EQ(Position(*graph), graph->get_Duration());
    EXPECT_GE(server_.Requests(row.path), row.requests);
  }
}

TEST_F(HttpWorld, CutOffInTheMiddleEndsThere) {
  const auto graph = Graph();
  ASSERT_TRUE(
      graph->RenderFile(server_.Serve("/cut", {.body = film_, .cut_after = film_.size() / 2})));
  ExpectPlaysToItsEnd(*graph, 0.0);
  Render("tone.wav");  // the engine lives on
}

TEST_F(HttpWorld, AStreamWithoutALengthPlays) {
  const auto graph = Graph();
  ASSERT_TRUE(graph->RenderFile(server_.Serve("/radio", {.body = Bytes(Path("tone.mp2")),
                                                         .type = "audio/mpeg",
                                                         .endless = true,
                                                         .bytes_a_tick = 4096})));
  ASSERT_TRUE(graph->Run());
  EXPECT_TRUE(Becomes([&] { return Position(*graph) > 0.5; }));
  EXPECT_EQ(graph->WaitForCompletion(0), 0);
}

TEST_F(HttpWorld, WhatIsNoMediumIsRefused) {
  const Answered rows[] = {
      {"/missing", {.body = html_, .status = 404, .type = "text/html"}},
      {"/broken", {.status = 500}},
      {"/page", {.body = html_, .type = "text/html"}},
      {"/lie", {.body = html_, .type = "video/mp4"}},
      {"/nothing", {.type = "video/mp4"}},
      {"/round", {.status = 302, .location = "/round"}},
  };
  for (const Answered& row : rows) {
    SCOPED_TRACE(row.path);
    ExpectRefused(server_.Serve(row.path, row.answer));
    EXPECT_GE(server_.Requests(row.path), 1);
  }
  std::string nobody_listening;
  { nobody_listening = HttpServer().Serve("/gone", {}); }
  ExpectRefused(nobody_listening);
}

// Whoever runs a server must not learn or play what lies on the listener's disk.
TEST_F(HttpWorld, NoAnswerReachesALocalFile) {
  const std::string path = Folder().Write("film.mkv", film_.toStdString());
  const QByteArray local = QByteArray::fromStdString(path);
  const QByteArray hls_type = "application/vnd.apple.mpegurl";
  const QByteArray subfile = "subfile,,start,0,end,0,,:";
  const Answered rows[] = {
      {"/redirect", {.status = 302, .location = "file://" + local}},
      {"/list.m3u", {.body = "#EXTM3U\nfile://" + local + "\n", .type = "audio/x-mpegurl"}},
      {"/bare.m3u", {.body = "#EXTM3U\n" + local + "\n", .type = "audio/x-mpegurl"}},
      {"/list.pls", {.body = "[playlist]\nFile1=" + local + "\n", .type = "audio/x-scpls"}},
      {"/url.m3u8", {.body = hls_ + "file://" + local + hls_end_, .type = hls_type}},
      {"/bare.m3u8", {.body = hls_ + local + hls_end_, .type = hls_type}},
      {"/subfile.m3u8", {.body = hls_ + subfile + local + hls_end_, .type = hls_type}},
      {"/concat.m3u8", {.body = hls_ + "concat:file://" + local + hls_end_, .type = hls_type}},
      {"/script.ffconcat", {.body = "ffconcat version 1.0\nfile 'file://" + local + "'\n"}},
      {"/edl", {.body = "# mpv EDL v0\n" + local + "\n"}},
      {"/ordered.sdp", {.body = "v=0\ns=x\nc=IN IP4 127.0.0.1\na=control:file://" + local}},
      {"/broadcast.mkv", {.body = kBroadcast}},
  };
  const OpenWatch watch(path);
  for (const Answered& row : rows) {
    SCOPED_TRACE(row.path);
    ExpectRefused(server_.Serve(row.path, row.answer));
    EXPECT_GE(server_.Requests(row.path), 1);
    Pass(30);
    EXPECT_FALSE(watch.Opened());
  }
  EXPECT_TRUE(Graph()->RenderFile(path));
  EXPECT_TRUE(watch.Opened()) << "the watch sees an open";
}

TEST_F(HttpWorld, NoLocalFileReachesAnother) {
  const OpenWatch watch(Folder().Write("film.mkv", film_.toStdString()));
  for (const char* const content : {kBroadcast, "ffconcat version 1.0\nfile film.mkv\n",
                                    "# mpv EDL v0\nfilm.mkv\n", "#EXTM3U\nfilm.mkv\n"}) {
    SCOPED_TRACE(content);
    ExpectRefused(Folder().Write("other.mkv", content));
    Pass(30);
    EXPECT_FALSE(watch.Opened());
  }
}

TEST_F(HttpWorld, StopAbandonsAServerThatNeverAnswers) {
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
  Render("film25.mkv");
}

TEST_F(HttpWorld, AnotherOpenInsideThePumpWins) {
  const auto waiting = Graph();
  const auto winner = Graph();
  qint64 took = -1;
  QTimer::singleShot(300, [&] {
    QElapsedTimer timer;
    timer.start();
    EXPECT_TRUE(winner->RenderFile(Path("film25.mkv")));
    took = timer.elapsed();
  });
  EXPECT_FALSE(waiting->RenderFile(server_.Serve("/mute", {.mute = true})));
  EXPECT_GE(took, 0);
  EXPECT_LT(took, 1000);
  EXPECT_FALSE(waiting->Run());
  EXPECT_EQ(winner->GetVideoSize().value_or(VideoSize{}).width, 160);
  ExpectPlaysToItsEnd(*winner, 2.5);
}

// Neither does a part of a stream come from it. Named in SSL_CERT_FILE, it is believed.
TEST_F(HttpWorld, AServerThatSignedItselfIsNotBelieved) {
  const std::string certificate = Folder().Path("certificate.pem");
  auto tls = SelfSignedServer(certificate);
  if (!tls) GTEST_SKIP() << "no TLS, or no openssl tool here";
  HttpServer server(std::move(tls), "https");
  const std::string film = server.Serve("/film", {.body = film_, .ranges = true});
  const QByteArray part =
      QByteArray::fromStdString(server.Serve("/part.ts", {.body = Bytes(Path("film.ts"))}));
  const std::string list = server_.Serve(
      "/list.m3u8", {.body = hls_ + part + hls_end_, .type = "application/vnd.apple.mpegurl"});
  for (const std::string& url : {film, list}) {
    const auto graph = Graph();
    EXPECT_FALSE(graph->RenderFile(url)) << url;
    EXPECT_TRUE(graph->CertificateRefused()) << url;
  }
  const auto missing = Graph();
  EXPECT_FALSE(missing->RenderFile(server_.Serve("/missing", {.status = 404})));
  EXPECT_FALSE(missing->CertificateRefused());

  qputenv("SSL_CERT_FILE", certificate.c_str());
  for (const std::string& url : {film, list}) {
    EXPECT_TRUE(EngineWorld().Graph()->RenderFile(url)) << url;
  }
  qunsetenv("SSL_CERT_FILE");
}

// With no sound server, and with one that takes every connection and says nothing.
class SoundWorld : public ::testing::TestWithParam<bool> {
 protected:
  SoundWorld() {
    if (GetParam()) mute_.emplace(EngineWorld::SoundServer()).Listen();
  }
  void TearDown() override { unlink(EngineWorld::SoundServer().c_str()); }

  std::optional<UnixSocket> mute_;
};

TEST_P(SoundWorld, PlaysSilentlyToTheEndWithTheLoopTurning) {
  EngineWorld world;
  const Heartbeat heart;
  for (const char* name : {"tone.wav", "film25.mkv"}) {
    SCOPED_TRACE(name);
    QElapsedTimer timer;
    timer.start();
    const auto graph = world.Render(name);
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
  std::ifstream list(Path("list.tsv"));
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

TEST_F(MpvWorld, OpensWhileTheInterfaceIsBusy) {
  // The core has come to the first picture, or to nothing, before anything it told is looked at.
  QTimer busy;
  busy.callOnTimeout([] { std::this_thread::sleep_for(std::chrono::milliseconds(50)); });
  const std::string half =
      Folder().Write("half.mkv", Bytes(Path("film25.mkv")).left(3000).toStdString());
  const std::string film = Path("film25.mkv");
  for (const std::string& medium : {film, film, half, film}) {
    SCOPED_TRACE(medium);
    busy.start(1);
    const auto graph = Graph();
    EXPECT_TRUE(graph->RenderFile(medium));
    busy.stop();
    EXPECT_EQ(graph->GetVideoSize().has_value(), medium == film);
  }
}

}  // namespace
}  // namespace kv
