// The real engine with a surface to show its pictures in, and what tests need around it.
#pragma once

#include "engine/dshow_control.h"
#include "engine/mpv_engine.h"
#include "engine/video_surface.h"
#include "support/temp_folder.h"
#include "system/message_pump_qt.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QImage>
#include <QTimer>

#include <atomic>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <thread>

namespace kv {

class EngineWorld {
 public:
  EngineWorld();
  ~EngineWorld();
  EngineWorld(const EngineWorld&) = delete;
  EngineWorld& operator=(const EngineWorld&) = delete;

  MpvEngine& Engine() { return engine_; }
  MessagePumpQt& Pump() { return pump_; }
  VideoSurface& Surface() { return *surface_; }
  const TempFolder& Folder() const { return folder_; }

  // The name that the sound server is looked for under; nobody listens there unless a test does.
  static std::string SoundServer();

  // The path of one of the small media, see tests/media/make_media.
  static std::string Path(const std::string& name);

  // Runs the event loop for that long.
  void Pass(int milliseconds);
  // Runs it until `met` answers true; false when that takes longer.
  bool Becomes(const std::function<bool()>& met, int milliseconds = 8000);

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
  Heartbeat();
  ~Heartbeat();
  Heartbeat(const Heartbeat&) = delete;
  Heartbeat& operator=(const Heartbeat&) = delete;

  // Milliseconds.
  qint64 LongestGap() const;

 private:
  QTimer timer_;
  QElapsedTimer since_beat_;
  qint64 longest_ = 0;
  std::atomic<qint64> machine_longest_{0};
  std::atomic<bool> stop_{false};
  std::thread machine_;
};

// Whether anybody opens a file.
class OpenWatch {
 public:
  explicit OpenWatch(const std::string& path);
  ~OpenWatch();
  OpenWatch(const OpenWatch&) = delete;
  OpenWatch& operator=(const OpenWatch&) = delete;

  // Since the watch began or this was asked last.
  bool Opened();

 private:
  int watch_ = -1;
};

// The bytes of a file.
QByteArray Bytes(const std::string& path);

// What a surface shows, as its window would be asked to paint it; in device pixels.
QImage Look(QWidget& widget);

}  // namespace kv
