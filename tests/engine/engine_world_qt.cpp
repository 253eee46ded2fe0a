#include "engine_world_qt.h"

#include <QEventLoop>
#include <QPixmap>
#include <QTimer>

#include <algorithm>
#include <array>
#include <chrono>
#include <fstream>
#include <iterator>
#include <sys/inotify.h>
#include <unistd.h>

namespace kv {
namespace {

constexpr int kBeatMilliseconds = 5;

}  // namespace

EngineWorld::EngineWorld() : surface_(std::make_unique<VideoSurface>(engine_.Video().Surfaces())) {
  surface_->resize(320, 240);
  surface_->show();
}

EngineWorld::~EngineWorld() {
  surface_.reset();
  EXPECT_TRUE(engine_.Shutdown(10'000)) << "the core does not end";
}

std::string EngineWorld::SoundServer() {
  return QByteArray(qgetenv("PULSE_SERVER")).mid(qstrlen("unix:")).toStdString();
}

std::string EngineWorld::Path(const std::string& name) {
  return std::string(KV_MEDIA_FOLDER) + "/" + name;
}

void EngineWorld::Pass(int milliseconds) {
  QEventLoop loop;
  QTimer::singleShot(milliseconds, Qt::PreciseTimer, &loop, &QEventLoop::quit);
  loop.exec();
}

bool EngineWorld::Becomes(const std::function<bool()>& met, int milliseconds) {
  QElapsedTimer timer;
  timer.start();
  while (!met()) {
    if (timer.elapsed() > milliseconds) return false;
    pump_.WaitAndPump(10);
  }
  return true;
}

Heartbeat::Heartbeat() {
  since_beat_.start();
  timer_.setTimerType(Qt::PreciseTimer);
  QObject::connect(&timer_, &QTimer::timeout,
                   [this] { longest_ = std::max(longest_, since_beat_.restart()); });
  timer_.start(kBeatMilliseconds);
  machine_ = std::thread([this] {
    QElapsedTimer beat;
    while (!stop_) {
      beat.start();
      std::this_thread::sleep_for(std::chrono::milliseconds(kBeatMilliseconds));
      machine_longest_ = std::max<qint64>(machine_longest_, beat.elapsed() - kBeatMilliseconds);
    }
  });
}

Heartbeat::~Heartbeat() {
  stop_ = true;
  machine_.join();
}

qint64 Heartbeat::LongestGap() const {
  return std::max(longest_, since_beat_.elapsed()) - machine_longest_;
}

OpenWatch::OpenWatch(const std::string& path) : watch_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
  EXPECT_GE(inotify_add_watch(watch_, path.c_str(), IN_OPEN), 0);
}

OpenWatch::~OpenWatch() {
  close(watch_);
}

bool OpenWatch::Opened() {
  alignas(inotify_event) std::array<char, 4096> events{};
  bool opened = false;
  while (read(watch_, events.data(), events.size()) > 0) opened = true;
  return opened;
}

QByteArray Bytes(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  const std::string bytes(std::istreambuf_iterator<char>(file), {});
  EXPECT_FALSE(bytes.empty()) << path;
  return QByteArray::fromStdString(bytes);
}

QImage Look(QWidget& widget) {
  return widget.grab().toImage();
}

}  // namespace kv
