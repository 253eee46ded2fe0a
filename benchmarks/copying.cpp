// How fast a large file is copied, against `cp`: the same file, in turn, in one run.
//
// copying FOLDER [MEGABYTES [RUNS]]: makes the file in FOLDER, which says what disk is measured,
// and removes everything again. Once with the file in the cache ("warm") and once after the system
// was told to forget it ("cold"). Ours carries the whole load of the window's copier: a thread, an
// event for each block and the interface thread that takes them. The pair changes its order from
// run to run. Prints medians, extremes and the ratio of speeds, and how long single pieces of news
// kept the interface thread.
#include "controls/file_copier.h"
#include "system/dialogs_qt.h"
#include "system/file_descriptor.h"
#include "system/text_platform_qt.h"
#include "system/timers_qt.h"

#include <QApplication>
#include <QEventLoop>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <functional>
#include <random>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace kv {
namespace {

using Clock = std::chrono::steady_clock;
constexpr std::int32_t kBlockSize = 262144;
constexpr std::size_t kMegabyte = std::size_t{1024} * 1024;

double Milliseconds(Clock::time_point begin) {
  return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

void MakeFile(const std::string& path, int megabytes) {
  const FileDescriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  std::mt19937_64 random(1);
  std::string block(kMegabyte, '\0');
  for (int i = 0; i < megabytes; ++i) {
    for (std::size_t at = 0; at < block.size(); at += 64) block[at] = static_cast<char>(random());
    if (!file.Write(block)) {
      std::perror(path.c_str());
      std::exit(1);
    }
  }
}

// What earlier runs left to be written must not be paid for by this one.
void Settle(const std::string& file, bool cold) {
  sync();
  const FileDescriptor source(open(file.c_str(), O_RDONLY | O_CLOEXEC));
  if (cold) posix_fadvise(source.Number(), 0, 0, POSIX_FADV_DONTNEED);
}

class Ours : public QObject {
 public:
  double Copy(const std::string& from, const std::string& to) {
    const auto begin = Clock::now();
    QEventLoop loop;
    CopyResult result = CopyResult::kDiskError;
    copier_.xCopyFile(from, to, kBlockSize, false, [&](CopyResult code) {
      result = code;
      loop.quit();
    });
    loop.exec();
    const double taken = Milliseconds(begin);
    if (result != CopyResult::kDone) std::exit(1);
    return taken;
  }

  // How long each piece of news kept the interface thread.
  const std::vector<double>& Pieces() const { return pieces_; }

 private:
  void Post(std::function<void()> work) {
    QMetaObject::invokeMethod(
        this,
        [this, work = std::move(work)] {
          const auto begin = Clock::now();
          work();
          pieces_.push_back(Milliseconds(begin));
        },
        Qt::QueuedConnection);
  }

  std::vector<double> pieces_;
  DialogsQt dialogs_;
  TextPlatformQt text_;
  TimerSourceQt time_;
  FileCopier copier_{
      {dialogs_, text_, time_, [this](std::function<void()> work) { Post(std::move(work)); }}};
};

double CopyByCp(std::string from, std::string to) {
  std::string name = "cp";
  char* const arguments[] = {name.data(), from.data(), to.data(), nullptr};
  const auto begin = Clock::now();
  pid_t child = 0;
  int status = 1;
  if (posix_spawnp(&child, "cp", nullptr, nullptr, arguments, environ) != 0 ||
      waitpid(child, &status, 0) != child || status != 0) {
    std::exit(1);
  }
  return Milliseconds(begin);
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

void Print(const char* who, const std::vector<double>& values) {
  const auto [least, most] = std::minmax_element(values.begin(), values.end());
  std::printf("  %-12s median %8.2f   min %8.2f   max %8.2f\n", who, Median(values), *least, *most);
}

void Compare(const char* title, const std::string& folder, int runs, bool cold) {
  const std::string from = folder + "source";
  const std::string to = folder + "copy";
  Ours ours;
  std::vector<double> our_times;
  std::vector<double> their_times;
  const auto run = [&](bool our_turn) {
    Settle(from, cold);
    (our_turn ? our_times : their_times)
        .push_back(our_turn ? ours.Copy(from, to) : CopyByCp(from, to));
    unlink(to.c_str());
  };
  for (int i = 0; i < runs; ++i) {
    run(i % 2 == 0);
    run(i % 2 != 0);
  }
  std::printf("\n%s, ms\n", title);
  Print("kestrelview", our_times);
  Print("cp", their_times);
  std::printf("  speed as a share of cp's %.2f\n", Median(their_times) / Median(our_times));
  std::printf("\n%s, news on the interface thread, ms\n", title);
  Print("kestrelview", ours.Pieces());
}

int Main(const std::string& where, int megabytes, int runs) {
  std::string folder = where + "/copying-XXXXXX";
  if (mkdtemp(folder.data()) == nullptr) {
    std::perror(where.c_str());
    return 1;
  }
  folder += '/';
  MakeFile(folder + "source", megabytes);
  std::printf("%d MB, %d runs each\n", megabytes, runs);
  Compare("Warm", folder, runs, false);
  Compare("Cold", folder, runs, true);
  unlink((folder + "source").c_str());
  rmdir(folder.c_str());
  return 0;
}

}  // namespace
}  // namespace kv

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  if (argc < 2) {
    std::fprintf(stderr, "usage: copying FOLDER [MEGABYTES [RUNS]]\n");
    return 2;
  }
  return kv::Main(argv[1], argc > 2 ? std::atoi(argv[2]) : 1024, argc > 3 ? std::atoi(argv[3]) : 5);
}
