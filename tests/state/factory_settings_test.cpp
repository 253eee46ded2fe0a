// The factory files as they are installed: whole, in range, and legible.
#include "state/color_file.h"
#include "state/color_slots.h"
#include "state/settings_file.h"
#include "system/files.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <string>

namespace kv {
namespace {

const char* const kSchemes[] = {"default",  "Daylight", "High contrast",
                                "Fireside", "Moorland", "Nightfall"};

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
    EXPECT_EQ(settings.PlaylistColumnWidth.at(i), 0);  // the window knows the font
  }

  std::string scheme;
  ASSERT_TRUE(ReadWholeFile(KV_DATA_FOLDER "/colorscemes/default.dat", 1000, scheme));
  EXPECT_NE(SettingsToBytes(settings).find(scheme), std::string::npos);
}

TEST(FactorySettings, ColoursAreLegible) {
  using enum ColorSlot;
  const struct {
    ColorSlot front, back;
    double ratio;
  } pairs[] = {
      // texts: WCAG 2, level AA
      {kGeneralText, kGeneralBack, 4.5},
      {kGeneralText, kButtonBack, 4.5},
      {kPlaylistText, kPlaylistBack, 4.5},
      {kPlaylistPlaying, kPlaylistBack, 4.5},
      {kMenuText, kMenuBack, 4.5},
      {kMenuHighlightText, kMenuHighlight, 4.5},
      {kDisplayText, kDisplayBack, 4.5},
      {kFlashText, kDisplayBack, 4.5},
      {kFlashOn, kDisplayBack, 4.5},
      {kDisplayNumber, kDisplayBack, 4.5},
      // lines, traces, what has the focus
      {kScrollerLine, kScrollerBack, 3},
      {kScrollerRange, kScrollerBack, 3},
      {kScrollerRange, kScrollerLine, 2},
      {kMenuHighlightBorder, kMenuBack, 3},
      {kMenuHighlightBorder, kGeneralBack, 3},
      {kMenuHighlightBorder, kPlaylistBack, 3},
      {kMeterText, kMeterBack, 3},
      {kMeterPeak, kMeterBack, 3},
      {kGraphTrace, kGraphBack, 3},
      {kGraphTrace, kGraphGrid, 3},
  };
  for (const char* const name : kSchemes) {
    std::string bytes;
    const std::string path = std::string(KV_DATA_FOLDER "/colorscemes/") + name + ".dat";
    ASSERT_TRUE(ReadWholeFile(path, 1000, bytes)) << path;
    EXPECT_EQ(bytes.size(), 132U) << name;
    ColorTable colors{};
    ASSERT_TRUE(ReadColorFile(path, colors));
    for (const auto& pair : pairs) {
      EXPECT_GE(Contrast(ColorOf(colors, pair.front), ColorOf(colors, pair.back)), pair.ratio)
          << name << ": slot " << static_cast<int>(pair.front) << " on slot "
          << static_cast<int>(pair.back);
    }
  }
}

}  // namespace
}  // namespace kv
