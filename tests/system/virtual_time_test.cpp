#include "support/virtual_time.h"

#include "support/fake_pump.h"

#include <gtest/gtest.h>
#include <string>

namespace kv {
namespace {

TEST(VirtualTime, FiresInTheOrderOfTime) {
  VirtualTime time;
  std::string log;
  const auto slow = time.MakeTimer(TimerKind::kOrdinary, 30, [&] { log += 's'; });
  const auto fast = time.MakeTimer(TimerKind::kHighResolution, 10, [&] { log += 'f'; });
  const auto never = time.MakeTimer(TimerKind::kOrdinary, 0, [&] { log += '!'; });
  slow->SetEnabled(true);
  fast->SetEnabled(true);
  never->SetEnabled(true);
  time.Advance(9);
  fast->SetEnabled(true);  // running already: nothing changes
  time.Advance(20);
  EXPECT_EQ(log, "ff");
  time.Advance(1);
  EXPECT_EQ(log, "ffsf");
  fast->SetInterval(25);  // starts the wait over
  slow->SetEnabled(false);
  time.Advance(24);
  EXPECT_EQ(log, "ffsf");
  time.Advance(1);
  EXPECT_EQ(log, "ffsff");
  EXPECT_EQ(time.ActiveTimers(), 1);
}

TEST(VirtualTime, NoTimerFiresInsideItsOwnHandler) {
  VirtualTime time;
  FakePump pump(&time);
  std::string log;
  std::unique_ptr<Timer> one_shot;
  const auto tick = time.MakeTimer(TimerKind::kOrdinary, 10, [&] {
    log += '(';
    pump.WaitAndPump(25);
    log += ')';
  });
  one_shot = time.MakeTimer(TimerKind::kOrdinary, 15, [&] {
    log += 'o';
    one_shot.reset();  // may go from its own handler
  });
  tick->SetEnabled(true);
  one_shot->SetEnabled(true);
  time.Advance(35);
  EXPECT_EQ(log, "(o)");
  time.Advance(5);
  EXPECT_EQ(log, "(o)()");
}

}  // namespace
}  // namespace kv
