// The door over a real socket in a scratch runtime folder, and a sender that is never held up.
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
#include <sys/stat.h>
#include <unistd.h>
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
  // All of it.
  std::string Await() {
    EXPECT_TRUE(Becomes([&] { return Ended(); }));
    return answer_;
  }

 private:
  UnixSocket socket_;
  bool connected_;
  std::string answer_;
};

struct LinkServerTest : testing::Test {
  LinkServerTest() {
    qputenv("XDG_RUNTIME_DIR", temp.Path().c_str());
    qputenv("TMPDIR", temp.MakeFolder("tmp").c_str());
    path = HandOverSocketPath("/home/");
  }
  ~LinkServerTest() override { qunsetenv("TMPDIR"); }

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

TEST_F(LinkServerTest, LiesWhereNobodyElseCanEnter) {
  const std::string at_home = HandOverSocketPath("/home/a/");
  EXPECT_TRUE(at_home.starts_with(temp.Path() + "/kestrelview-")) << at_home;
  EXPECT_EQ(HandOverSocketPath("/home/a/"), at_home);
  EXPECT_NE(HandOverSocketPath("/home/b/"), at_home);

  const std::string fallback = temp.Path("tmp/kestrelview-" + std::to_string(geteuid()));
  for (const std::string& refused :
       {temp.MakeFolder("open"), std::string("relative"), temp.Path("missing"), std::string()}) {
    qputenv("XDG_RUNTIME_DIR", refused.c_str());
    chmod(temp.Path("open").c_str(), 0755);
    EXPECT_TRUE(HandOverSocketPath("/home/a/").starts_with(fallback + "/")) << refused;
  }
  struct stat info {};
  ASSERT_EQ(stat(fallback.c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 0777U, 0700U);
  chmod(fallback.c_str(), 0777);  // as if another had made it
  EXPECT_EQ(HandOverSocketPath("/home/a/"), "");
}

TEST_F(LinkServerTest, FindsNobodyInBoundedTime) {
  QElapsedTimer watch;
  watch.start();
  EXPECT_EQ(SendHandOver("", "x", 5000), HandOverAnswer::kNobody);
  EXPECT_EQ(SendHandOver(path, "x", 5000), HandOverAnswer::kNobody);
  EXPECT_EQ(SendHandOver(std::string(200, 'x'), "x", 5000), HandOverAnswer::kNobody);
  {
    UnixSocket silent(path);
    silent.Listen();
    EXPECT_EQ(SendHandOver(path, "x", 20), HandOverAnswer::kNobody);
    EXPECT_EQ(SendHandOver(path, std::string(4'000'000, 'x'), 20), HandOverAnswer::kNobody);
  }
  // The socket of a crashed player.
  EXPECT_EQ(SendHandOver(path, "x", 5000), HandOverAnswer::kNobody);
  // Each start asks first: where nobody is there, it must not wait.
  EXPECT_LT(watch.elapsed(), 4000);
}

TEST_F(LinkServerTest, AnswersWhetherTheTextIsAccepted) {
  ASSERT_TRUE(Listen());
  EXPECT_EQ(error, 0);
  EXPECT_EQ(Send("\"/m/\xFF name.mp3\""), HandOverAnswer::kAccepted);
  accepts = false;
  EXPECT_EQ(Send("\"/m/b.mp3\""), HandOverAnswer::kRefused);
  EXPECT_EQ(Send(std::string(kMaxHandOverText, 'x')), HandOverAnswer::kRefused);
  EXPECT_EQ(executed, (std::vector<std::string>{"\"/m/\xFF name.mp3\"", "\"/m/b.mp3\"",
                                                std::string(kMaxHandOverText, 'x')}));
  using std::filesystem::perms;
  EXPECT_EQ(std::filesystem::status(path).permissions() & (perms::group_all | perms::others_all),
            perms::none);
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
    EXPECT_EQ(client.Await(), ".") << bytes.size();
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
  Client in_pieces(path);
  for (const char byte : EncodeHandOver("x")) {
    EXPECT_TRUE(executed.empty());
    in_pieces.Send(std::string(1, byte));
    for (int i = 0; i < 3; ++i) QCoreApplication::processEvents();
  }
  EXPECT_EQ(in_pieces.Await(), "A.");
  EXPECT_LT(watch.elapsed(), 1000);
  slow.Send(std::string("\x00\x10\x00\x00", 4));
  int sent = 0;
  EXPECT_TRUE(Becomes([&] {
    // Comes along all the time, and yet has only its two seconds.
    for (; sent < watch.elapsed() / 10; ++sent) slow.Send("y");
    return silent.Ended() && slow.Ended();
  }));
  EXPECT_GT(watch.elapsed(), 1500);
  EXPECT_EQ(silent.Answer() + slow.Answer(), "..");
  EXPECT_EQ(executed, std::vector<std::string>{"x"});
}

TEST_F(LinkServerTest, ReplacesTheSocketOfACrashAndNoOther) {
  EXPECT_FALSE(server.Listen("", error));  // no place: the player runs without the door
  EXPECT_EQ(error, 0);
  EXPECT_FALSE(server.Listen(temp.MakeFolder(std::string(120, 'x')) + "/s", error));
  EXPECT_NE(error, 0);  // a name too long for a socket, which is worth telling
  UnixSocket(path).Bind();
  ASSERT_TRUE(Listen());
  EXPECT_EQ(error, 0);

  EXPECT_FALSE(LinkServer([](const std::string& /*text*/) { return true; }).Listen(path, error));
  EXPECT_EQ(error, 0);
  EXPECT_EQ(Send("x"), HandOverAnswer::kAccepted);
  EXPECT_EQ(executed, std::vector<std::string>{"x"});
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
  for (const auto& client : crowd) EXPECT_EQ(client->Await(), "A.");
  EXPECT_EQ(executed.size(), crowd.size() + 1);
}

}  // namespace
}  // namespace kv
