// Timers and clock on the toolkit's event loop. Interface thread only.
#pragma once

#include "system/timers.h"

namespace kv {

class TimerSourceQt : public TimerSource {
 public:
  std::unique_ptr<Timer> MakeTimer(TimerKind kind, int interval_milliseconds,
                                   std::function<void()> on_fire) override;
  TimePoint Now() const override;
};

}  // namespace kv
