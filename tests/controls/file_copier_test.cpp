// Copying beside the interface: what the user is told on the way, and lists of files.
#include "controls/file_copier.h"

#include "controls/copy_files.h"
#include "controls/file_content.h"
#include "support/fake_text_platform.h"
#include "support/scripted_dialogs.h"
#include "support/temp_folder.h"
#include "support/virtual_time.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace kv {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

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

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::function<void()>> queue_;
};

class FileCopierTest : public testing::Test {
 protected:
  // Begins to copy "from".
  bool Begin(FileCopier& with, const char* to = "to", std::int32_t block = kBlock) {
    return with.xCopyFile(folder.Path("from"), folder.Path(to), block, false,
                          [this](CopyResult result) { results.push_back(result); });
  }
  void Run() {
    queue.RunUntil([this] { return !results.empty(); });
  }
  CopyHooks Hooks() {
    CopyHooks hooks;
    hooks.after_block = [this](std::int64_t copied, std::int64_t) {
      // Until the interface has been told, so that each test sees the same order.
      while (step_by_step && seen < copied && !leave) std::this_thread::yield();
    };
    hooks.free_bytes = [this](const std::string&) { return free_bytes.load(); };
    return hooks;
  }

  TempFolder folder;
  VirtualTime time;
  FakeTextPlatform text;
  ScriptedDialogs dialogs;
  InterfaceQueue queue;
  std::atomic<bool> step_by_step = false, leave = false;
  std::atomic<std::int64_t> seen = 0;
  std::atomic<double> free_bytes = 1e12;
  std::vector<CopyResult> results;
  FileCopierParts Parts() {
    return {dialogs, text, time,
            [this](std::function<void()> work) { queue.Post(std::move(work)); },
            std::chrono::milliseconds(0)};
  }
  FileCopier copier{Parts(), Hooks()};
};

TEST_F(FileCopierTest, TellsEachBlockWhileBytesRemain) {
  folder.Write("from", Content(10240));
  std::vector<std::string> events;
  step_by_step = true;
  copier.Info = [&](const CopyInfo& info) {
    events.push_back(copier.Caption() + " " + info.TimeLeftText + " " + info.TimeUsedText + " " +
                     info.SpeedText + " " + info.TotalText + " " + info.LeftText + " " +
                     info.CopiedText);
    time.Advance(2000);
    seen = static_cast<std::int64_t>(info.CopiedBytes);
  };
  ASSERT_TRUE(Begin(copier, "to", 4096));
  EXPECT_FALSE(Begin(copier, "second"));
  queue.RunUntil([&] { return events.size() == 2; });
  leave = true;
  Run();
  EXPECT_THAT(events, ElementsAre("40% 00:00:00 00:00:00 0.00 Bytes 10.00 KB 6.00 KB 4.00 KB",
                                  "80% 00:00:00 00:00:01 4.00 KB 10.00 KB 2.00 KB 8.00 KB"));
  EXPECT_THAT(results, ElementsAre(CopyResult::kDone));
  EXPECT_EQ(folder.Read("to"), Content(10240));
}

TEST_F(FileCopierTest, ShowsADiskErrorWithItsNumber) {
  folder.Write("from", "x");
  Begin(copier, "no/to");
  Run();
  EXPECT_EQ(dialogs.Boxes().size(), 1U);
  EXPECT_EQ(dialogs.LastText(), "No such file or directory code : 2");
  EXPECT_THAT(results, ElementsAre(CopyResult::kDiskError));
}

TEST_F(FileCopierTest, CanBeDestroyedInTheMiddleAndWhileABoxIsOpen) {
  folder.Write("from", Content(5000));
  step_by_step = true;
  auto mine = std::make_unique<FileCopier>(Parts(), Hooks());
  bool begun = false;
  mine->Info = [&](const CopyInfo&) { begun = true; };
  Begin(*mine);
  queue.RunUntil([&] { return begun; });
  mine->CancelCopy();
  leave = true;
  mine.reset();
  EXPECT_EQ(folder.Entries(), 1);

  mine = std::make_unique<FileCopier>(Parts());
  dialogs.WhileOpen([&] { mine.reset(); });
  Begin(*mine, "no/to");
  queue.RunUntil([&] { return mine == nullptr; });
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
  Begin(*mine);
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

  void RunList(const std::vector<std::string>& paths, const std::string& picked) {
    dialogs.WillPickFolder(picked);
    unloads = 0;
    files.emplace(*this, copier, dialogs, paths);
    files->Start();
    queue.RunUntil([this] { return unloads > 0; });
    EXPECT_EQ(unloads, 1);
  }

  const std::string to = folder.MakeFolder("to");
  std::optional<CopyFiles> files;
  std::vector<std::string> labels, questions;
  std::function<void()> while_asked;
  int retries = 0, unloads = 0;
};

TEST_F(CopyFilesTest, FilesOfOneNameStandSideBySide) {
  RunList({folder.Write("a/x.mp3", "one"), folder.Write("b/x.mp3", "two"),
           folder.Write("c/x.mp3", "three")},
          to);
  EXPECT_EQ(folder.Read("to/x.mp3"), "one");
  EXPECT_EQ(folder.Read("to/Copy (1) of x.mp3"), "two");
  EXPECT_EQ(folder.Read("to/Copy (2) of x.mp3"), "three");
  EXPECT_EQ(labels.front(), "Copying file \"x.mp3\". | File 1 / 3 | To: \"x.mp3\"");
  EXPECT_EQ(labels.back(), "Copying file \"x.mp3\". | File 3 / 3 | To: \"Copy (2) of x.mp3\"");
  EXPECT_THAT(dialogs.Boxes(), IsEmpty());
}

TEST_F(CopyFilesTest, NoFolderAndNoFilesEndAtOnce) {
  RunList({folder.Write("x.mp3", "one")}, "");
  RunList({}, to);
  EXPECT_TRUE(std::filesystem::is_empty(to));
}

TEST_F(CopyFilesTest, ErrorsEndTheListWithTheirMessage) {
  const std::string last = folder.Write("last.mp3", "last");
  for (const auto& [path, message] :
       {std::pair<std::string, std::string>{"http://host/a.mp3", "NoExist, copy was canceled!"},
        {folder.MakeFolder("d"), "Disk error, copy was canceled!"}}) {
    RunList({path, last}, to);
    EXPECT_EQ(dialogs.LastText(), message) << path;
    EXPECT_TRUE(std::filesystem::is_empty(to));
  }
}

TEST_F(CopyFilesTest, RetryGoesOnWithTheSameNameAndCancelEnds) {
  const std::vector<std::string> paths = {folder.Write("a/x.mp3", "one"),
                                          folder.Write("y.mp3", "two")};
  folder.Write("to/x.mp3", "old");
  free_bytes = 2;
  retries = 2;
  RunList(paths, to);
  ASSERT_EQ(questions.size(), 2U);
  EXPECT_EQ(questions[1], "There is not enough free space to copy the file \"x.mp3\"");
  EXPECT_EQ(folder.Read("to/Copy (1) of x.mp3"), "one");
  EXPECT_EQ(folder.Read("to/y.mp3"), "two");

  free_bytes = 0;
  retries = 5;
  while_asked = [&] { files->Cancel(); };  // the window was closed behind the question
  RunList(paths, to);
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
  RunList(paths, to);
  EXPECT_TRUE(std::filesystem::is_empty(to));
  EXPECT_THAT(dialogs.Boxes(), IsEmpty());

  // Also when the cancelled file was whole by then: nothing more begins.
  step_by_step = false;
  copier.Info = nullptr;
  copier.refresh = [&] { files->Cancel(); };
  RunList(paths, to);
  EXPECT_FALSE(std::filesystem::exists(to + "/y.mp3"));
}

}  // namespace
}  // namespace kv
