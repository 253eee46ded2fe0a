// Asks once whether the sound server answers, without ever waiting for it.
//
// A sound server that accepts a connection and then says nothing holds up whoever opens a sound
// output, for half a minute and more. The probe connects on a thread of its own and gives up after
// a bounded time, so that the player can leave such a server alone and play silently.
#pragma once

#include <atomic>
#include <memory>
#include <string>

namespace kv {

enum class SoundServer {
  kUnknown,  // not asked to the end yet
  kAnswers,  // a server greeted us
  kAbsent,   // nobody listens; other outputs may exist
  kMute,     // somebody accepted the connection and said nothing
};

// The sound outputs worth trying, in the order to try them, as libmpv's option `ao` takes them:
// only those that have somebody at the other end, so that none of them complains or waits; "null"
// when there is none. PulseAudio comes first, which PipeWire serves too: the level meter taps the
// same server.
std::string SoundOutputs(SoundServer server);

class SoundProbe {
 public:
  // Starts asking at once. The thread ends by itself, at most a second later.
  SoundProbe();

  // kUnknown until the probe has ended. Any thread.
  SoundServer Result() const { return result_->load(); }

 private:
  // Shared with the thread, which may outlive this object.
  std::shared_ptr<std::atomic<SoundServer>> result_;
};

}  // namespace kv
