#include "system/wave_file.h"

#include "system/wave_bytes.h"

#include <gtest/gtest.h>

namespace kv {
namespace {

TEST(WaveFile, ReadsPlainSamples) {
  const std::string good = Wave(Chunk("LIST", "odd") + Format(1, 2, 44100, 16) +
                                Chunk("data", std::string(176400, 'x')));
  const auto sound = ReadWave(good);
  ASSERT_TRUE(sound);
  EXPECT_EQ(sound->sample, WaveSample::kS16);
  EXPECT_EQ(sound->channels, 2U);
  EXPECT_EQ(sound->Seconds(), 1.0);

  const auto cut = ReadWave(good.substr(0, good.size() - 3));  // whole frames of what is there
  ASSERT_TRUE(cut);
  EXPECT_EQ(cut->frames.size(), 44099U * 4);
}

TEST(WaveFile, RefusesEverythingElse) {
  const std::string data = Chunk("data", "1234");
  for (const std::string& bytes :
       {std::string("RIFF"), "RIFF0000AVI " + data, Wave(data),
        Wave(data + Format(1, 2, 44100, 16)), Wave(Format(2, 2, 44100, 4) + data),
        Wave(Format(1, 0, 44100, 16) + data), Wave(Format(1, 1, 0, 16) + data),
        Wave(Chunk("fmt ", "short") + data), Wave("junk" + Little(0xFFFFFFFF, 4))}) {
    EXPECT_FALSE(ReadWave(bytes)) << bytes;
  }
}

}  // namespace
}  // namespace kv
