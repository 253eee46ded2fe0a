// The place of the socket, and a sender that is never held up.
#include "shell/hand_over_channel.h"

#include "support/temp_folder.h"
#include "support/unix_socket.h"

#include <chrono>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace kv {
namespace {

class SocketTest : public testing::Test {
 public:
  SocketTest() {
    setenv("XDG_RUNTIME_DIR", temp.Path("").c_str(), 1);
    setenv("TMPDIR", temp.MakeFolder("tmp").c_str(), 1);
  }
  ~SocketTest() override {
    unsetenv("XDG_RUNTIME_DIR");
    unsetenv("TMPDIR");
  }
  SocketTest(const SocketTest&) = delete;
  SocketTest& operator=(const SocketTest&) = delete;

 protected:
  TempFolder temp;
  std::string path = temp.Path("s");
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

TEST_F(SocketTest, FindsNobodyInBoundedTime) {
  const auto begin = std::chrono::steady_clock::now();
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
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(4));
}

}  // namespace
}  // namespace kv
