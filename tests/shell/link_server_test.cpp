// The door over a real socket in a scratch runtime folder.
#include "shell/link_server.h"

#include "shell/hand_over_channel.h"
#include "support/temp_folder.h"
#include "support/unix_socket.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>

#include <filesystem>
#include <functional>
#include <future>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kv {
namespace {

constexpr int kPatience = 8000;

// Handles events until something is so.
bool Becomes(const std::function<bool()>& is_so) {
  for (QDeadlineTimer deadline(kPatience); !deadline.hasExpired();) {
    if (is_so()) return true;
    QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  return is_so();
}

// A client that does what it likes.
class Client {
 public:
  explicit Client(const std::string& path) : socket_(path), connected_(socket_.Connect()) {}

  bool Connected() const { return connected_; }
  void Send(std::string_view bytes) {
    send(socket_.Handle(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
  }
  // What has been answered, and "." for the end.
  const std::string& Answer() {
    char byte = 0;
    const ssize_t got = recv(socket_.Handle(), &byte, 1, 0);
    const bool reset = got < 0 && errno != EAGAIN;
    if (got == 1) answer_ += byte;
    if ((got == 0 || reset) && !answer_.ends_with('.')) answer_ += '.';
    return answer_;
  }
  bool Ended() { return Answer().ends_with('.'); }

 private:
  UnixSocket socket_;
  bool connected_;
  std::string answer_;
};

class LinkServerTest : public testing::Test {
 protected:
  LinkServerTest() {
    qputenv("XDG_RUNTIME_DIR", temp.Path().c_str());
    path = HandOverSocketPath("/home/");
  }

  bool Listen() { return server.Listen(path, error); }

  HandOverAnswer Send(const std::string& text) {
    auto answer =
        std::async(std::launch::async, [&] { return SendHandOver(path, text, kPatience); });
    EXPECT_TRUE(Becomes(
        [&] { return answer.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }));
    return answer.get();
  }

  TempFolder temp;
  std::string path;
  std::vector<std::string> executed;
  bool accepts = true;
  int error = -1;
  LinkServer server{[this](const std::string& text) {
    executed.push_back(text);
    return accepts;
  }};
};

TEST_F(LinkServerTest, AnswersWhetherTheTextIsAccepted) {
  ASSERT_TRUE(Listen());
  EXPECT_EQ(error, 0);
  EXPECT_EQ(Send("\"/m/\xFF name.mp3\""), HandOverAnswer::kAccepted);
  accepts = false;
  EXPECT_EQ(Send("\"/m/b.mp3\""), HandOverAnswer::kRefused);
  EXPECT_EQ(Send(std::string(kMaxHandOverText, 'x')), HandOverAnswer::kRefused);
  ASSERT_EQ(executed.size(), 3U);
  EXPECT_EQ(executed[0], "\"/m/\xFF name.mp3\"");
  EXPECT_EQ(executed[2].size(), kMaxHandOverText);
  using std::filesystem::perms;
  EXPECT_EQ(std::filesystem::status(path).permissions() & (perms::group_all | perms::others_all),
            perms::none);
}

TEST_F(LinkServerTest, TakesATextInPieces) {
  ASSERT_TRUE(Listen());
  Client client(path);
  for (const char byte : EncodeHandOver("/m/a.mp3")) {
    EXPECT_TRUE(executed.empty());
    client.Send(std::string(1, byte));
    for (int i = 0; i < 3; ++i) QCoreApplication::processEvents();
  }
  EXPECT_TRUE(Becomes([&] { return client.Ended(); }));
  EXPECT_EQ(client.Answer(), "A.");
  EXPECT_EQ(executed, std::vector<std::string>{"/m/a.mp3"});
}

TEST_F(LinkServerTest, DropsWhatIsNoRequestWithoutAWord) {
  using namespace std::string_literals;
  ASSERT_TRUE(Listen());
  QElapsedTimer watch;
  watch.start();
  for (const std::string& bytes :
       {"\x00\x00\x00\x00"s, "\x01\x00\x01\x00"s, "\xFF\xFF\xFF\xFF"s + std::string(100'000, 'x'),
        EncodeHandOver("a\0b"s), EncodeHandOver("/m/a.mp3") + "x"}) {
    Client client(path);
    client.Send(bytes);
    EXPECT_TRUE(Becomes([&] { return client.Ended(); }));
    EXPECT_EQ(client.Answer(), ".") << bytes.size();
  }
  {
    Client gone(path);
    gone.Send("\x10");
    // A start that has given up plays its medium itself.
    Client given_up(path);
    given_up.Send(EncodeHandOver("/m/late.mp3"));
  }
  EXPECT_LT(watch.elapsed(), 2000);  // dropped for what they are and not for their silence
  EXPECT_EQ(Send("x"), HandOverAnswer::kAccepted);
  EXPECT_EQ(executed, std::vector<std::string>{"x"});
}

TEST_F(LinkServerTest, IsNotHeldUpByTheSilentAndTheSlow) {
  ASSERT_TRUE(Listen());
  Client silent(path);
  Client slow(path);
  QElapsedTimer watch;
  watch.start();
  EXPECT_EQ(Send("x"), HandOverAnswer::kAccepted);
  EXPECT_LT(watch.elapsed(), 1000);
  slow.Send(std::string("\x00\x10\x00\x00", 4));
  int sent = 0;
  EXPECT_TRUE(Becomes([&] {
    // Comes along all the time, and yet has only its two seconds.
    for (; sent < watch.elapsed() / 10; ++sent) slow.Send("y");
    return silent.Ended() && slow.Ended();
  }));
  EXPECT_GT(watch.elapsed(), 1500);
  EXPECT_EQ(silent.Answer(), ".");
  EXPECT_EQ(slow.Answer(), ".");
  EXPECT_EQ(executed.size(), 1U);
}

TEST_F(LinkServerTest, ReplacesTheSocketOfACrashAndNoOther) {
  UnixSocket(path).Bind();
  ASSERT_TRUE(Listen());
  EXPECT_EQ(error, 0);

  {
    LinkServer other([](const std::string& /*text*/) { return true; });
    EXPECT_FALSE(other.Listen(path, error));
    EXPECT_EQ(error, 0);
  }
  EXPECT_EQ(Send("x"), HandOverAnswer::kAccepted);
  EXPECT_EQ(executed, std::vector<std::string>{"x"});
}

TEST_F(LinkServerTest, RunsWithoutTheDoorWhereThereIsNoPlace) {
  EXPECT_FALSE(server.Listen("", error));
  EXPECT_EQ(error, 0);
  EXPECT_FALSE(server.Listen(temp.MakeFolder(std::string(120, 'x')) + "/s", error));
  EXPECT_NE(error, 0);  // a name too long for a socket, which is worth telling
}

TEST_F(LinkServerTest, ServesMoreClientsThanItsQueueHolds) {
  ASSERT_TRUE(Listen());
  std::vector<std::unique_ptr<Client>> crowd;
  do {
    crowd.push_back(std::make_unique<Client>(path));
  } while (crowd.back()->Connected() && crowd.size() < 1000);
  crowd.pop_back();
  ASSERT_FALSE(crowd.empty());
  for (const auto& client : crowd) client->Send(EncodeHandOver("/m/a.mp3"));
  EXPECT_EQ(Send("last"), HandOverAnswer::kAccepted);
  for (const auto& client : crowd) {
    EXPECT_TRUE(Becomes([&] { return client->Ended(); }));
    EXPECT_EQ(client->Answer(), "A.");
  }
  EXPECT_EQ(executed.size(), crowd.size() + 1);
}

}  // namespace
}  // namespace kv
