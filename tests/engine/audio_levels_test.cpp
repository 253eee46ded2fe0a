#include "engine/audio_levels.h"

#include <gtest/gtest.h>
#include <limits>

namespace kv {
namespace {

TEST(AudioLevels, VolumeIsHundredthsOfADecibel) {
  struct Row {
    int volume;
    double gain;
  };
  for (const Row& row : {Row{0, 1.0}, Row{-1, 0.99885}, Row{-600, 0.50119}, Row{-2000, 0.1},
                         Row{-4000, 0.01}, Row{-9999, 1.00115e-5}}) {
    EXPECT_NEAR(GainOfVolume(row.volume) / row.gain, 1.0, 1e-4) << row.volume;
  }
  // Silence is none at all, not merely faint.
  for (const int volume : {kSilence, -20000, std::numeric_limits<int>::min()}) {
    EXPECT_EQ(GainOfVolume(volume), 0.0) << volume;
  }
}

TEST(AudioLevels, BalanceAttenuatesTheFarChannelAlone) {
  struct Row {
    int balance;
    double left;
    double right;
  };
  for (const Row& row :
       {Row{0, 1.0, 1.0}, Row{2000, 0.1, 1.0}, Row{-2000, 1.0, 0.1}, Row{600, 0.50119, 1.0},
        Row{-600, 1.0, 0.50119}, Row{kBalanceLimit, 0.0, 1.0}, Row{-kBalanceLimit, 1.0, 0.0}}) {
    const ChannelGains gains = GainsOfBalance(row.balance);
    EXPECT_NEAR(gains.left, row.left, 1e-5) << row.balance;
    EXPECT_NEAR(gains.right, row.right, 1e-5) << row.balance;
  }
}

}  // namespace
}  // namespace kv
