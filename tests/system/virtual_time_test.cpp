#include "support/virtual_time.h"

#include "support/fake_pump.h"

#include <gtest/gtest.h>
#include <string>

namespace kv {
namespace {

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
