// One turn of the message queue, for routines that work long inside one event.
//
// Anything can happen inside a pump: timers fire, the user clicks, another medium is opened, the
// program is closed. Who pumps must look again at what it relied on. Interface thread only.
#pragma once

namespace kv {

class MessagePump {
 public:
  virtual ~MessagePump() = default;

  // Handles what is waiting in the queue and returns at once.
  virtual void PumpOnce() = 0;

  // Handles what is waiting; with an empty queue sleeps until something arrives, at most
  // `milliseconds` (0 or more).
  virtual void WaitAndPump(int milliseconds) = 0;
};

}  // namespace kv
