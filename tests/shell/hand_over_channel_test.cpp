// The request on the wire, the place of the socket, and a sender that is never held up.
#include "shell/hand_over_channel.h"

#include "support/temp_folder.h"

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <future>
#include <gtest/gtest.h>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>

namespace kv {
namespace {

TEST(HandOverChannel, ReadsARequestOnlyWhenItIsWhole) {
  using S = HandOverState;
  const std::string request = EncodeHandOver("\"/m/\xFF.mp3\"");
  for (std::size_t size = 0; size < request.size(); ++size) {
    EXPECT_EQ(DecodeHandOver(request.substr(0, size)).state, S::kIncomplete) << size;
  }
  EXPECT_EQ(DecodeHandOver(request).state, S::kComplete);
  EXPECT_EQ(DecodeHandOver(request).text, "\"/m/\xFF.mp3\"");

  using namespace std::string_literals;
  const std::string longest(kMaxHandOverText, 'x');
  const struct {
    std::string bytes;
    HandOverState state;
  } rows[] = {
      {"\x00\x00\x00\x00"s, S::kMalformed},  // empty
      {request + "x", S::kMalformed},        // more than was told
      {"\x03\x00\x00\x00"
       "a\0"s,
       S::kMalformed},  // a NUL, told before the end
      {EncodeHandOver(longest), S::kComplete},
      {"\x01\x00\x01\x00"s, S::kMalformed},  // one more than the longest
      {"\xFF\xFF\xFF\xFF"s, S::kMalformed},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(DecodeHandOver(row.bytes).state, row.state) << row.bytes.size();
  }
}

class SocketTest : public testing::Test {
 public:
  SocketTest() {
    setenv("XDG_RUNTIME_DIR", temp.Path("").c_str(), 1);
    setenv("TMPDIR", temp.MakeFolder("tmp").c_str(), 1);
  }
  ~SocketTest() override {
    if (listener >= 0) close(listener);
    unsetenv("XDG_RUNTIME_DIR");
    unsetenv("TMPDIR");
  }
  SocketTest(const SocketTest&) = delete;
  SocketTest& operator=(const SocketTest&) = delete;

 protected:
  static sockaddr_un Address(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    return address;
  }

  void Listen(int backlog) {
    listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_un address = Address(path);
    ASSERT_EQ(bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    ASSERT_EQ(listen(listener, backlog), 0);
  }

  // Takes the next connection and answers its request.
  void Serve(const std::string& answer) {
    const int client = accept(listener, nullptr, nullptr);
    std::string bytes(100, '\0');
    bytes.resize(static_cast<std::size_t>(read(client, bytes.data(), bytes.size())));
    received.push_back(DecodeHandOver(bytes).text);
    EXPECT_EQ(write(client, answer.data(), answer.size()), static_cast<ssize_t>(answer.size()));
    close(client);
  }

  TempFolder temp;
  std::string path = temp.Path("s");
  int listener = -1;
  std::vector<std::string> received;
};

TEST_F(SocketTest, LiesWhereNobodyElseCanEnter) {
  const std::string at_home = HandOverSocketPath("/home/a/");
  EXPECT_TRUE(at_home.starts_with(temp.Path() + "/kestrelview-")) << at_home;
  EXPECT_EQ(HandOverSocketPath("/home/a/"), at_home);
  EXPECT_NE(HandOverSocketPath("/home/b/"), at_home);

  const std::string fallback = temp.Path("tmp/kestrelview-" + std::to_string(geteuid()));
  for (const std::string& refused :
       {temp.MakeFolder("open"), std::string("relative"), temp.Path("missing"), std::string()}) {
    setenv("XDG_RUNTIME_DIR", refused.c_str(), 1);
    chmod(temp.Path("open").c_str(), 0755);
    EXPECT_TRUE(HandOverSocketPath("/home/a/").starts_with(fallback + "/")) << refused;
  }
  struct stat info {};
  ASSERT_EQ(stat(fallback.c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 0777U, 0700U);
  chmod(fallback.c_str(), 0777);  // as if another had made it
  EXPECT_EQ(HandOverSocketPath("/home/a/"), "");
}

TEST_F(SocketTest, DeliversATextAndReadsTheAnswer) {
  const struct {
    const char* answer;
    HandOverAnswer expected;
  } rows[] = {{"A", HandOverAnswer::kAccepted},
              {"R", HandOverAnswer::kRefused},
              {"?", HandOverAnswer::kNobody},
              {"", HandOverAnswer::kNobody}};
  Listen(5);
  for (const auto& row : rows) {
    auto answer = std::async(std::launch::async, [&] { return SendHandOver(path, "x", 5000); });
    Serve(row.answer);
    EXPECT_EQ(answer.get(), row.expected) << row.answer;
  }
  EXPECT_EQ(received, std::vector<std::string>(4, "x"));
}

TEST_F(SocketTest, FindsNobodyInBoundedTime) {
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(SendHandOver("", "x", 5000), HandOverAnswer::kNobody);
  EXPECT_EQ(SendHandOver(path, "x", 5000), HandOverAnswer::kNobody);
  EXPECT_EQ(SendHandOver(std::string(200, 'x'), "x", 5000), HandOverAnswer::kNobody);
  Listen(5);  // but nobody answers
  EXPECT_EQ(SendHandOver(path, "x", 20), HandOverAnswer::kNobody);
  EXPECT_EQ(SendHandOver(path, std::string(4'000'000, 'x'), 20), HandOverAnswer::kNobody);
  close(listener);
  listener = -1;  // the socket of a crashed player
  EXPECT_EQ(SendHandOver(path, "x", 5000), HandOverAnswer::kNobody);
  // Each start asks first: where nobody is there, it must not wait.
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(4));
}

TEST_F(SocketTest, WaitsForAPlaceInAFullQueue) {
  Listen(0);
  const sockaddr_un address = Address(path);
  const int first = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  ASSERT_EQ(connect(first, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
  EXPECT_EQ(SendHandOver(path, "x", 30), HandOverAnswer::kNobody);
  auto answer = std::async(std::launch::async, [&] { return SendHandOver(path, "x", 5000); });
  EXPECT_EQ(answer.wait_for(std::chrono::milliseconds(30)), std::future_status::timeout);
  ASSERT_EQ(write(first, "early", 5), 5);
  Serve("");
  Serve("A");
  EXPECT_EQ(answer.get(), HandOverAnswer::kAccepted);
  close(first);
}

TEST(PeerIsSameUser, IsFalseForWhatIsNoSocket) {
  int pair[2];
  ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, pair), 0);
  EXPECT_TRUE(PeerIsSameUser(pair[0]));
  close(pair[0]);
  close(pair[1]);
  EXPECT_FALSE(PeerIsSameUser(-1));
}

}  // namespace
}  // namespace kv
