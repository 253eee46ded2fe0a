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

using std::chrono::milliseconds;

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

  // Runs `action` inside the pump of a fetch.
  static void Later(std::function<void()> action) {
    QTimer::singleShot(milliseconds(50), std::move(action));
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
      {"as long as may be", {.body = full}, full},
      {"in many pieces", {.body = full, .bytes_a_tick = 9000}, full},
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
    EXPECT_EQ(Fetch(url), !row.content.isNull());
    EXPECT_LT(clock.elapsed(), 5000);
    if (!row.content.isNull()) {
      EXPECT_EQ(temp.Read("local"), row.content.toStdString());
      struct stat status {};
      ASSERT_EQ(stat(temp.Path("local").c_str(), &status), 0);
      EXPECT_EQ(status.st_mode & 07777U, 0600U);
    }
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
  // Names are bytes.
  EXPECT_TRUE(download.Get_File(url, temp.Path("\xff\xfe")));
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
  const std::string slower =
      server.Serve("/slower", {.body = "a much slower list", .bytes_a_tick = 1});
  for (const bool outer_is_slower : {true, false}) {
    bool inner = false;
    Later([&] { inner = download.Get_File(outer_is_slower ? slow : slower, temp.Path("inner")); });
    EXPECT_TRUE(download.Get_File(outer_is_slower ? slower : slow, temp.Path("outer")));
    EXPECT_TRUE(inner);
    EXPECT_EQ(temp.Read("inner"), outer_is_slower ? "slow list" : "a much slower list");
    EXPECT_EQ(temp.Read("outer"), outer_is_slower ? "a much slower list" : "slow list");
  }
}

// Runs the loop until a streaming fetch is done; false when it failed.
bool WaitFor(const std::function<std::unique_ptr<FileFetch>(FileFetch::Events)>& begin,
             std::int64_t& received, std::int64_t& total) {
  QEventLoop loop;
  bool good = false;
  received = total = 0;
  const std::unique_ptr<FileFetch> fetch = begin({.progress =
                                                      [&](std::int64_t got, std::int64_t told) {
                                                        EXPECT_GT(got, received);
                                                        received = got;
                                                        total = told;
                                                      },
                                                  .done =
                                                      [&](bool complete) {
                                                        good = complete;
                                                        loop.quit();
                                                      }});
  loop.exec();
  return good;
}

TEST_F(DownloadQtTest, StreamsWithoutBoundAndAllOrNothing) {
  const QByteArray big(3000000, 'b');
  const struct {
    const char* what;
    HttpAnswer answer;
    bool good;
  } rows[] = {
      {"longer than a playlist may be", {.body = big}, true},
      {"empty", {.body = ""}, true},
      {"cut off", {.body = big, .cut_after = 2000000}, false},
      {"never answers", {.mute = true}, false},
  };
  std::int64_t received = 0;
  std::int64_t total = 0;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    const std::string url = server.Serve("/film", row.answer);
    const std::string target = temp.Write("local\xFF", "old");
    ASSERT_EQ(chmod(target.c_str(), 0640), 0);
    const bool good = WaitFor(
        [&](FileFetch::Events events) {
          return download.Download_To(url, target, std::move(events));
        },
        received, total);
    EXPECT_EQ(good, row.good);
    EXPECT_EQ(temp.Read("local\xFF"), row.good ? row.answer.body.toStdString() : "old");
    EXPECT_EQ(temp.Entries(), 1);
    struct stat status {};
    ASSERT_EQ(stat(target.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0640U);
    if (row.good) {
      EXPECT_EQ(received, row.answer.body.size());
      EXPECT_EQ(total, row.answer.body.size());
    }
  }
  const std::string url = server.Serve("/film", {.body = big});
  for (const std::string& target : {std::string(), temp.Path("no/folder"), temp.MakeFolder("f")}) {
    EXPECT_FALSE(WaitFor(
        [&](FileFetch::Events events) {
          return download.Download_To(url, target, std::move(events));
        },
        received, total));
  }
  EXPECT_EQ(temp.Entries(), 2);
}

TEST_F(DownloadQtTest, AStreamingFetchEndsWhereverItIs) {
  const std::string url =
      server.Serve("/radio", {.body = QByteArray(100000, 'r'), .endless = true});
  // Destroyed inside its own progress, nobody hears of it again.
  std::unique_ptr<FileFetch> fetch;
  QEventLoop loop;
  fetch = download.Download_To(url, temp.Path("local"),
                               {.progress =
                                    [&](std::int64_t got, std::int64_t total) {
                                      EXPECT_EQ(total, 0);
                                      if (got < 300000) return;
                                      fetch.reset();
                                      loop.quit();
                                    },
                                .done = [](bool /*complete*/) { FAIL(); }});
  loop.exec();
  EXPECT_EQ(temp.Entries(), 0);

  // Its network goes away.
  auto doomed = std::make_unique<DownloadQt>();
  Later([&] { doomed.reset(); });
  std::int64_t received = 0;
  std::int64_t total = 0;
  EXPECT_FALSE(WaitFor(
      [&](FileFetch::Events events) {
        return doomed->Download_To(url, temp.Path("local"), std::move(events));
      },
      received, total));
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
