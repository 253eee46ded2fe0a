#include "system/wave_file.h"

#include <gtest/gtest.h>

namespace kv {
namespace {

std::string Little(std::uint32_t value, int size) {
  std::string bytes;
  for (int i = 0; i < size; ++i) bytes += static_cast<char>(value >> (8 * i));
  return bytes;
}

std::string Chunk(const std::string& name, const std::string& content) {
  const auto size = static_cast<std::uint32_t>(content.size());
  return name + Little(size, 4) + content + std::string(size % 2, '\0');
}

std::string Format(std::uint32_t tag, std::uint32_t channels, std::uint32_t rate,
                   std::uint32_t bits) {
  return Chunk("fmt ", Little(tag, 2) + Little(channels, 2) + Little(rate, 4) + Little(0, 4) +
                           Little(channels * bits / 8, 2) + Little(bits, 2));
}

std::string Wave(const std::string& chunks) {
  return "RIFF" + Little(static_cast<std::uint32_t>(chunks.size() + 4), 4) + "WAVE" + chunks;
}

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
  const std::string bad[] = {
      "RIFF",
      "RIFF0000AVI " + data,
      Wave(data),
      Wave(data + Format(1, 2, 44100, 16)),
      Wave(Format(2, 2, 44100, 4) + data),
      Wave(Format(1, 0, 44100, 16) + data),
      Wave(Format(1, 1, 0, 16) + data),
      Wave(Chunk("fmt ", "short") + data),
      Wave("junk" + Little(0xFFFFFFFF, 4)),
  };
  for (const std::string& bytes : bad) EXPECT_FALSE(ReadWave(bytes));
}

}  // namespace
}  // namespace kv
