// Sees to it that a core plays into a sound server that comes, goes and comes back.
//
// A core whose sound output breaks off goes on without sound, and would stay so. While it does, the
// server is asked from time to time, more and more seldom, and a core whose server answers is told
// to open its output anew. Nothing here waits for a server. Owned by `MpvEngine`; interface thread
// only.
#pragma once

#include "engine/sound_probe.h"

#include <QTimer>

#include <chrono>
#include <string>

namespace kv {

class MpvCore;

class SoundWatch {
 public:
  // Begins to ask the server at once.
  SoundWatch();
  SoundWatch(const SoundWatch&) = delete;
  SoundWatch& operator=(const SoundWatch&) = delete;

  // A new core, which plays into nothing yet; null for none. It must outlive its turn.
  void SetCore(MpvCore* core);

  // The core before got stuck, which may be the server's doing: until it is asked anew it is taken
  // for one that never answers.
  void Suspect();

  // It is known whether the server answers.
  bool Asked() { return Answer() != SoundServer::kUnknown; }

  // Tells the core which sound outputs there are, if it was told otherwise.
  void Apply();

  // Before a medium is opened: a server that did not answer now may answer for the next one.
  void ApplyAndLookAhead();

 private:
  // A restarted server is there within a second or two; one that is not installed never comes.
  static constexpr std::chrono::milliseconds kFirstLook{1000};

  // What the server answered last.
  SoundServer Answer();
  void AskAgain();
  void OutputChanged(const std::string& output);
  void Look();

  MpvCore* core_ = nullptr;
  SoundProbe probe_;
  SoundServer answer_ = SoundServer::kUnknown;
  std::string outputs_;  // that the core was told to try
  QTimer timer_;         // runs while the core plays into nothing
  std::chrono::milliseconds pause_ = kFirstLook;
  bool asking_ = false;  // once more, and the timer waits for the answer
};

}  // namespace kv
