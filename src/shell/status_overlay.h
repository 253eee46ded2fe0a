// The strip above the movie that says what the player waits for, and the watch over a stream that
// is buffering. Owned by `frmMain`; interface thread only.
#pragma once

#include "engine/dshow_control.h"
#include "system/dialogs.h"
#include "system/message_pump.h"
#include "system/timers.h"

#include <string>

namespace kv {

enum class StatusPicture { kConnecting, kBuffering };

// `picInfo` with its picture and its text `lbInfo`.
class StatusView {
 public:
  virtual ~StatusView() = default;
  virtual void ShowStatusStrip(StatusPicture picture, const std::string& text) = 0;
  virtual void HideStatusStrip() = 0;
};

class StatusOverlay {
 public:
  static constexpr int kBuffering = 0;
  static constexpr int kConnecting = 1;

  // The timers are the form's of those names; their events are passed on to the handlers below.
  StatusOverlay(StatusView& view, clsDShowControl& movie, Dialogs& dialogs, MessagePump& pump,
                Timer& check_buffering, Timer& check_buffering_timeout);

  // Shows the strip and lets it be painted. kBuffering also starts the watch; a number that is
  // neither shows nothing.
  void ShowStatus(int Kind);
  void RemoveStatus();

  // The first position of the stream ends the watch ...
  void OnCheckBuffering();
  // ... or its time runs out, which the user is told; playing is not stopped.
  void OnCheckBufferingTimeout();

 private:
  void StopWatch();

  StatusView& view_;
  clsDShowControl& movie_;
  Dialogs& dialogs_;
  MessagePump& pump_;
  Timer& tmrCheckBuffering_;
  Timer& tmrCheckBufferingTimeout_;
};

}  // namespace kv
