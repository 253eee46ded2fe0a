// The message pump on the toolkit's event loop. Interface thread only.
#pragma once

#include "system/message_pump.h"

namespace kv {

class MessagePumpQt : public MessagePump {
 public:
  void PumpOnce() override;
  void WaitAndPump(int milliseconds) override;
};

}  // namespace kv
