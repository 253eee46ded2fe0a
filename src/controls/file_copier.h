// `FileCopier`, the control that copies or moves one file at a time and shows how far it is.
//
// The bytes move on a thread of its own; results and events arrive on the interface thread through
// a function of the owner, and nothing here waits for a disk. file_copier_bar.h is its window, and
// copy_files.h takes many files through it. Interface thread only. May be destroyed while it shows
// an error and inside `done`, but not inside `Info` and `refresh`.
#pragma once

#include "controls/file_copy.h"
#include "system/dialogs.h"
#include "system/text_platform.h"
#include "system/timers.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace kv {

// The figures of one copy at the end of one block. Counts are bytes.
struct CopyInfo {
  std::string TimeLeftText;  // "00:01:02"
  std::string TimeUsedText;
  std::string SpeedText;  // what is copied in a second; zero during the first half second
  double TotalBytes = 0;
  std::string TotalText;  // "4.20 MB"
  double LeftBytes = 0;
  std::string LeftText;
  double CopiedBytes = 0;
  std::string CopiedText;
};

// The properties. Colours are 0x00BBGGRR, or 0x80000000 + the index of a system colour.
struct FileCopierLook {
  std::string FontName = "Tahoma";  // of the percentage text
  double FontPoints = 8.25;
  std::int16_t BorderStyle = 0;  // 0 none, 1 a line
  std::int32_t BackColor = 0xFFFFFF;
  std::int32_t ForeColor = -0x7FFFFFF3;  // of the percentage text; system highlight
  bool ShowText = true;
  std::int32_t FillColor = 0;  // of the bar

  friend bool operator==(const FileCopierLook&, const FileCopierLook&) = default;
};

// What the control needs of its owner; all must outlive it.
struct FileCopierParts {
  Dialogs& dialogs;
  const TextPlatform& text;
  TimerSource& clock;
  // Called from any thread: runs the function on the interface thread, later, in order. A function
  // that is never run does no harm.
  std::function<void(std::function<void()>)> post;
  // Blocks that are done within this time are told in one go: to wake the interface for each would
  // cost a tenth of the speed.
  std::chrono::milliseconds news_interval{5};
};

class FileCopier {
 public:
  using Done = std::function<void(CopyResult result)>;

  explicit FileCopier(FileCopierParts parts, CopyHooks hooks = {});
  FileCopier(const FileCopier&) = delete;
  FileCopier& operator=(const FileCopier&) = delete;
  // Stops what runs and waits until the piece on its way is written and the temporary file gone,
  // but no longer than a disk that works may take: one that hangs keeps only the thread, which
  // tidies up when it wakes.
  ~FileCopier();

  // Copies the file `Source` to the name `Destination` in blocks of `BlockSize` bytes, and calls
  // `done` when all is over; what may be used and what results is told at CopyOrMoveFile. A disk
  // error was shown to the user by then, and the display is back at zero. `done` may start the next
  // operation. False, and nothing happens, while an operation runs.
  bool xCopyFile(const std::string& Source, const std::string& Destination, std::int32_t BlockSize,
                 bool Overwrite, Done done);
  // The same for a move. On one file system it only renames, and shows 100 % for it.
  bool xMoveFile(const std::string& Source, const std::string& Destination, std::int32_t BlockSize,
                 bool Overwrite, Done done);

  // Ends what runs with kCancelled, unless it is complete already; on a disk that hangs a second
  // later. The next operation forgets it.
  void CancelCopy();
  bool CancelRequested() const { return cancel_requested_; }
  bool Busy() const { return job_ != nullptr; }

  // Puts "43%", or "43% text", and the bar for it on the display.
  void UpdateDisplay(std::int16_t Percent, const std::string& Text);
  std::int16_t Percent() const { return percent_; }
  const std::string& Caption() const { return caption_; }

  const FileCopierLook& Look() const { return look_; }
  void SetLook(const FileCopierLook& look);

  // Once for each block while bytes remain, after the display has changed.
  std::function<void(const CopyInfo& info)> Info;
  // The display or the look has changed. For the window of the control.
  std::function<void()> refresh;

 private:
  struct Job;

  bool Start(CopyOrder order, Done done);
  void OnNews();
  void TellBlock(std::int64_t copied, std::int64_t total);
  void Finish();
  void GiveUp();
  CopyInfo Figures(std::int64_t copied, std::int64_t total);

  FileCopierParts parts_;
  CopyHooks hooks_;
  FileCopierLook look_;
  std::int16_t percent_ = 0;
  std::string caption_ = "0%";
  bool cancel_requested_ = false;
  TimerSource::TimePoint start_time_;
  double speed_ = 0;       // bytes in a second
  std::int64_t told_ = 0;  // bytes that events were raised for
  std::shared_ptr<Job> job_;
  std::unique_ptr<Timer> give_up_;
};

}  // namespace kv
