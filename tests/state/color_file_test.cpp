// Colour schemes on the disk.
#include "state/color_file.h"

#include "support/temp_folder.h"

#include <gtest/gtest.h>
#include <string>

namespace kv {
namespace {

ColorTable Numbered(int first) {
  ColorTable colors{};
  for (std::size_t i = 0; i < colors.size(); ++i) colors[i] = first + static_cast<int>(i);
  return colors;
}

TEST(ColorFile, LiesOnTheDiskAsItsSlots) {
  const TempFolder temp;
  ColorTable colors = Numbered(0x00302010);
  colors[32] = -1;
  ASSERT_TRUE(WriteColorFile(temp.Path("a.b.dat"), colors));
  const std::string bytes = temp.Read("a.b.dat");
  EXPECT_EQ(bytes.size(), 132U);
  EXPECT_EQ(bytes.substr(0, 8), std::string("\x10\x20\x30\x00\x11\x20\x30\x00", 8));
  EXPECT_EQ(bytes.substr(128), "\xFF\xFF\xFF\xFF");
  ColorTable read{};
  EXPECT_TRUE(ReadColorFile(temp.Path("a.b.dat"), read));
  EXPECT_EQ(read, colors);
  temp.Write("longer.dat", bytes + "more");
  EXPECT_TRUE(ReadColorFile(temp.Path("longer.dat"), read));
  EXPECT_EQ(read, colors);
}

TEST(ColorFile, FillsWhatAShortSchemeHolds) {
  const TempFolder temp;
  WriteColorFile(temp.Path("whole.dat"), Numbered(100));
  const std::string bytes = temp.Read("whole.dat");
  for (const std::size_t size : {0, 3, 4, 11, 131}) {
    ColorTable colors = Numbered(900);
    EXPECT_FALSE(ReadColorFile(temp.Write("short.dat", bytes.substr(0, size)), colors));
    for (std::size_t i = 0; i < colors.size(); ++i) {
      const int filled = i < size / 4 ? 100 : 900;
      EXPECT_EQ(colors.at(i), filled + static_cast<int>(i)) << size;
    }
  }
}

TEST(ColorFile, ChangesNothingForWhatIsNoFile) {
  const TempFolder temp;
  ColorTable colors = Numbered(1);
  EXPECT_FALSE(ReadColorFile(temp.Path("missing.dat"), colors));
  EXPECT_FALSE(ReadColorFile(temp.MakeFolder("folder.dat"), colors));
  EXPECT_EQ(colors, Numbered(1));
  EXPECT_FALSE(WriteColorFile(temp.Path("folder.dat"), colors));
}

}  // namespace
}  // namespace kv
