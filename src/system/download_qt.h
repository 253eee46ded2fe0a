// Fetching by the toolkit: http and https, certificates checked.
//
// The network part is made by the first fetch, so that a start without one does not pay for it.
// Interface thread only. It may be destroyed while it fetches; that fetch then fails.
#pragma once

#include "system/download.h"
#include "system/file_fetch_qt.h"

#include <QtGlobal>

#include <memory>
#include <vector>

class QNetworkAccessManager;
class QNetworkReply;
class QNetworkRequest;

namespace kv {

class DownloadQt : public Download {
 public:
  struct Limits {
    qint64 bytes = qint64{64} * 1024 * 1024;  // a longer answer fails
    int idle_milliseconds = 30000;            // so long without a byte, and it fails
  };

  DownloadQt();
  explicit DownloadQt(Limits limits);
  DownloadQt(const DownloadQt&) = delete;
  DownloadQt& operator=(const DownloadQt&) = delete;
  ~DownloadQt() override;

  // The file gets mode 0600. Redirections are followed within http and https alone. A fetch can
  // begin inside the pump of another; the outer one returns when the inner one has.
  bool Get_File(const std::string& url, const std::string& local_name) override;

  // Fetches `url` into the file `target` beside everything else, whatever its length; see there.
  // The answer comes as it was stored, never unpacked on the way. What is missing to begin makes it
  // fail.
  std::unique_ptr<FileFetch> Download_To(const std::string& url, const std::string& target,
                                         FileFetch::Events events);

  // Every fetch that is running fails.
  void Abort();

 private:
  QNetworkReply* Request(QNetworkRequest& request);

  Limits limits_;
  std::unique_ptr<QNetworkAccessManager> manager_;
};

}  // namespace kv
