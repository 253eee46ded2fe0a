// One copy: what lies on the disk afterwards, whatever happens in between.
#include "controls/file_copy.h"

#include "controls/file_content.h"
#include "support/temp_folder.h"
#include "system/full_disk.h"
#include "system/paths.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <stop_token>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace kv {
namespace {

class FileCopyTest : public testing::Test {
 protected:
  CopyOutcome Copy(const std::string& from, const std::string& to, bool overwrite = false) {
    return CopyOrMoveFile({CopyKind::kCopy, from, to, kBlock, overwrite}, hooks, stop.get_token());
  }
  // Runs `action` at the end of the second block.
  void InMidFile(std::function<void()> action) {
    hooks.after_block = [action = std::move(action)](std::int64_t copied, std::int64_t) {
      if (copied == 2 * std::int64_t{kBlock}) action();
    };
  }

  // What a copy that failed leaves of a folder with these two.
  void ExpectOnlySourceAndOld() const {
    EXPECT_EQ(folder.Read("from"), Content(5000));
    EXPECT_EQ(folder.Read("old"), "old");
    EXPECT_EQ(folder.Entries(), 2);
  }

  TempFolder folder;
  const std::string source = folder.Write("from", Content(5000));
  const std::string old = folder.Write("old", "old");
  CopyHooks hooks;
  std::stop_source stop;
};

TEST_F(FileCopyTest, CopiesEveryByteOfEverySizeUnderAnyName) {
  const std::string longest(255, 'n');  // a longer one, as the temporary name would be, is refused
  for (const auto& [size, name] :
       {std::pair<std::size_t, std::string>{0, "to\xFF\n"}, {1000, "to"}, {54321, longest}}) {
    folder.Write("from", Content(size));
    EXPECT_EQ(Copy(source, folder.Path(name)).result, CopyResult::kDone) << size;
    EXPECT_EQ(folder.Read(name), Content(size)) << size;
  }
}

TEST_F(FileCopyTest, KeepsTimeAndPermissionsButNoPrivilege) {
  const timespec times[] = {{1000, 0}, {1234567890, 123456789}};
  ASSERT_EQ(utimensat(AT_FDCWD, source.c_str(), times, 0), 0);
  const mode_t mask = umask(022);
  for (const auto& [mode, expected] :
       {std::pair{0640U, 0640U}, {0666U, 0644U}, {0444U, 0444U}, {06755U, 0755U}}) {
    ASSERT_EQ(chmod(source.c_str(), mode), 0);
    ASSERT_EQ(Copy(source, old, true).result, CopyResult::kDone);
    struct stat copy {};
    ASSERT_EQ(lstat(old.c_str(), &copy), 0);
    EXPECT_EQ(copy.st_mode & 07777U, expected);
    EXPECT_EQ(copy.st_mtim.tv_nsec, 123456789);
    chmod(old.c_str(), 0644);
  }
  umask(mask);
}

TEST_F(FileCopyTest, RefusesWhatIsNoPlainFileWithoutWaitingForIt) {
  ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
  std::filesystem::create_symlink("nowhere", folder.Path("dangling"));
  const struct {
    std::string source;
    CopyResult result;
    int error;
  } rows[] = {{folder.Path("pipe"), CopyResult::kDiskError, EINVAL},
              {"/dev/zero", CopyResult::kDiskError, EINVAL},
              {folder.MakeFolder("folder"), CopyResult::kDiskError, EISDIR},
              {folder.Path("dangling"), CopyResult::kNoSource, 0},
              {folder.Path("missing"), CopyResult::kNoSource, 0},
              {"", CopyResult::kNoSource, 0}};
  for (const auto& row : rows) {
    const CopyOutcome outcome = Copy(row.source, folder.Path("to"), true);
    EXPECT_EQ(outcome.result, row.result) << row.source;
    EXPECT_EQ(outcome.error_number, row.error) << row.source;
  }
  EXPECT_FALSE(FileExists(folder.Path("to")));
}

TEST_F(FileCopyTest, NeverWritesOverTheSourceItself) {
  ASSERT_EQ(link(source.c_str(), folder.Path("hard").c_str()), 0);
  std::filesystem::create_symlink("from", folder.Path("soft"));
  for (const char* const name : {"from", "hard", "soft"}) {
    EXPECT_EQ(Copy(source, folder.Path(name), true).result, CopyResult::kDiskError) << name;
    EXPECT_EQ(Copy(source, folder.Path(name)).result, CopyResult::kDestinationExists) << name;
    EXPECT_EQ(folder.Read(name), Content(5000)) << name;
  }
  EXPECT_EQ(folder.Entries(), 4);
}

TEST_F(FileCopyTest, ReplacesOnlyWhenAskedAndOnlyFiles) {
  folder.Write("other", "linked");
  folder.MakeFolder("folder");
  std::filesystem::create_symlink("other", folder.Path("link"));
  std::filesystem::create_symlink("nowhere", folder.Path("dangling"));
  for (const char* const name : {"old", "folder", "link", "dangling"}) {
    EXPECT_EQ(Copy(source, folder.Path(name)).result, CopyResult::kDestinationExists) << name;
  }
  EXPECT_EQ(folder.Read("old"), "old");
  EXPECT_EQ(Copy(source, folder.Path("folder"), true).result, CopyResult::kDiskError);
  for (const char* const name : {"old", "link"}) {
    EXPECT_EQ(Copy(source, folder.Path(name), true).result, CopyResult::kDone);
    EXPECT_EQ(folder.Read(name), Content(5000));
  }
  EXPECT_EQ(folder.Read("other"), "linked");  // the link went, not what it led to
}

TEST_F(FileCopyTest, GivesWayToWhatAppearsWhileItCopies) {
  InMidFile([&] { folder.Write("to", "another's"); });
  EXPECT_EQ(Copy(source, folder.Path("to")).result, CopyResult::kDestinationExists);
  EXPECT_EQ(folder.Read("to"), "another's");
  EXPECT_EQ(folder.Entries(), 3);
}

TEST_F(FileCopyTest, TakesTheFirstFreeTemporaryName) {
  folder.Write("to1.tmp", "mine");
  std::filesystem::create_symlink(source, folder.Path("to2.tmp"));
  std::string seen;
  InMidFile([&] { seen = folder.Read("to3.tmp"); });
  EXPECT_EQ(Copy(source, folder.Path("to")).result, CopyResult::kDone);
  EXPECT_EQ(seen, Content(5000).substr(0, 2000));
  EXPECT_EQ(folder.Read("to1.tmp"), "mine");
  EXPECT_EQ(folder.Read("from"), Content(5000));
  EXPECT_EQ(folder.Entries(), 5);
}

TEST_F(FileCopyTest, CancelAndFullDiskLeaveTheFolderAsItWas) {
  {
    const FullDisk disk(2500);
    EXPECT_EQ(Copy(source, folder.Path("to")).error_number, EFBIG);
    EXPECT_EQ(Copy(source, old, true).result, CopyResult::kDiskError);
  }
  ExpectOnlySourceAndOld();
  hooks.free_bytes = [](const std::string&) { return 4999.0; };
  EXPECT_EQ(Copy(source, folder.Path("to")).result, CopyResult::kNoFreeSpace);
  hooks.free_bytes = [](const std::string&) { return 5000.0; };  // equal is enough
  InMidFile([&] { stop.request_stop(); });
  for (const std::string& to : {folder.Path("to"), old}) {
    stop = {};
    EXPECT_EQ(Copy(source, to, to == old).result, CopyResult::kCancelled);
  }
  ExpectOnlySourceAndOld();
}

TEST_F(FileCopyTest, KilledProcessLeavesOnlyTheTemporaryName) {
  InMidFile([] { _exit(0); });
  const pid_t child = fork();
  if (child == 0) {
    Copy(source, old, true);
    _exit(1);
  }
  int status = -1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_EQ(status, 0);
  EXPECT_EQ(folder.Read("old1.tmp"), Content(5000).substr(0, 2000));
  std::filesystem::remove(folder.Path("old1.tmp"));
  ExpectOnlySourceAndOld();
}

}  // namespace
}  // namespace kv
