#include "system/save_file.h"

#include "support/temp_folder.h"

#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kv {
namespace {

unsigned ModeOf(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 ? status.st_mode & 07777U : 0;
}

TEST(SaveFile, ModesAndFolders) {
  const TempFolder folder;
  const std::string file = folder.Path("new/sub/config.dat");
  ASSERT_TRUE(SaveFileChecked(file, std::string_view("a\0b", 3)));
  EXPECT_EQ(folder.Read("new/sub/config.dat"), std::string("a\0b", 3));
  EXPECT_EQ(ModeOf(file), 0600U);
  EXPECT_EQ(ModeOf(folder.Path("new")), 0700U);

  chmod(file.c_str(), 0644);
  ASSERT_TRUE(SaveFileChecked(file, ""));
  EXPECT_EQ(folder.Read("new/sub/config.dat"), "");
  EXPECT_EQ(ModeOf(file), 0644U);
}

TEST(SaveFile, LinksSurvive) {
  const TempFolder folder;
  folder.Write("real/list.m3u", "old");
  std::filesystem::create_symlink("real/list.m3u", folder.Path("link"));
  std::filesystem::create_symlink("link", folder.Path("link_to_link"));
  std::filesystem::create_symlink("real/new.m3u", folder.Path("dangling"));
  std::filesystem::create_symlink("circle", folder.Path("circle"));
  ASSERT_TRUE(SaveFileChecked(folder.Path("link_to_link"), "new"));
  ASSERT_TRUE(SaveFileChecked(folder.Path("dangling"), "fresh"));
  EXPECT_TRUE(std::filesystem::is_symlink(folder.Path("link_to_link")));
  EXPECT_TRUE(std::filesystem::is_symlink(folder.Path("dangling")));
  EXPECT_EQ(folder.Read("real/list.m3u"), "new");
  EXPECT_EQ(folder.Read("real/new.m3u"), "fresh");
  EXPECT_FALSE(SaveFileChecked(folder.Path("circle"), "x"));
  EXPECT_EQ(folder.Entries(), 5);
}

TEST(SaveFile, AnotherUsersLinkInASharedFolderIsNotFollowed) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can put another user's link somewhere";
  const TempFolder folder;
  folder.Write("mine", "old");
  folder.MakeFolder("shared");
  constexpr uid_t kAnother = 12345;
  for (const char* const name : {"shared/own", "shared/trap", "trap"}) {
    std::filesystem::create_symlink(folder.Path("mine"), folder.Path(name));
    const uid_t owner = std::string_view(name).ends_with("trap") ? kAnother : geteuid();
    ASSERT_EQ(lchown(folder.Path(name).c_str(), owner, owner), 0);
  }
  ASSERT_EQ(chmod(folder.Path("shared").c_str(), 01777), 0);
  EXPECT_FALSE(SaveFileChecked(folder.Path("shared/trap"), "new"));
  EXPECT_EQ(folder.Read("mine"), "old");
  EXPECT_TRUE(SaveFileChecked(folder.Path("shared/own"), "new"));
  EXPECT_TRUE(SaveFileChecked(folder.Path("trap"), "newer")) << "nobody else can put it here";
  EXPECT_EQ(folder.Read("mine"), "newer");
}

TEST(SaveFile, RefusesWhatIsNoPlainFile) {
  const TempFolder folder;
  folder.MakeFolder("folder");
  ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
  folder.Write("file", "");
  const std::string paths[] = {"",
                               folder.Path("folder"),
                               folder.Path("folder/"),
                               folder.Path("pipe"),
                               folder.Path("file/below"),
                               folder.Path("a") + std::string("\0b", 2)};
  for (const std::string& path : paths) {
    std::string error;
    EXPECT_FALSE(SaveFileChecked(path, "x", &error)) << path;
    EXPECT_NE(error, "") << path;
  }
  EXPECT_EQ(folder.Entries(), 3);
}

// Lets no file of this process grow beyond `bytes`: a write that crosses the limit is cut short and
// the next one fails, exactly as on a disk that runs full.
class FullDisk {
 public:
  explicit FullDisk(rlim_t bytes) : old_handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &old_);
    rlimit limit = old_;
    limit.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;
  ~FullDisk() {
    setrlimit(RLIMIT_FSIZE, &old_);
    std::signal(SIGXFSZ, old_handler_);
  }

 private:
  void (*old_handler_)(int);
  rlimit old_{};
};

TEST(SaveFile, FullDiskLeavesTheOldFileWhole) {
  const TempFolder folder;
  const std::string old_content(1000, 'o');
  const std::string file = folder.Write("config.dat", old_content);
  std::string error;
  {
    const FullDisk disk(32768);
    EXPECT_FALSE(SaveFileChecked(file, std::string(200000, 'n'), &error));
  }
  EXPECT_NE(error, "");
  EXPECT_EQ(folder.Read("config.dat"), old_content);
  EXPECT_EQ(folder.Entries(), 1);
}

}  // namespace
}  // namespace kv
