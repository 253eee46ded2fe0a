#include "view/window_caption.h"

#include "support/virtual_time.h"

#include <gtest/gtest.h>
#include <string>

namespace kv {
namespace {

class WindowCaptionTest : public testing::Test {
 protected:
  static constexpr const char* kBase = "K\u00E4 1";

  // The captions set while the clock moves on, each with "|" behind it.
  std::string During(int milliseconds) {
    captions.clear();
    time.Advance(milliseconds);
    return captions;
  }

  VirtualTime time;
  Settings settings;
  std::string captions;
  std::unique_ptr<Timer> normalize =
      time.MakeTimer(TimerKind::kOrdinary, 3000, [this] { caption.OnNormalizeCaption(); });
  std::unique_ptr<Timer> delay =
      time.MakeTimer(TimerKind::kOrdinary, 5, [this] { caption.OnSetCaptionDelay(); });
  WindowCaption caption{[this](const std::string& text) { captions += text + "|"; }, settings,
                        *normalize, *delay, kBase};
};

TEST_F(WindowCaptionTest, TypesTheNameAfterThreeSeconds) {
  caption.SetTempWindowCaption("a");
  time.Advance(2000);
  caption.SetTempWindowCaption("100.0 %");
  EXPECT_EQ(captions, "a|100.0 %|");
  EXPECT_EQ(During(2999), "");
  EXPECT_EQ(During(51), "|");  // and ten ticks of nothing
  EXPECT_EQ(During(1000), "K|K\u00E4|K\u00E4 |K\u00E4 1|");
  EXPECT_EQ(time.ActiveTimers(), 0);
}

TEST_F(WindowCaptionTest, LeavesTheCaptionAloneInFullScreen) {
  caption.SetTempWindowCaption("a");
  time.Advance(3055);
  settings.FullScreen = FromBool(true);
  EXPECT_EQ(During(10'000), "");
  EXPECT_EQ(time.ActiveTimers(), 0);
  caption.SetTempWindowCaption("b");
  EXPECT_EQ(captions, "");
}

TEST_F(WindowCaptionTest, DoesNotTypeWhereMotionIsUnwanted) {
  caption.SetReducedMotion(true);
  caption.SetTempWindowCaption("a");
  EXPECT_EQ(During(10'000), std::string(kBase) + "|");
  EXPECT_EQ(time.ActiveTimers(), 0);
}

}  // namespace
}  // namespace kv
