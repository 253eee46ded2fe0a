// Questions to a disk that answers at once, late, never or with an exception.
#include "system/ask_aside.h"

#include "support/fake_pump.h"

#include <future>
#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>

namespace kv {
namespace {

TEST(AskAsideTest, InterfaceGoesOnUntilTheDiskAnswersOrTheUserGivesUp) {
  FakePump pump;
  bool given_up = false;
  const auto gave_up = [&given_up] { return given_up; };
  EXPECT_EQ(AskAside([] { return 7; }, pump, gave_up), 7);
  EXPECT_EQ(AskAside([]() -> int { throw std::runtime_error("disk"); }, pump, gave_up), 0);

  // An answer that waits for the interface comes only if messages are handled meanwhile.
  const auto late = std::make_shared<std::promise<int>>();
  pump.Post([late] { late->set_value(8); });
  EXPECT_EQ(AskAside([late] { return late->get_future().get(); }, pump, gave_up), 8);

  const auto never = std::make_shared<std::promise<int>>();
  pump.Post([&given_up] { given_up = true; });
  EXPECT_EQ(AskAside([never] { return never->get_future().get(); }, pump, gave_up), std::nullopt);
  never->set_value(9);  // nobody wants it now, and the thread that was left behind ends
}

}  // namespace
}  // namespace kv
