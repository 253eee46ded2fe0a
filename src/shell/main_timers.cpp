#include "shell/main_timers.h"

#include <utility>

namespace kv {
namespace {

// `operator[]` finds a timer by the number of its name.
constexpr bool RowsStandInOrder() {
  for (std::size_t i = 0; i < kMainTimers.size(); ++i) {
    if (static_cast<std::size_t>(kMainTimers[i].id) != i) return false;
  }
  return true;
}
static_assert(RowsStandInOrder());

}  // namespace

MainTimers::MainTimers(TimerSource& source, std::function<void(MainTimer)> on_fire)
    : on_fire_(std::move(on_fire)) {
  for (const MainTimerRow& row : kMainTimers) {
    timers_[static_cast<std::size_t>(row.id)] =
        source.MakeTimer(row.kind, row.interval, [this, id = row.id] { on_fire_(id); });
  }
}

void MainTimers::StopAllTimers() {
  for (const auto& timer : timers_) timer->SetEnabled(false);
}

}  // namespace kv
