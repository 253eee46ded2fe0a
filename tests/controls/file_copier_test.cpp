// Copying files: what lies on the disk afterwards, whatever happens in between, and what the user
// is told on the way.
#include "controls/file_copier.h"

#include "controls/copy_files.h"
#include "controls/file_copy.h"
#include "support/fake_text_platform.h"
#include "support/scripted_dialogs.h"
#include "support/temp_folder.h"
#include "support/virtual_time.h"
#include "system/paths.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <deque>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace kv {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int32_t kBlock = 1000;

std::string Content(std::size_t size) {
  std::string bytes(size, '\0');
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 7 + i / 251);
  return bytes;
}

struct stat StatusOf(const std::string& path) {
  struct stat status {};
  EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
  return status;
}

// A folder that is another file system; nothing where the test may not make one.
std::optional<std::string> OtherFileSystem(const TempFolder& beside) {
  for (const char* const root : {"/dev/shm/", "/run/", "/var/tmp/"}) {
    struct stat there {};
    std::string folder = std::string(root) + "kv_test_XXXXXX";
    if (stat(root, &there) == 0 && there.st_dev != StatusOf(beside.Path()).st_dev &&
        mkdtemp(folder.data()) != nullptr) {
      return folder + "/";
    }
  }
  return {};
}

class FileCopyTest : public testing::Test {
 protected:
  CopyOutcome Copy(const std::string& source, const std::string& destination,
                   bool overwrite = false) {
    return CopyOrMoveFile({CopyKind::kCopy, source, destination, kBlock, overwrite}, hooks,
                          stop.get_token());
  }
  CopyOutcome Move(const std::string& source, const std::string& destination,
                   bool overwrite = false) {
    return CopyOrMoveFile({CopyKind::kMove, source, destination, kBlock, overwrite}, hooks,
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
  for (const std::size_t size : {0, 1, 999, 1000, 1001, 54321}) {
    const std::string source = folder.Write("from", Content(size));
    const std::string name = "to\xFF\n " + std::to_string(size);
    EXPECT_EQ(Copy(source, folder.Path(name)).result, CopyResult::kDone) << size;
    EXPECT_EQ(folder.Read(name), Content(size)) << size;
  }
  const std::string longest(255, 'n');  // a longer one, as the temporary name would be, is refused
  EXPECT_EQ(Copy(folder.Path("from"), folder.Path(longest)).result, CopyResult::kDone);
  EXPECT_EQ(folder.Read(longest).size(), 54321U);
  EXPECT_EQ(folder.Entries(), 8);
}

TEST_F(FileCopyTest, KeepsTimeAndPermissionsButNoPrivilege) {
  const std::string source = folder.Write("from", Content(10));
  const std::array<timespec, 2> times = {timespec{1000, 0}, timespec{1234567890, 123456789}};
  ASSERT_EQ(utimensat(AT_FDCWD, source.c_str(), times.data(), 0), 0);
  const mode_t mask = umask(022);
  for (const auto& [mode, expected] :
       {std::pair{0640U, 0640U}, {0666U, 0644U}, {0444U, 0444U}, {06755U, 0755U}}) {
    ASSERT_EQ(chmod(source.c_str(), mode), 0);
    ASSERT_EQ(Copy(source, folder.Path("to"), true).result, CopyResult::kDone);
    const struct stat copy = StatusOf(folder.Path("to"));
    EXPECT_EQ(copy.st_mode & 07777U, expected);
    EXPECT_EQ(copy.st_mtim.tv_sec, 1234567890);
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
    for (const CopyOutcome& outcome :
         {Copy(row.source, folder.Path("to"), true), Move(row.source, folder.Path("to"), true)}) {
      EXPECT_EQ(outcome.result, row.result) << row.source;
      EXPECT_EQ(outcome.error_number, row.error) << row.source;
    }
  }
  EXPECT_EQ(folder.Entries(), 3);
}

TEST_F(FileCopyTest, NeverWritesOverTheSourceItself) {
  const std::string source = folder.Write("from", Content(5000));
  ASSERT_EQ(link(source.c_str(), folder.Path("hard").c_str()), 0);
  std::filesystem::create_symlink("from", folder.Path("soft"));
  for (const char* const name : {"from", "hard", "soft"}) {
    EXPECT_EQ(Copy(source, folder.Path(name), true).result, CopyResult::kDiskError) << name;
    EXPECT_EQ(Move(source, folder.Path(name), true).result, CopyResult::kDiskError) << name;
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
    EXPECT_EQ(Move(source, folder.Path(name)).result, CopyResult::kDestinationExists) << name;
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
  const std::optional<std::string> other = OtherFileSystem(folder);
  InMidFile([&] { stop.request_stop(); });
  for (const bool overwrite : {false, true}) {
    stop = {};
    const std::string to = overwrite ? folder.Path("old") : folder.Path("to");
    EXPECT_EQ(Copy(source, to, overwrite).result, CopyResult::kCancelled);
  }
  if (other) {
    stop = {};
    EXPECT_EQ(Move(source, *other + "to").result, CopyResult::kCancelled);
    EXPECT_TRUE(std::filesystem::is_empty(*other));
    std::filesystem::remove(*other);
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
}

TEST_F(FileCopyTest, FullDiskIsFoundBeforeAndDuringTheCopy) {
  const std::string source = folder.Write("from", Content(300000));
  const std::string disk = folder.MakeFolder("disk");
  if (mount("none", disk.c_str(), "tmpfs", 0, "size=200k") != 0) GTEST_SKIP() << "may not mount";
  EXPECT_EQ(Copy(source, disk + "/to").result, CopyResult::kNoFreeSpace);
  hooks.free_bytes = [](const std::string&) { return 300000.0; };  // equal is enough
  const CopyOutcome copied = Copy(source, disk + "/to");
  const CopyOutcome moved = Move(source, disk + "/to");
  const bool empty = std::filesystem::is_empty(disk);
  umount(disk.c_str());
  EXPECT_EQ(copied.result, CopyResult::kDiskError);
  EXPECT_EQ(copied.error_number, ENOSPC);
  EXPECT_EQ(moved.error_number, ENOSPC);
  EXPECT_TRUE(empty);
  EXPECT_EQ(folder.Read("from"), Content(300000));
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

TEST_F(FileCopyTest, MovesWithinAndAcrossFileSystems) {
  const std::string source = folder.Write("from", Content(5000));
  const CopyOutcome within = Move(source, folder.Path("to"));
  EXPECT_EQ(within.result, CopyResult::kDone);
  EXPECT_TRUE(within.renamed);
  EXPECT_EQ(folder.Entries(), 1);

  const std::optional<std::string> other = OtherFileSystem(folder);
  if (!other) GTEST_SKIP() << "there is one file system only";
  std::ofstream(*other + "taken") << "old";
  EXPECT_EQ(Move(folder.Path("to"), *other + "taken").result, CopyResult::kDestinationExists);
  chmod(folder.Path("to").c_str(), 0666);
  EXPECT_EQ(Move(folder.Path("to"), *other + "taken", true).result, CopyResult::kDone);
  EXPECT_EQ(folder.Entries(), 0);
  EXPECT_EQ(StatusOf(*other + "taken").st_mode & 07777U, 0666U);
  EXPECT_EQ(std::filesystem::file_size(*other + "taken"), 5000U);
  std::filesystem::remove_all(*other);
}

TEST_F(FileCopyTest, MoveKeepsASourceThatIsBeingWritten) {
  const std::string source = folder.Write("from", Content(5000));
  const std::optional<std::string> other = OtherFileSystem(folder);
  if (!other) GTEST_SKIP() << "there is one file system only";
  InMidFile([&] { std::ofstream(source, std::ios::app) << "more"; });
  EXPECT_EQ(Move(source, *other + "to").result, CopyResult::kDiskError);
  EXPECT_EQ(folder.Read("from"), Content(5000) + "more");
  EXPECT_TRUE(std::filesystem::is_empty(*other));
  std::filesystem::remove_all(*other);
}

// The interface thread's queue, and a gate at which the copying thread waits after each block.
class InterfaceQueue {
 public:
  void Post(std::function<void()> work) {
    const std::scoped_lock lock(mutex_);
    queue_.push_back(std::move(work));
    changed_.notify_all();
  }

  // Runs what arrives until `done`; a limit that only a failing test reaches.
  void RunUntil(const std::function<bool()>& done) {
    while (!done()) {
      std::unique_lock lock(mutex_);
      ASSERT_TRUE(
          changed_.wait_for(lock, std::chrono::seconds(20), [this] { return !queue_.empty(); }));
      const std::function<void()> work = std::move(queue_.front());
      queue_.pop_front();
      lock.unlock();
      work();
    }
  }

  bool Empty() {
    const std::scoped_lock lock(mutex_);
    return queue_.empty();
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::function<void()>> queue_;
};

class FileCopierTest : public testing::Test {
 protected:
  FileCopier::Done Note() {
    return [this](CopyResult result) { results.push_back(result); };
  }
  void Run() {
    queue.RunUntil([this] { return !results.empty(); });
  }
  static CopyHooks Hooks(FileCopierTest* test) {
    CopyHooks hooks;
    hooks.after_block = [test](std::int64_t copied, std::int64_t) {
      // Until the interface has been told, so that each test sees the same order.
      while (test->step_by_step && test->seen < copied && !test->leave) std::this_thread::yield();
    };
    hooks.free_bytes = [test](const std::string&) { return test->free_bytes.load(); };
    return hooks;
  }

  TempFolder folder;
  VirtualTime time;
  FakeTextPlatform text;
  ScriptedDialogs dialogs;
  InterfaceQueue queue;
  std::atomic<bool> step_by_step = false;
  std::atomic<bool> leave = false;
  std::atomic<std::int64_t> seen = 0;
  std::atomic<double> free_bytes = 1e12;
  std::vector<CopyResult> results;
  FileCopierParts Parts() {
    return {dialogs, text, time,
            [this](std::function<void()> work) { queue.Post(std::move(work)); },
            std::chrono::milliseconds(0)};
  }
  FileCopier copier{Parts(), Hooks(this)};
};

TEST_F(FileCopierTest, TellsEachBlockWhileBytesRemain) {
  const std::string source = folder.Write("from", Content(10240));
  std::vector<std::string> events;
  step_by_step = true;
  copier.Info = [&](const CopyInfo& info) {
    events.push_back(copier.Caption() + " " + info.TimeLeftText + " " + info.TimeUsedText + " " +
                     info.SpeedText + " " + info.TotalText + " " + info.LeftText + " " +
                     info.CopiedText);
    EXPECT_EQ(info.TotalBytes, 10240.0);
    EXPECT_EQ(info.LeftBytes + info.CopiedBytes, info.TotalBytes);
    time.Advance(2000);
    seen = static_cast<std::int64_t>(info.CopiedBytes);
  };
  leave = false;
  ASSERT_TRUE(copier.xCopyFile(source, folder.Path("to"), 4096, false, Note()));
  EXPECT_FALSE(copier.xCopyFile(source, folder.Path("second"), 4096, false, Note()));
  queue.RunUntil([&] { return events.size() == 2; });
  leave = true;
  Run();
  EXPECT_THAT(events, ElementsAre("40% 00:00:00 00:00:00 0.00 Bytes 10.00 KB 6.00 KB 4.00 KB",
                                  "80% 00:00:00 00:00:01 4.00 KB 10.00 KB 2.00 KB 8.00 KB"));
  EXPECT_THAT(results, ElementsAre(CopyResult::kDone));
  EXPECT_EQ(copier.Caption(), "0%");
  EXPECT_EQ(folder.Read("to"), Content(10240));
}

TEST_F(FileCopierTest, TellsNoBlockTwiceAndNoneLessWhenTheInterfaceIsBehind) {
  folder.Write("from", Content(100001));
  folder.Write("empty", "");
  std::vector<double> copied;
  copier.Info = [&](const CopyInfo& info) { copied.push_back(info.CopiedBytes); };
  copier.xCopyFile(folder.Path("from"), folder.Path("to"), kBlock, false, Note());
  Run();
  ASSERT_EQ(copied.size(), 100U);
  for (std::size_t i = 0; i < copied.size(); ++i)
    EXPECT_EQ(copied[i], kBlock * (static_cast<double>(i) + 1));
  copier.xCopyFile(folder.Path("empty"), folder.Path("to2"), kBlock, false, Note());
  queue.RunUntil([&] { return results.size() == 2; });
  EXPECT_EQ(copied.size(), 100U);
  EXPECT_EQ(results.back(), CopyResult::kDone);
}

TEST_F(FileCopierTest, ShowsADiskErrorWithItsNumberAndKeepsQuietOtherwise) {
  folder.Write("from", "x");
  copier.xCopyFile(folder.Path("from"), folder.Path("no/to"), kBlock, false, Note());
  // Other news may come while the box is open.
  dialogs.WhileOpen([&] { EXPECT_TRUE(copier.Busy()); });
  Run();
  ASSERT_EQ(dialogs.Boxes().size(), 1U);
  EXPECT_EQ(dialogs.LastText(), "No such file or directory code : 2");
  EXPECT_EQ(dialogs.Boxes()[0].icon, BoxIcon::kStop);
  EXPECT_THAT(results, ElementsAre(CopyResult::kDiskError));

  std::vector<int> shown;
  copier.refresh = [&] { shown.push_back(copier.Percent()); };
  copier.xMoveFile(folder.Path("from"), folder.Path("to"), kBlock, false, Note());
  queue.RunUntil([&] { return results.size() == 2; });
  EXPECT_THAT(shown, ElementsAre(100, 0));
  EXPECT_EQ(dialogs.Boxes().size(), 1U);
}

TEST_F(FileCopierTest, CanBeDestroyedInTheMiddleAndWhileABoxIsOpen) {
  folder.Write("from", Content(5000));
  step_by_step = true;
  auto mine = std::make_unique<FileCopier>(Parts(), Hooks(this));
  bool begun = false;
  mine->Info = [&](const CopyInfo&) { begun = true; };
  mine->xCopyFile(folder.Path("from"), folder.Path("to"), kBlock, false, Note());
  queue.RunUntil([&] { return begun; });
  mine->CancelCopy();
  leave = true;
  mine.reset();
  EXPECT_EQ(folder.Entries(), 1);

  mine = std::make_unique<FileCopier>(Parts());
  dialogs.WhileOpen([&] { mine.reset(); });
  mine->xCopyFile(folder.Path("from"), folder.Path("no/to"), kBlock, false, Note());
  queue.RunUntil([&] { return mine == nullptr; });
  while (!queue.Empty()) queue.RunUntil([n = 0]() mutable { return n++ > 0; });
  EXPECT_THAT(results, IsEmpty());
}

TEST_F(FileCopierTest, ADiskThatHangsHoldsUpNeitherTheCancelNorTheEnd) {
  folder.Write("from", Content(5000));
  const auto disk_hangs = std::make_shared<std::atomic<bool>>(true);
  const auto hanging = std::make_shared<std::atomic<bool>>(false);
  CopyHooks hooks;
  hooks.after_block = [disk_hangs, hanging](std::int64_t, std::int64_t) {
    *hanging = true;
    while (*disk_hangs) std::this_thread::yield();
  };
  auto mine = std::make_unique<FileCopier>(Parts(), hooks);
  mine->xCopyFile(folder.Path("from"), folder.Path("to"), kBlock, false, Note());
  while (!*hanging) std::this_thread::yield();
  mine->CancelCopy();
  time.Advance(1100);
  EXPECT_THAT(results, ElementsAre(CopyResult::kCancelled));
  EXPECT_FALSE(mine->Busy());
  mine.reset();
  EXPECT_EQ(folder.Entries(), 2);
  *disk_hangs = false;  // the thread wakes and tidies up
  while (folder.Entries() == 2) std::this_thread::yield();
  EXPECT_FALSE(std::filesystem::exists(folder.Path("to")));
}

// The list of files behind the window.
class CopyFilesTest : public FileCopierTest, public CopyFilesWindow {
 protected:
  void ShowLabels(const std::string& label1, const std::string& label2,
                  const std::string& label3) override {
    labels.push_back(label1 + " | " + label2 + " | " + label3);
  }
  bool AskRetry(const std::string& question) override {
    questions.push_back(question);
    if (while_asked) while_asked();
    if (retries == 0) return false;
    if (--retries == 0) free_bytes = 1e12;
    return true;
  }
  void Unload() override { ++unloads; }

  void RunList(const std::vector<std::string>& paths) {
    files.emplace(*this, copier, dialogs, paths);
    files->Start();
    queue.RunUntil([this] { return unloads > 0; });
    EXPECT_EQ(unloads, 1);
  }

  const std::string to = folder.MakeFolder("to");
  std::optional<CopyFiles> files;
  std::vector<std::string> labels;
  std::vector<std::string> questions;
  std::function<void()> while_asked;
  int retries = 0;
  int unloads = 0;
};

TEST_F(CopyFilesTest, FilesOfOneNameStandSideBySide) {
  dialogs.WillPickFolder(to);
  RunList({folder.Write("a/x.mp3", "one"), folder.Write("b/x.mp3", "two"),
           folder.Write("c/x.mp3", "three")});
  EXPECT_THAT(dialogs.FolderRequests(), ElementsAre("Choose copy destination:"));
  EXPECT_EQ(folder.Read("to/x.mp3"), "one");
  EXPECT_EQ(folder.Read("to/Copy (1) of x.mp3"), "two");
  EXPECT_EQ(folder.Read("to/Copy (2) of x.mp3"), "three");
  EXPECT_EQ(labels.front(), "Copying file \"x.mp3\". | File 1 / 3 | To: \"x.mp3\"");
  EXPECT_EQ(labels.back(), "Copying file \"x.mp3\". | File 3 / 3 | To: \"Copy (2) of x.mp3\"");
  EXPECT_THAT(dialogs.Boxes(), IsEmpty());
}

TEST_F(CopyFilesTest, NoFolderAndNoFilesEndAtOnce) {
  dialogs.WillPickFolder("");
  RunList({folder.Write("x.mp3", "one")});
  unloads = 0;
  dialogs.WillPickFolder(to);
  RunList({});
  EXPECT_TRUE(std::filesystem::is_empty(to));
}

TEST_F(CopyFilesTest, ErrorsEndTheListWithTheirMessage) {
  struct Case {
    std::string source;
    std::string text;
    BoxIcon icon;
    std::size_t boxes;
  };
  const std::string last = folder.Write("last.mp3", "last");
  for (const Case& row :
       {Case{folder.Path("missing"), "NoExist, copy was canceled!", BoxIcon::kExclamation, 1},
        Case{"http://host/a.mp3", "NoExist, copy was canceled!", BoxIcon::kExclamation, 1},
        Case{folder.MakeFolder("d"), "Disk error, copy was canceled!", BoxIcon::kStop, 2}}) {
    const std::size_t before = dialogs.Boxes().size();
    unloads = 0;
    dialogs.WillPickFolder(to);
    RunList({row.source, last});
    EXPECT_EQ(dialogs.LastText(), row.text) << row.source;
    EXPECT_EQ(dialogs.Boxes().back().icon, row.icon);
    EXPECT_EQ(dialogs.Boxes().size() - before, row.boxes);
    EXPECT_TRUE(std::filesystem::is_empty(to));
  }
}

TEST_F(CopyFilesTest, RetryGoesOnWithTheSameNameAndCancelEnds) {
  const std::vector<std::string> paths = {folder.Write("a/x.mp3", "one"),
                                          folder.Write("y.mp3", "two")};
  folder.Write("to/x.mp3", "old");
  free_bytes = 2;
  retries = 2;
  dialogs.WillPickFolder(to);
  RunList(paths);
  EXPECT_THAT(questions, ElementsAre("There is not enough free space to copy the file \"x.mp3\"",
                                     "There is not enough free space to copy the file \"x.mp3\""));
  EXPECT_EQ(folder.Read("to/Copy (1) of x.mp3"), "one");
  EXPECT_EQ(folder.Read("to/y.mp3"), "two");

  free_bytes = 0;
  unloads = 0;
  retries = 5;
  while_asked = [&] { files->Cancel(); };  // the window was closed behind the question
  dialogs.WillPickFolder(to);
  RunList(paths);
  EXPECT_EQ(questions.size(), 3U);
}

TEST_F(CopyFilesTest, CancelEndsTheWholeListWithoutAMessage) {
  const std::vector<std::string> paths = {folder.Write("x.mp3", Content(600000)),
                                          folder.Write("y.mp3", "two")};
  step_by_step = true;
  copier.Info = [&](const CopyInfo&) {
    files->Cancel();
    leave = true;
  };
  dialogs.WillPickFolder(to);
  RunList(paths);
  EXPECT_TRUE(std::filesystem::is_empty(to));
  EXPECT_THAT(dialogs.Boxes(), IsEmpty());

  // Also when the cancelled file was whole by then: nothing more begins.
  step_by_step = false;
  unloads = 0;
  copier.Info = nullptr;
  copier.refresh = [&] { files->Cancel(); };
  dialogs.WillPickFolder(to);
  RunList(paths);
  EXPECT_FALSE(FileExists(to + "/y.mp3"));
}

}  // namespace
}  // namespace kv
