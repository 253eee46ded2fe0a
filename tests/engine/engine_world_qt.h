// The real engine with a surface to show its pictures in, and what tests need around it.
#pragma once

#include "engine/dshow_control.h"
#include "engine/mpv_engine.h"
#include "engine/video_surface.h"
#include "support/temp_folder.h"
#include "system/message_pump_qt.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QImage>
#include <QPixmap>
#include <QTimer>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <sys/inotify.h>
#include <thread>
#include <unistd.h>

namespace kv {

class EngineWorld {
 public:
  EngineWorld() : surface_(std::make_unique<VideoSurface>(engine_.Video().Surfaces())) {
    surface_->resize(320, 240);
    surface_->show();
  }
  ~EngineWorld() {
    surface_.reset();
    EXPECT_TRUE(engine_.Shutdown(10'000)) << "the core does not end";
  }
  EngineWorld(const EngineWorld&) = delete;
  EngineWorld& operator=(const EngineWorld&) = delete;

  MpvEngine& Engine() { return engine_; }
  MessagePumpQt& Pump() { return pump_; }
  VideoSurface& Surface() { return *surface_; }
  const TempFolder& Folder() const { return folder_; }

  // The name that the sound server is looked for under; nobody listens there unless a test does.
  static std::string SoundServer() {
    return QByteArray(qgetenv("PULSE_SERVER")).mid(qstrlen("unix:")).toStdString();
  }

  // The path of one of the small media, see tests/media/make_media.
  static std::string Path(const std::string& name) { return KV_MEDIA_FOLDER "/" + name; }

  std::shared_ptr<FilterGraph> Graph() { return engine_.CreateGraph(); }

  // A graph that holds one of the small media.
  std::shared_ptr<FilterGraph> Render(const std::string& medium) {
    auto graph = Graph();
    EXPECT_TRUE(graph->RenderFile(Path(medium))) << medium;
    return graph;
  }

  // Seconds; -1 where there is none.
  static double Position(const FilterGraph& graph) {
    return graph.get_CurrentPosition().value_or(-1.0);
  }

  // Runs the event loop for that long.
  static void Pass(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
  }
  // Runs it until `met` answers true; false when that takes longer.
  bool Becomes(const std::function<bool()>& met, int milliseconds = 8000) {
    QElapsedTimer timer;
    timer.start();
    while (!met()) {
      if (timer.elapsed() > milliseconds) return false;
      pump_.WaitAndPump(10);
    }
    return true;
  }

 private:
  TempFolder folder_;
  MessagePumpQt pump_;
  MpvEngine engine_{pump_, VideoPath::kSoftware};
  std::unique_ptr<VideoSurface> surface_;
};

// Whether the thread of the test keeps turning its event loop: the longest time in which a timer on
// it did not fire. A thread beside it that only sleeps tells how long the machine itself was away,
// which does not count.
class Heartbeat {
 public:
  Heartbeat() {
    since_beat_.start();
    timer_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer_, &QTimer::timeout,
                     [this] { longest_ = std::max(longest_, since_beat_.restart()); });
    timer_.start(kBeatMilliseconds);
  }
  ~Heartbeat() {
    stop_ = true;
    machine_.join();
  }
  Heartbeat(const Heartbeat&) = delete;
  Heartbeat& operator=(const Heartbeat&) = delete;

  // Milliseconds.
  qint64 LongestGap() const { return std::max(longest_, since_beat_.elapsed()) - machine_longest_; }

 private:
  static constexpr int kBeatMilliseconds = 5;

  QTimer timer_;
  QElapsedTimer since_beat_;
  qint64 longest_ = 0;
  std::atomic<qint64> machine_longest_{0};
  std::atomic<bool> stop_{false};
  std::thread machine_{[this] {
    QElapsedTimer beat;
    while (!stop_) {
      beat.start();
      std::this_thread::sleep_for(std::chrono::milliseconds(kBeatMilliseconds));
      machine_longest_ = std::max<qint64>(machine_longest_, beat.elapsed() - kBeatMilliseconds);
    }
  }};
};

// Whether anybody opens a file.
class OpenWatch {
 public:
  explicit OpenWatch(const std::string& path) {
    EXPECT_GE(inotify_add_watch(watch_, path.c_str(), IN_OPEN), 0);
  }
  ~OpenWatch() { close(watch_); }
  OpenWatch(const OpenWatch&) = delete;
  OpenWatch& operator=(const OpenWatch&) = delete;

  // Since the watch began or this was asked last.
  bool Opened() const {
    alignas(inotify_event) std::array<char, 4096> events{};
    bool opened = false;
    while (read(watch_, events.data(), events.size()) > 0) opened = true;
    return opened;
  }

 private:
  int watch_ = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
};

// The bytes of a file.
inline QByteArray Bytes(const std::string& path) {
  QFile file(QString::fromStdString(path));
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path;
  return file.readAll();
}

// What a surface shows, as its window would be asked to paint it; in device pixels.
inline QImage Look(QWidget& widget) {
  return widget.grab().toImage();
}

}  // namespace kv
