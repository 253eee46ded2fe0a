// One copy: what lies on the disk afterwards, whatever happens in between.
#include "controls/file_copy.h"

#include "controls/file_content.h"
#include "support/temp_folder.h"
#include "system/paths.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <stop_token>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace kv {
namespace {

struct stat StatusOf(const std::string& path) {
  struct stat status {};
  EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
  return status;
}

class FileCopyTest : public testing::Test {
 protected:
  CopyOutcome Copy(const std::string& source, const std::string& destination,
                   bool overwrite = false) {
    return CopyOrMoveFile({CopyKind::kCopy, source, destination, kBlock, overwrite}, hooks,
                          stop.get_token());
  }
  // Runs `action` at the end of the second block.
  void InMidFile(std::function<void()> action) {
    hooks.after_block = [action = std::move(action)](std::int64_t copied, std::int64_t) {
      if (copied == 2 * std::int64_t{kBlock}) action();
    };
  }

  TempFolder folder;
  CopyHooks hooks;
  std::stop_source stop;
};

TEST_F(FileCopyTest, CopiesEveryByteOfEverySizeUnderAnyName) {
  for (const std::size_t size : {0, 1000, 54321}) {
    const std::string source = folder.Write("from", Content(size));
    const std::string name = "to\xFF\n " + std::to_string(size);
    EXPECT_EQ(Copy(source, folder.Path(name)).result, CopyResult::kDone) << size;
    EXPECT_EQ(folder.Read(name), Content(size)) << size;
  }
  const std::string longest(255, 'n');  // a longer one, as the temporary name would be, is refused
  EXPECT_EQ(Copy(folder.Path("from"), folder.Path(longest)).result, CopyResult::kDone);
  EXPECT_EQ(folder.Read(longest).size(), 54321U);
}

TEST_F(FileCopyTest, KeepsTimeAndPermissionsButNoPrivilege) {
  const std::string source = folder.Write("from", Content(10));
  const timespec times[] = {{1000, 0}, {1234567890, 123456789}};
  ASSERT_EQ(utimensat(AT_FDCWD, source.c_str(), times, 0), 0);
  const mode_t mask = umask(022);
  for (const auto& [mode, expected] :
       {std::pair{0640U, 0640U}, {0666U, 0644U}, {0444U, 0444U}, {06755U, 0755U}}) {
    ASSERT_EQ(chmod(source.c_str(), mode), 0);
    ASSERT_EQ(Copy(source, folder.Path("to"), true).result, CopyResult::kDone);
    const struct stat copy = StatusOf(folder.Path("to"));
    EXPECT_EQ(copy.st_mode & 07777U, expected);
    EXPECT_EQ(copy.st_mtim.tv_nsec, 123456789);
    chmod(folder.Path("to").c_str(), 0644);
  }
  umask(mask);
}

TEST_F(FileCopyTest, RefusesWhatIsNoPlainFileWithoutWaitingForIt) {
  ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
  folder.MakeFolder("folder");
  std::filesystem::create_symlink("nowhere", folder.Path("dangling"));
  struct Case {
    std::string source;
    CopyResult result;
    int error;
  };
  for (const Case& row : {Case{folder.Path("pipe"), CopyResult::kDiskError, EINVAL},
                          Case{"/dev/zero", CopyResult::kDiskError, EINVAL},
                          Case{folder.Path("folder"), CopyResult::kDiskError, EISDIR},
                          Case{folder.Path("dangling"), CopyResult::kNoSource, 0},
                          Case{folder.Path("missing"), CopyResult::kNoSource, 0},
                          Case{"", CopyResult::kNoSource, 0}}) {
    const CopyOutcome outcome = Copy(row.source, folder.Path("to"), true);
    EXPECT_EQ(outcome.result, row.result) << row.source;
    EXPECT_EQ(outcome.error_number, row.error) << row.source;
  }
  EXPECT_EQ(folder.Entries(), 3);
}

TEST_F(FileCopyTest, NeverWritesOverTheSourceItself) {
  const std::string source = folder.Write("from", Content(5000));
  ASSERT_EQ(link(source.c_str(), folder.Path("hard").c_str()), 0);
  std::filesystem::create_symlink("from", folder.Path("soft"));
  for (const char* const name : {"from", "hard", "soft"}) {
    EXPECT_EQ(Copy(source, folder.Path(name), true).result, CopyResult::kDiskError) << name;
    EXPECT_EQ(Copy(source, folder.Path(name)).result, CopyResult::kDestinationExists) << name;
    EXPECT_EQ(folder.Read(name), Content(5000)) << name;
  }
  EXPECT_EQ(folder.Entries(), 3);
}

TEST_F(FileCopyTest, ReplacesOnlyWhenAskedAndOnlyFiles) {
  const std::string source = folder.Write("from", "new");
  folder.Write("other", "linked");
  folder.MakeFolder("folder");
  std::filesystem::create_symlink("other", folder.Path("link"));
  std::filesystem::create_symlink("nowhere", folder.Path("dangling"));
  folder.Write("to", "old");
  for (const char* const name : {"to", "folder", "link", "dangling"}) {
    EXPECT_EQ(Copy(source, folder.Path(name)).result, CopyResult::kDestinationExists) << name;
  }
  EXPECT_EQ(folder.Read("to"), "old");
  EXPECT_EQ(Copy(source, folder.Path("folder"), true).result, CopyResult::kDiskError);
  EXPECT_EQ(Copy(source, folder.Path("to"), true).result, CopyResult::kDone);
  EXPECT_EQ(Copy(source, folder.Path("link"), true).result, CopyResult::kDone);
  EXPECT_EQ(folder.Read("to"), "new");
  EXPECT_EQ(folder.Read("link"), "new");
  EXPECT_EQ(folder.Read("other"), "linked");  // the link went, not what it led to
}

TEST_F(FileCopyTest, GivesWayToWhatAppearsWhileItCopies) {
  const std::string source = folder.Write("from", Content(5000));
  InMidFile([&] { folder.Write("to", "another's"); });
  EXPECT_EQ(Copy(source, folder.Path("to")).result, CopyResult::kDestinationExists);
  EXPECT_EQ(folder.Read("to"), "another's");
  EXPECT_EQ(folder.Entries(), 2);
}

TEST_F(FileCopyTest, TakesTheFirstFreeTemporaryName) {
  const std::string source = folder.Write("from", Content(5000));
  folder.Write("to1.tmp", "mine");
  std::filesystem::create_symlink(source, folder.Path("to2.tmp"));
  std::string seen;
  InMidFile([&] { seen = folder.Read("to3.tmp"); });
  EXPECT_EQ(Copy(source, folder.Path("to")).result, CopyResult::kDone);
  EXPECT_EQ(seen, Content(5000).substr(0, 2000));
  EXPECT_EQ(folder.Read("to1.tmp"), "mine");
  EXPECT_EQ(folder.Read("from"), Content(5000));
  EXPECT_EQ(folder.Entries(), 4);
}

TEST_F(FileCopyTest, CancelLeavesTheFolderAsItWas) {
  const std::string source = folder.Write("from", Content(5000));
  folder.Write("old", "old");
  InMidFile([&] { stop.request_stop(); });
  for (const bool overwrite : {false, true}) {
    stop = {};
    const std::string to = overwrite ? folder.Path("old") : folder.Path("to");
    EXPECT_EQ(Copy(source, to, overwrite).result, CopyResult::kCancelled);
  }
  EXPECT_EQ(folder.Read("from"), Content(5000));
  EXPECT_EQ(folder.Read("old"), "old");
  EXPECT_EQ(folder.Entries(), 2);
}

TEST_F(FileCopyTest, FailingWriteLeavesTheFolderAsItWas) {
  const std::string source = folder.Write("from", Content(5000));
  folder.Write("old", "old");
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit tight = {2500, before.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &tight), 0);
  const CopyOutcome fresh = Copy(source, folder.Path("to"));
  const CopyOutcome replacing = Copy(source, folder.Path("old"), true);
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  EXPECT_EQ(fresh.result, CopyResult::kDiskError);
  EXPECT_EQ(fresh.error_number, EFBIG);
  EXPECT_EQ(replacing.result, CopyResult::kDiskError);
  EXPECT_EQ(folder.Read("old"), "old");
  EXPECT_EQ(folder.Read("from"), Content(5000));
  EXPECT_EQ(folder.Entries(), 2);
  hooks.free_bytes = [](const std::string&) { return 4999.0; };
  EXPECT_EQ(Copy(source, folder.Path("to")).result, CopyResult::kNoFreeSpace);
  hooks.free_bytes = [](const std::string&) { return 5000.0; };  // equal is enough
  EXPECT_EQ(Copy(source, folder.Path("to")).result, CopyResult::kDone);
}

TEST_F(FileCopyTest, KilledProcessLeavesOnlyTheTemporaryName) {
  const std::string source = folder.Write("from", Content(5000));
  folder.Write("old", "old");
  InMidFile([] { _exit(0); });
  const pid_t child = fork();
  if (child == 0) {
    Copy(source, folder.Path("old"), true);
    _exit(1);
  }
  int status = -1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_EQ(status, 0);
  EXPECT_EQ(folder.Read("from"), Content(5000));
  EXPECT_EQ(folder.Read("old"), "old");
  EXPECT_EQ(folder.Read("old1.tmp"), Content(5000).substr(0, 2000));
  EXPECT_EQ(folder.Entries(), 3);
}

}  // namespace
}  // namespace kv
