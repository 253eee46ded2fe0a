// Fetching over real connections from a server inside the test.
#include "system/download_qt.h"

#include "engine/http_server_qt.h"
#include "support/self_signed_qt.h"
#include "support/temp_folder.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <chrono>
#include <cstdint>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <utility>

namespace kv {
namespace {

class DownloadQtTest : public testing::Test {
 protected:
  // What a fetch leaves must be the whole new file or the old one, and nothing beside it.
  bool Fetch(const std::string& url) {
    temp.Write("local", "old");
    const bool fetched = download.Get_File(url, temp.Path("local"));
    EXPECT_EQ(temp.Entries(), 1);
    if (!fetched) {
      EXPECT_EQ(temp.Read("local"), "old");
    }
    return fetched;
  }

  // Streams to the end of it; answers the bytes that were told of, -1 when it failed.
  static std::int64_t Stream(DownloadQt& network, const std::string& url,
                             const std::string& target) {
    QEventLoop loop;
    bool good = false;
    std::int64_t received = 0;
    std::int64_t total = 0;
    const auto progress = [&](std::int64_t got, std::int64_t told) {
      EXPECT_GT(got, received);
      received = got;
      total = told;
    };
    const auto done = [&](bool complete) {
      good = complete;
      loop.quit();
    };
    const auto fetch = network.Download_To(url, target, {.progress = progress, .done = done});
    loop.exec();
    if (good) {
      EXPECT_EQ(received, total);
    }
    return good ? received : -1;
  }

  unsigned Mode(const char* name) const {
    struct stat status {};
    EXPECT_EQ(stat(temp.Path(name).c_str(), &status), 0);
    return status.st_mode & 07777U;
  }

  // Runs `action` inside the pump of a fetch.
  static void Later(std::function<void()> action) {
    QTimer::singleShot(std::chrono::milliseconds(50), std::move(action));
  }

  TempFolder temp;
  HttpServer server;
  DownloadQt download{{.bytes = 100000, .idle_milliseconds = 300}};
};

TEST_F(DownloadQtTest, TakesTheWholeAnswerOrNone) {
  const QByteArray full(100000, 'b');
  const std::string end = server.Serve("/end", {.body = "list"});
  const QByteArray end_url = QByteArray::fromStdString(end);
  const struct {
    const char* what;
    HttpAnswer answer;
    QByteArray content;  // null: fails
  } rows[] = {
      {"empty", {.body = ""}, ""},
      {"in many pieces, as long as may be", {.body = full, .bytes_a_tick = 9000}, full},
      {"too long by one", {.body = full + "b"}, {}},
      {"without end", {.body = full, .endless = true}, {}},
      {"cut off", {.body = full, .cut_after = 5000}, {}},
      {"cut off before the first byte", {.body = "list", .cut_after = 0}, {}},
      {"not there", {.body = "an error page", .status = 404}, {}},
      {"redirected", {.status = 302, .location = end_url}, "list"},
      {"redirected nearby", {.status = 307, .location = "end"}, "list"},
      {"redirected into a file", {.status = 302, .location = "file:///etc/passwd"}, {}},
      {"redirected in a circle", {.status = 302, .location = "/circle"}, {}},
      {"never answers", {.mute = true}, {}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    const std::string url = server.Serve("/circle", row.answer);
    QElapsedTimer clock;
    clock.start();
    ASSERT_EQ(Fetch(url), !row.content.isNull());
    EXPECT_LT(clock.elapsed(), 5000);
    if (row.content.isNull()) continue;
    EXPECT_EQ(temp.Read("local"), row.content.toStdString());
    EXPECT_EQ(Mode("local"), 0600U);
  }
}

TEST_F(DownloadQtTest, AsksNobodyForWhatItCannotFetchOrStore) {
  const std::string url = server.Serve("/list", {.body = "list"});
  for (const std::string& address : {std::string("http:///list"), std::string("data:,list"),
                                     "file://" + temp.Write("local", "old"), std::string("\xff")}) {
    EXPECT_FALSE(Fetch(address)) << address;
  }
  EXPECT_FALSE(download.Get_File(url, temp.Path("no/such/folder")));
  EXPECT_FALSE(download.Get_File(url, temp.Path(std::string("a\0b", 3))));
  EXPECT_EQ(server.Requests("/list"), 0);
  EXPECT_FALSE(download.Get_File(url, temp.MakeFolder("folder")));
  EXPECT_EQ(temp.Entries(), 2);
  EXPECT_TRUE(download.Get_File(url, temp.Path("\xff\xfe"))) << "names are bytes";
  EXPECT_EQ(temp.Read("\xff\xfe"), "list");
}

TEST_F(DownloadQtTest, CanBeAbandoned) {
  DownloadQt patient;
  const std::string url = server.Serve("/mute", {.mute = true});
  Later([&] { patient.Abort(); });
  EXPECT_FALSE(patient.Get_File(url, temp.Path("local")));
  EXPECT_TRUE(patient.Get_File(server.Serve("/list", {.body = "list"}), temp.Path("local")));

  auto doomed = std::make_unique<DownloadQt>();
  Later([&] { doomed.reset(); });
  EXPECT_FALSE(doomed->Get_File(url, temp.Path("doomed")));
  EXPECT_EQ(doomed, nullptr);
  EXPECT_EQ(temp.Entries(), 1);
}

TEST_F(DownloadQtTest, AFetchCanBeginInsideAnother) {
  const std::string slow = server.Serve("/slow", {.body = "slow list", .bytes_a_tick = 1});
  const std::string slower = server.Serve("/slower", {.body = "a slower list", .bytes_a_tick = 1});
  for (const auto& [outer, inner] : {std::pair(slower, slow), std::pair(slow, slower)}) {
    bool got_inner = false;
    Later([&, url = inner] { got_inner = download.Get_File(url, temp.Path("inner")); });
    EXPECT_TRUE(download.Get_File(outer, temp.Path("outer")));
    EXPECT_TRUE(got_inner);
    EXPECT_EQ(temp.Read("inner"), inner == slow ? "slow list" : "a slower list");
    EXPECT_EQ(temp.Read("outer"), inner == slow ? "a slower list" : "slow list");
  }
}

TEST_F(DownloadQtTest, StreamsWithoutBoundAndAllOrNothing) {
  const QByteArray big(3000000, 'b');
  const struct {
    const char* what;
    HttpAnswer answer;
    std::int64_t bytes;  // -1: fails
  } rows[] = {
      {"longer than a playlist may be", {.body = big}, 3000000},
      {"empty", {.body = ""}, 0},
      {"cut off", {.body = big, .cut_after = 2000000}, -1},
      {"never answers", {.mute = true}, -1},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    const std::string target = temp.Write("local\xFF", "old");
    ASSERT_EQ(chmod(target.c_str(), 0640), 0);
    EXPECT_EQ(Stream(download, server.Serve("/film", row.answer), target), row.bytes);
    EXPECT_EQ(temp.Read("local\xFF"), row.bytes >= 0 ? row.answer.body.toStdString() : "old");
    EXPECT_EQ(temp.Entries(), 1);
    EXPECT_EQ(Mode("local\xFF"), 0640U);
  }
  const std::string url = server.Serve("/film", {.body = big});
  for (const std::string& target : {std::string(), temp.Path("no/folder"), temp.MakeFolder("f")}) {
    EXPECT_EQ(Stream(download, url, target), -1);
  }
  EXPECT_EQ(temp.Entries(), 2);
}

TEST_F(DownloadQtTest, AStreamingFetchEndsWhereverItIs) {
  const std::string url =
      server.Serve("/radio", {.body = QByteArray(100000, 'r'), .endless = true});
  // Destroyed inside its own progress, nobody hears of it again.
  std::unique_ptr<FileFetch> fetch;
  QEventLoop loop;
  const auto progress = [&](std::int64_t got, std::int64_t total) {
    EXPECT_EQ(total, 0);
    if (got < 300000) return;
    fetch.reset();
    loop.quit();
  };
  fetch = download.Download_To(url, temp.Path("local"),
                               {.progress = progress, .done = [](bool /*complete*/) { FAIL(); }});
  loop.exec();
  EXPECT_EQ(temp.Entries(), 0);

  // Its network goes away.
  auto doomed = std::make_unique<DownloadQt>();
  Later([&] { doomed.reset(); });
  EXPECT_EQ(Stream(*doomed, url, temp.Path("local")), -1);
  EXPECT_EQ(temp.Entries(), 0);
}

TEST_F(DownloadQtTest, AServerThatSignedItselfIsNotBelieved) {
  const TempFolder certificate;
  auto tls = SelfSignedServer(certificate.Path("certificate.pem"));
  if (!tls) GTEST_SKIP() << "no TLS, or no openssl tool here";
  HttpServer secure(std::move(tls), "https");
  const std::string url = secure.Serve("/list", {.body = "list"});
  EXPECT_FALSE(download.Get_File(url, temp.Path("local")));
  EXPECT_EQ(secure.Requests("/list"), 0);
  EXPECT_EQ(temp.Entries(), 0);
}

}  // namespace
}  // namespace kv
