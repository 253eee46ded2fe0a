// One answer from the network on its way into a file, of any length, beside everything else.
//
// The bytes go to a temporary file in the folder of the target, written by a thread of its own, so
// that a slow disk holds up neither the interface nor, by more than a few pieces, the memory. Made
// by DownloadQt; whoever asked for it owns it, and ends it by destroying it. Interface thread only.
#pragma once

#include "system/temporary_file.h"

#include <QByteArray>
#include <QNetworkReply>
#include <QObject>
#include <QPointer>
#include <QThreadPool>

#include <cstdint>
#include <functional>
#include <string>

namespace kv {

class FileFetch : public QObject {
  Q_OBJECT

 public:
  // The fetch may be destroyed inside both.
  struct Events {
    // More has been written; `total` is 0 while nobody told it. Bytes.
    std::function<void(std::int64_t received, std::int64_t total)> progress;
    // The last call: true when the whole answer stands under the target's name.
    std::function<void(bool complete)> done;
  };

  // `reply` null: fails. Takes it over. `done` is never called from here.
  FileFetch(QNetworkReply* reply, const std::string& target, Events events);
  FileFetch(const FileFetch&) = delete;
  FileFetch& operator=(const FileFetch&) = delete;
  // Ends it unless it is done: no partial file stays, and nobody is told. Waits for the piece that
  // is being written.
  ~FileFetch() override;

 private:
  void Step();
  void Write();
  void Finish();
  void End(bool complete);
  bool Succeeded() const;
  // Runs `work` on the thread of the file, then `then` with its answer here.
  void OnDisk(std::function<bool()> work, std::function<void(bool)> then);

  QPointer<QNetworkReply> reply_;
  std::string target_;
  Events events_;
  TemporaryFile file_;
  std::int64_t received_ = 0;
  std::int64_t total_ = 0;
  bool writing_ = false;  // the thread has something to do
  bool ended_ = false;
  QThreadPool disk_;  // one thread; goes first
};

}  // namespace kv
