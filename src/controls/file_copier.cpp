#include "controls/file_copier.h"

#include "system/text_format.h"
#include "system/translation.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <mutex>
#include <stop_token>
#include <thread>
#include <utility>

namespace kv {
namespace {

// So many blocks are told in one turn, so that a fast disk cannot hold the interface.
constexpr int kMostBlocksPerTurn = 32;

constexpr std::int16_t kWhole = 100;

// What a piece on its way may take after it was told to stop; then its disk is taken to hang.
constexpr int kPatienceMilliseconds = 1000;

}  // namespace

// One operation: what the interface thread and the copying one share. The thread keeps it alive, as
// it may hang in a disk long after everybody else has gone.
struct FileCopier::Job {
  Job(CopyOrder what, Done then, CopyHooks with, const FileCopierParts& parts)
      : order(std::move(what)),
        done(std::move(then)),
        hooks(std::move(with)),
        post(parts.post),
        news_interval(parts.news_interval) {}

  // On the copying thread.
  void Work(const std::function<void()>& news) {
    using Clock = std::chrono::steady_clock;
    Clock::time_point last;
    const auto tell = [&] {
      // Whom it is told may be gone once the operation has been left behind.
      const std::lock_guard lock(mutex);
      if (!left_behind && !told.exchange(true)) post(news);
    };
    CopyHooks own = hooks;
    own.after_block = [&](std::int64_t bytes, std::int64_t of) {
      total = of;
      copied = bytes;
      if (const auto now = Clock::now(); now - last >= news_interval) {
        last = now;
        tell();
      }
      if (hooks.after_block) hooks.after_block(bytes, of);
    };
    outcome = CopyOrMoveFile(order, own, stop.get_token());
    ended = true;
    tell();
    const std::lock_guard lock(mutex);
    over = true;
    is_over.notify_all();
  }

  // Waits for the thread, then lets go of it. False when it hangs.
  bool LeaveBehind(std::chrono::milliseconds patience) {
    stop.request_stop();
    std::unique_lock lock(mutex);
    is_over.wait_for(lock, patience, [this] { return over; });
    left_behind = true;
    return over;
  }

  const CopyOrder order;
  Done done;
  const CopyHooks hooks;
  const std::function<void(std::function<void()>)> post;
  const std::chrono::milliseconds news_interval;
  std::atomic<std::int64_t> copied = 0;
  std::atomic<std::int64_t> total = 0;
  std::atomic<bool> told = false;  // news are on their way to the interface
  std::atomic<bool> ended = false;
  CopyOutcome outcome;    // written before `ended`
  bool finished = false;  // all is told; interface thread only

  std::stop_source stop;
  std::mutex mutex;
  std::condition_variable is_over;
  bool over = false;         // the thread touches nothing of the owner's any more
  bool left_behind = false;  // nobody wants to hear of it
};

FileCopier::FileCopier(FileCopierParts parts, CopyHooks hooks)
    : parts_(std::move(parts)),
      hooks_(std::move(hooks)),
      give_up_(parts_.clock.MakeTimer(TimerKind::kOrdinary, kPatienceMilliseconds,
                                      [this] { GiveUp(); })) {}

FileCopier::~FileCopier() {
  if (job_) job_->LeaveBehind(std::chrono::milliseconds(kPatienceMilliseconds));
}

bool FileCopier::xCopyFile(const std::string& Source, const std::string& Destination,
                           std::int32_t BlockSize, bool Overwrite, Done done) {
  return Start({CopyKind::kCopy, Source, Destination, BlockSize, Overwrite}, std::move(done));
}

bool FileCopier::xMoveFile(const std::string& Source, const std::string& Destination,
                           std::int32_t BlockSize, bool Overwrite, Done done) {
  return Start({CopyKind::kMove, Source, Destination, BlockSize, Overwrite}, std::move(done));
}

bool FileCopier::Start(CopyOrder order, Done done) {
  if (Busy()) return false;
  cancel_requested_ = false;
  start_time_ = parts_.clock.Now();
  speed_ = 0;
  told_ = 0;
  const auto job = std::make_shared<Job>(std::move(order), std::move(done), hooks_, parts_);
  // Counted apart from the thread's: it is gone for us when we let go of it.
  job_ = std::shared_ptr<Job>(job.get(), [job](Job*) {});
  // News that arrive when the job is gone, and perhaps this object, find that out first.
  std::function<void()> news = [this, weak = std::weak_ptr<Job>(job_)] {
    if (!weak.expired()) OnNews();
  };
  std::thread([job, news = std::move(news)] { job->Work(news); }).detach();
  return true;
}

void FileCopier::CancelCopy() {
  cancel_requested_ = true;
  if (!job_) return;
  job_->stop.request_stop();
  give_up_->SetEnabled(true);
}

void FileCopier::GiveUp() {
  give_up_->SetEnabled(false);
  if (!job_ || job_->ended) return;
  job_->LeaveBehind(std::chrono::milliseconds(0));
  if (job_->ended) return OnNews();
  UpdateDisplay(0, "");
  const Done done = std::move(job_->done);
  job_.reset();
  if (done) done(CopyResult::kCancelled);
}

void FileCopier::OnNews() {
  if (job_->finished) return;  // all is told, and the user reads the error
  // Gone when an event ends the operation.
  const std::weak_ptr<Job> alive = job_;
  job_->told = false;
  const bool ended = job_->ended;
  const std::int64_t copied = job_->copied;
  const std::int64_t total = job_->total;
  for (int blocks = 0; told_ < copied && !cancel_requested_; ++blocks) {
    if (blocks == kMostBlocksPerTurn) {
      if (!job_->told.exchange(true)) {
        parts_.post([this, alive] {
          if (!alive.expired()) OnNews();
        });
      }
      return;
    }
    told_ = std::min<std::int64_t>(told_ + job_->order.block_size, copied);
    TellBlock(told_, total);
    if (alive.expired()) return;
  }
  if (ended) Finish();
}

void FileCopier::TellBlock(std::int64_t copied, std::int64_t total) {
  const std::int64_t left = total - copied;
  if (left <= 0) return;
  const std::weak_ptr<Job> alive = job_;
  UpdateDisplay(static_cast<std::int16_t>(kWhole - kWhole * left / total), "");
  if (!alive.expired() && Info) Info(Figures(copied, total));
}

CopyInfo FileCopier::Figures(std::int64_t copied, std::int64_t total) {
  const double used = std::chrono::duration<double>(parts_.clock.Now() - start_time_).count();
  const double whole_seconds = std::round(used);
  CopyInfo info;
  info.TotalBytes = static_cast<double>(total);
  info.CopiedBytes = static_cast<double>(copied);
  info.LeftBytes = info.TotalBytes - info.CopiedBytes;
  if (whole_seconds > 0) speed_ = std::round(info.CopiedBytes / whole_seconds);

  const std::string separator = parts_.text.DecimalSeparator();
  constexpr int kDecimals = 2;
  info.TimeLeftText = FormatTimeCode(info.LeftBytes / info.CopiedBytes * used, false, kDecimals);
  info.TimeUsedText = FormatTimeCode(used, false, kDecimals);
  info.SpeedText = FormatByteSize(speed_, separator);
  info.TotalText = FormatByteSize(info.TotalBytes, separator);
  info.LeftText = FormatByteSize(info.LeftBytes, separator);
  info.CopiedText = FormatByteSize(info.CopiedBytes, separator);
  return info;
}

void FileCopier::Finish() {
  job_->finished = true;
  give_up_->SetEnabled(false);
  const std::weak_ptr<Job> alive = job_;
  const CopyOutcome outcome = job_->outcome;
  if (outcome.renamed) UpdateDisplay(kWhole, "");
  UpdateDisplay(0, "");
  if (!outcome.error.empty()) {
    MessageBoxRequest box;
    box.text = Fill(Tr("%1 code : %2"), outcome.error, std::to_string(outcome.error_number));
    box.icon = BoxIcon::kStop;
    parts_.dialogs.ShowMessageBox(box);
    if (alive.expired()) return;  // the owner was closed meanwhile
  }
  const Done done = std::move(job_->done);
  job_.reset();
  if (done) done(outcome.result);
}

void FileCopier::UpdateDisplay(std::int16_t Percent, const std::string& Text) {
  percent_ = Percent;
  caption_ = std::to_string(Percent) + "%";
  if (!Text.empty()) caption_ += " " + Text;
  if (refresh) refresh();
}

void FileCopier::SetLook(const FileCopierLook& look) {
  look_ = look;
  if (refresh) refresh();
}

}  // namespace kv
