// Plays one short sound through the sound server, on a thread of its own.
//
// A server that is missing, refuses or accepts and then never answers ends the attempt in bounded
// time. The functions belong to the interface thread; the callback comes from the sound's thread.
#pragma once

#include "system/wave_file.h"

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

namespace kv {

enum class SoundOutcome { kEnded, kStopped, kNoOutput };

class SoundPlayer {
 public:
  SoundPlayer();
  SoundPlayer(const SoundPlayer&) = delete;
  SoundPlayer& operator=(const SoundPlayer&) = delete;
  ~SoundPlayer();

  // Stops what plays and starts `sound`, again and again with `loop`. `on_done` is called once, as
  // the last thing that the sound's thread does. A sound without frames only asks for an output.
  void Start(WaveSound sound, bool loop, std::function<void(SoundOutcome)> on_done);

  // Returns when nothing plays any more, at once as a person counts.
  void Stop();

  bool Playing() const { return playing_; }

 private:
  std::thread thread_;
  std::atomic<bool> stop_{false};
  std::atomic<bool> playing_{false};
};

}  // namespace kv
