#include "system/file_fetch_qt.h"

#include "system/files.h"

#include <QNetworkRequest>

#include <cstddef>
#include <cstdlib>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <utility>

namespace kv {
namespace {

constexpr std::int64_t kPiece = std::int64_t{256} * 1024;
// So much may wait for the disk before it is told to write, or the end would take long.
constexpr std::int64_t kUnwritten = std::int64_t{16} * 1024 * 1024;
constexpr mode_t kNewFile = 0666;

// What the user keeps from others in new files. Asked of the kernel, since the call that tells it
// changes it for other threads, too.
mode_t FileModeMask() {
  constexpr std::string_view kField = "\nUmask:";
  constexpr mode_t kPrivate = 0077;
  const std::string status = ReadTextFile("/proc/self/status");
  const std::size_t field = status.find(kField);
  if (field == std::string::npos) return kPrivate;
  return static_cast<mode_t>(std::strtoul(status.c_str() + field + kField.size(), nullptr, 8));
}

// The file that is to be replaced keeps its permissions, a new one has those of any new file.
mode_t ModeFor(const std::string& target) {
  struct stat status {};
  if (stat(target.c_str(), &status) == 0) return status.st_mode & 0777U;
  return kNewFile & ~FileModeMask();
}

std::string_view BytesOf(const QByteArray& bytes) {
  return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

}  // namespace

FileFetch::FileFetch(QNetworkReply* reply, const std::string& target, Events events)
    : reply_(reply),
      target_(target),
      events_(std::move(events)),
      file_(target.substr(0, target.rfind('/') + 1)) {
  disk_.setMaxThreadCount(1);
  if (reply_ != nullptr && file_.IsOpen()) {
    fchmod(file_.Number(), ModeFor(target_));
    connect(reply_, &QNetworkReply::readyRead, this, &FileFetch::Step);
    connect(reply_, &QNetworkReply::finished, this, &FileFetch::Step);
  }
  QMetaObject::invokeMethod(this, &FileFetch::Step, Qt::QueuedConnection);
}

FileFetch::~FileFetch() {
  ended_ = true;
  if (reply_ != nullptr) {
    reply_->disconnect(this);
    reply_->abort();
    reply_->deleteLater();
  }
  disk_.waitForDone();
}

bool FileFetch::Succeeded() const {
  const int status = reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
  return reply_->error() == QNetworkReply::NoError && status >= 200 && status < 300;
}

// One thing at a time: a piece to write, the end, or nothing until more has come.
void FileFetch::Step() {
  if (ended_ || writing_) return;
  const bool begun = reply_ != nullptr && file_.IsOpen();
  if (!begun || (reply_->isFinished() && !Succeeded())) {
    End(false);
  } else if (reply_->bytesAvailable() > 0) {
    Write();
  } else if (reply_->isFinished()) {
    Finish();
  }
}

void FileFetch::Write() {
  total_ = reply_->header(QNetworkRequest::ContentLengthHeader).toLongLong();
  const QByteArray part = reply_->read(kPiece);
  const bool flush = received_ / kUnwritten != (received_ + part.size()) / kUnwritten;
  OnDisk(
      [this, part, flush] {
        if (!file_.Write(BytesOf(part))) return false;
        // Only begins it, so a failure shows up later.
        if (flush) sync_file_range(file_.Number(), 0, 0, SYNC_FILE_RANGE_WRITE);
        return true;
      },
      [this, size = part.size()](bool written) {
        if (!written) {
          End(false);
          return;
        }
        received_ += size;
        // It may destroy this object, itself not included.
        const QPointer<FileFetch> alive(this);
        const auto progress = events_.progress;
        if (progress) progress(received_, total_);
        if (alive != nullptr) Step();
      });
}

void FileFetch::Finish() {
  OnDisk([this] { return file_.Finish(); },
         [this](bool finished) { End(finished && file_.ReplaceTo(target_)); });
}

void FileFetch::OnDisk(std::function<bool()> work, std::function<void(bool)> then) {
  writing_ = true;
  disk_.start([this, work = std::move(work), then = std::move(then)] {
    const bool good = work();
    QMetaObject::invokeMethod(
        this,
        [this, good, then] {
          writing_ = false;
          then(good);
        },
        Qt::QueuedConnection);
  });
}

void FileFetch::End(bool complete) {
  if (ended_) return;
  ended_ = true;
  if (reply_ != nullptr) reply_->abort();
  const auto done = std::move(events_.done);
  if (done) done(complete);
}

}  // namespace kv
