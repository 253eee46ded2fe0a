#include "system/download_qt.h"

#include "system/temporary_file.h"

#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QPointer>
#include <QUrl>

#include <string_view>
#include <utility>

namespace kv {
namespace {

constexpr qint64 kReadBuffer = qint64{256} * 1024;  // what the toolkit may hold unread
constexpr int kMostRedirections = 10;

bool IsFetchable(const QUrl& url) {
  return url.isValid() && !url.host().isEmpty() &&
         (url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https"));
}

bool IsName(const std::string& path) {
  return !path.empty() && path.find('\0') == std::string::npos;
}

// One answer on its way into a file. Knows nothing of DownloadQt, which may go away meanwhile.
class Fetch {
 public:
  Fetch(QNetworkReply* reply, const TemporaryFile& file, qint64 most_bytes)
      : reply_(reply), file_(file), most_bytes_(most_bytes) {
    QObject::connect(reply, &QNetworkReply::readyRead, &loop_, [this] { Read(); });
    QObject::connect(reply, &QNetworkReply::finished, &loop_, [this] { Finish(); });
  }
  Fetch(const Fetch&) = delete;
  Fetch& operator=(const Fetch&) = delete;
  ~Fetch() {
    if (reply_) reply_->deleteLater();
  }

  // True when the whole answer is in the file. The end of the program ends the wait, too.
  bool Wait() {
    if (!finished_) loop_.exec();
    return complete_;
  }

 private:
  void Read() {
    while (!overflowed_) {
      const QByteArray part = reply_->read(kReadBuffer);
      if (part.isEmpty()) return;
      received_ += part.size();
      overflowed_ =
          received_ > most_bytes_ ||
          !file_.Write(std::string_view(part.constData(), static_cast<std::size_t>(part.size())));
    }
    reply_->abort();  // comes back through Finish()
  }

  void Finish() {
    if (finished_) return;
    finished_ = true;
    // A connection that is closed before the told length has come is an error, too.
    if (reply_->error() == QNetworkReply::NoError) {
      Read();
      const int status = reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
      complete_ = !overflowed_ && status >= 200 && status < 300;
    }
    loop_.quit();
  }

  QPointer<QNetworkReply> reply_;
  const TemporaryFile& file_;
  const qint64 most_bytes_;
  QEventLoop loop_;
  qint64 received_ = 0;
  bool overflowed_ = false;  // too long, or the disk takes no more
  bool finished_ = false;
  bool complete_ = false;
};

}  // namespace

DownloadQt::DownloadQt() : DownloadQt(Limits{}) {}

DownloadQt::DownloadQt(Limits limits) : limits_(limits) {}

DownloadQt::~DownloadQt() {
  Abort();
}

QNetworkReply* DownloadQt::Request(QNetworkRequest& request) {
  if (!manager_) manager_ = std::make_unique<QNetworkAccessManager>();
  request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                       QNetworkRequest::UserVerifiedRedirectPolicy);
  request.setMaximumRedirectsAllowed(kMostRedirections);
  request.setTransferTimeout(limits_.idle_milliseconds);
  QNetworkReply* reply = manager_->get(request);
  reply->setReadBufferSize(kReadBuffer);
  QObject::connect(reply, &QNetworkReply::redirected, reply, [reply](const QUrl& url) {
    // Versions of the toolkit differ in the schemes that they would follow.
    if (IsFetchable(url)) {
      Q_EMIT reply->redirectAllowed();
    } else {
      reply->abort();
    }
  });
  return reply;
}

bool DownloadQt::Get_File(const std::string& url, const std::string& local_name) {
  const QUrl address(QString::fromStdString(url));
  if (!IsFetchable(address)) return false;
  if (!IsName(local_name)) return false;
  TemporaryFile file(local_name.substr(0, local_name.rfind('/') + 1));
  if (!file.IsOpen()) return false;
  QNetworkRequest request(address);
  Fetch fetch(Request(request), file, limits_.bytes);
  // Behind the wait this object may be gone.
  return fetch.Wait() && file.Finish() && file.ReplaceTo(local_name);
}

std::unique_ptr<FileFetch> DownloadQt::Download_To(const std::string& url,
                                                   const std::string& target,
                                                   FileFetch::Events events) {
  const QUrl address(QString::fromStdString(url));
  QNetworkReply* reply = nullptr;
  if (IsFetchable(address) && IsName(target)) {
    QNetworkRequest request(address);
    request.setRawHeader("Accept-Encoding", "identity");
    // Only a connection of its own is held back by what waits for the disk.
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    reply = Request(request);
  }
  return std::make_unique<FileFetch>(reply, target, std::move(events));
}

void DownloadQt::Abort() {
  if (!manager_) return;
  for (QNetworkReply* reply : manager_->findChildren<QNetworkReply*>()) reply->abort();
}

}  // namespace kv
