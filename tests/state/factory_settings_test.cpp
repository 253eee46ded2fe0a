// The factory files as they are installed: whole, in range, and legible.
#include "state/settings_file.h"
#include "system/files.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <string>

namespace kv {
namespace {

double Luminance(std::int32_t color) {
  const auto channel = [color](int shift) {
    const double c = (color >> shift & 0xFF) / 255.0;
    return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * channel(0) + 0.7152 * channel(8) + 0.0722 * channel(16);
}

double Contrast(std::int32_t first, std::int32_t second) {
  const double a = Luminance(first);
  const double b = Luminance(second);
  return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

TEST(FactorySettings, AreWholeAndAgreeWithTheDefaultScheme) {
  Settings settings;
  ASSERT_TRUE(ReadSettings(KV_DATA_FOLDER "/config.dat", settings));
  EXPECT_TRUE(IsOn(settings.FirstRun));
  EXPECT_EQ(settings.ColorScheme, "default.dat");
  EXPECT_EQ(SettingsToBytes(settings).size(), 536 + settings.ColorScheme.size());
  auto positions = settings.PlaylistColumnPosition;
  std::sort(positions.begin(), positions.end());
  for (std::size_t i = 0; i < positions.size(); ++i) {
    EXPECT_EQ(positions.at(i), static_cast<int>(i) + 1);
    EXPECT_GT(settings.PlaylistColumnWidth.at(i), 0);
  }

  std::string scheme;
  ASSERT_TRUE(ReadWholeFile(KV_DATA_FOLDER "/colorscemes/default.dat", 1000, scheme));
  EXPECT_EQ(scheme.size(), 132U);
  EXPECT_NE(SettingsToBytes(settings).find(scheme), std::string::npos);
}

TEST(FactorySettings, ColoursAreLegible) {
  Settings settings;
  ASSERT_TRUE(ReadSettings(KV_DATA_FOLDER "/config.dat", settings));
  const struct {
    std::size_t front, back;
    double ratio;
  } pairs[] = {
      // texts
      {4, 1, 4.5},
      {4, 0, 4.5},
      {3, 2, 4.5},
      {7, 2, 4.5},
      {14, 13, 4.5},
      {21, 17, 4.5},
      {23, 22, 4.5},
      {27, 22, 4.5},
      {28, 22, 4.5},
      {29, 22, 4.5},
      // lines and traces
      {9, 8, 3},
      {18, 8, 3},
      {18, 9, 2},
      {19, 13, 3},
      {25, 24, 3},
      {26, 24, 3},
      {31, 30, 3},
      {31, 32, 3},
  };
  for (const auto& pair : pairs) {
    EXPECT_GE(Contrast(settings.Colors.at(pair.front), settings.Colors.at(pair.back)), pair.ratio)
        << "slot " << pair.front << " on slot " << pair.back;
  }
}

}  // namespace
}  // namespace kv
