#include "system/message_pump_qt.h"
#include "system/text_platform_qt.h"
#include "system/timers_qt.h"

#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace kv {
namespace {

// Pumps until `done`; a limit that only a failing test reaches.
void PumpUntil(const std::function<bool()>& done) {
  MessagePumpQt pump;
  const TimerSourceQt source;
  const auto limit = source.Now() + std::chrono::seconds(10);
  while (!done() && source.Now() < limit) pump.WaitAndPump(5);
  EXPECT_TRUE(done());
}

TEST(TimersQt, RepeatAndNeverReenter) {
  TimerSourceQt source;
  MessagePumpQt pump;
  int fired = 0;
  int depth = 0;
  int other = 0;
  const auto inner = source.MakeTimer(TimerKind::kHighResolution, 1, [&] { ++other; });
  const auto never = source.MakeTimer(TimerKind::kOrdinary, 0, [] { ADD_FAILURE(); });
  std::unique_ptr<Timer> timer;
  timer = source.MakeTimer(TimerKind::kHighResolution, 1, [&] {
    EXPECT_EQ(++depth, 1);
    ++fired;
    timer->Restart(1);  // must not let it in again either
    const int before = other;
    PumpUntil([&] { return other >= before + 3; });  // long enough for three ticks of its own
    --depth;
  });
  EXPECT_FALSE(timer->Enabled());
  inner->SetEnabled(true);
  never->SetEnabled(true);
  timer->SetEnabled(true);
  PumpUntil([&] { return fired >= 2; });
  timer->SetInterval(0);
  EXPECT_TRUE(timer->Enabled());
  const int stopped = fired;
  const int before = other;
  PumpUntil([&] { return other >= before + 3; });
  EXPECT_EQ(fired, stopped);
}

TEST(TimersQt, AHandlerMayDestroyItsTimer) {
  TimerSourceQt source;
  std::unique_ptr<Timer> timer;
  const std::string long_lived(100, 'x');
  std::string seen;
  timer = source.MakeTimer(TimerKind::kOrdinary, 1, [&timer, &seen, long_lived] {
    timer.reset();
    seen = long_lived;  // the handler itself is still there
  });
  timer->SetEnabled(true);
  PumpUntil([&] { return !seen.empty(); });
  EXPECT_EQ(seen, long_lived);
}

TEST(TextPlatformQt, LowersUnicodeAndLeavesBytesAlone) {
  const TextPlatformQt text;
  EXPECT_EQ(text.Lower("\xC3\x84 B \xD0\x96\xFFZ\xC3"), "\xC3\xA4 b \xD0\xB6\xFFz\xC3");
  EXPECT_EQ(text.Lower("\xF0\x90\x90\x80"), "\xF0\x90\x90\xA8");  // beyond 16 bits
  EXPECT_EQ(ToQString("a\xFF"), QStringLiteral("a\uFFFD"));
}

}  // namespace
}  // namespace kv
