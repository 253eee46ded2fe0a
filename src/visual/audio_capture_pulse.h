// The sound of this process, and of no other, from PulseAudio or from PipeWire's service of its
// kind: a record stream tied to our own sink input.
//
// Each capture has a thread with a connection of its own. It looks for the sink input whenever the
// server reports a change, since one appears with each medium and can move; and it connects anew
// once a second while there is no server.
#pragma once

#include "visual/audio_capture.h"

#include <memory>
#include <string>
#include <vector>

namespace kv {

class PulseCapture : public AudioCapture {
 public:
  PulseCapture();
  PulseCapture(const PulseCapture&) = delete;
  PulseCapture& operator=(const PulseCapture&) = delete;
  // Waits for the threads to end, half a second at most; one that is stuck in the system then ends
  // by itself.
  ~PulseCapture() override;

  std::string Start(const CaptureFormat& format) override;
  void Stop() override;
  void Take(std::vector<std::uint8_t>& sound) override;

 private:
  class Session;

  // Shared with the thread, which may outlive this object.
  std::shared_ptr<Session> session_;
  std::vector<std::shared_ptr<Session>> ending_;
};

}  // namespace kv
