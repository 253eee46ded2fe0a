// The settings record against its file layout, which is laid out here a second time and by hand.
#include "state/settings_file.h"
#include "support/temp_folder.h"
#include "system/files.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <filesystem>
#include <gtest/gtest.h>
#include <sstream>
#include <string>

namespace kv {
namespace {

// Every element has a value of its own: field number * 100 + index in its array.
std::string Layout() {
  std::string bytes;
  std::uint64_t number = 0;
  const auto put = [&bytes](std::uint64_t bits, int size) {
    for (int i = 0; i < size; ++i) bytes += static_cast<char>(bits >> 8 * i & 0xFF);
  };
  const auto value = [&number](std::uint64_t i) { return number * 100 + i; };
  const auto run = [&](const char* types, std::uint64_t count = 1) {
    for (; *types != '\0'; ++types) {
      ++number;
      for (std::uint64_t i = 0; i < count; ++i) {
        const std::string text = std::to_string(value(i));
        if (*types == 'I') put(value(i), 2);
        if (*types == 'L') put(value(i), 4);
        if (*types == 'D') put(std::bit_cast<std::uint64_t>(static_cast<double>(value(i))), 8);
        if (*types != 'S') continue;
        put(text.size(), 2);
        bytes += text;
      }
    }
  };
  run("ISILIIIIIIIIIIIIIIILLIIILLLLLSLLLLSSIDIIILLLLI");  // 1 to 46
  run("L", 33);                                           // 47, the colours
  run("SILDILLLLLSLISSSLLLLII");                          // 48 to 69
  run("DL", 12);                                          // 70 and 71, the playlist's columns
  run("I", 3);                                            // 72
  run("IIII");                                            // 73 to 76
  run("I", 2);                                            // 77
  run("I", 4);                                            // 78
  run("IIII");                                            // 79 to 82
  run("S", 10);                                           // 83, the recent files
  run("II");                                              // 84 and 85
  return bytes;
}

Settings Numbered() {
  Settings settings;
  EXPECT_TRUE(SettingsFromBytes(Layout() + "what follows is ignored", settings));
  return settings;
}

TEST(Settings, EveryFieldStandsInItsPlace) {
  EXPECT_EQ(SettingsToBytes(Settings()).size(), 536U);
  const Settings s = Numbered();
  EXPECT_EQ(SettingsToBytes(s), Layout());
  // By name: the first and the last, and one of each stretch between.
  std::ostringstream named;
  for (const int number : {+s.AutoPlayResume, +s.FitToWindow, +s.FirstRun, +s.WindowTop, +s.Volume,
                           +s.PlaylistIndex, +s.PlaylistWidth, +s.Colors[32], +s.AudioSampleRate,
                           +s.PlaylistColumnPosition[11], +s.AutoRestart, +s.SilentSizing}) {
    named << number << ' ';
  }
  named << s.LastPosition << ' ' << s.PlaylistColumnWidth[11] << ' ' << s.LastOpenFolder << ' '
        << s.PlaylistFile << ' ' << s.CurrentFile << ' ' << s.ColorScheme << ' ' << s.PluginKey
        << ' ' << s.RecentFiles[9];
  EXPECT_EQ(named.str(),
            "100 1000 1700 2800 2900 3400 4500 4732 5700 7111 8000 8500 "
            "3800 7011 3000 3500 3600 4800 6300 8309");
}

TEST(Settings, LongTextsAreCutBetweenCharacters) {
  Settings settings;
  settings.CurrentFile = std::string(65534, 'x') + "\xC3\xA9";
  settings.PlaylistFile = std::string(70000, 'y');
  Settings read;
  EXPECT_TRUE(SettingsFromBytes(SettingsToBytes(settings), read));
  EXPECT_EQ(read.CurrentFile, std::string(65534, 'x'));
  EXPECT_EQ(read.PlaylistFile.size(), 65535U);
}

TEST(Settings, DamagedRecords) {
  const std::string whole = Layout();
  // Cut anywhere, the fields up to there are read and all others keep their values.
  Settings before;
  before.SilentSizing = 77;
  before.QuickSearchText = "kept";
  for (std::size_t size = 0; size < whole.size(); ++size) {
    Settings read = before;
    EXPECT_FALSE(SettingsFromBytes(std::string_view(whole).substr(0, size), read)) << size;
    EXPECT_EQ(read.AutoPlayResume, size < 2 ? 0 : 100) << size;
    EXPECT_EQ(read.QuickSearchText, size < 7 ? "kept" : "200") << size;
    EXPECT_EQ(read.SilentSizing, 77) << size;
  }
  // A text longer than the file ends the reading, too.
  std::string damaged = whole;
  damaged[2] = '\xFF';
  damaged[3] = '\xFF';
  Settings read = before;
  EXPECT_FALSE(SettingsFromBytes(damaged, read));
  before.AutoPlayResume = 100;
  EXPECT_EQ(read, before);
}

TEST(Settings, OnTheDisk) {
  const TempFolder folder;
  const std::string path = folder.Path("config.dat");
  Settings read = Numbered();
  EXPECT_FALSE(ReadSettings(path, read));
  EXPECT_EQ(folder.Entries(), 0);
  EXPECT_FALSE(ReadSettings(folder.Write("config.dat", ""), read));
  EXPECT_FALSE(ReadSettings(folder.MakeFolder("folder"), read));
  EXPECT_FALSE(WriteSettings(folder.Path("folder"), read));
  EXPECT_EQ(read, Numbered());
  std::filesystem::permissions(path, std::filesystem::perms::owner_read);
  std::string error;
  EXPECT_TRUE(WriteSettings(path, Numbered(), &error)) << error;
  EXPECT_EQ(folder.Read("config.dat"), Layout());
  Settings again;
  EXPECT_TRUE(ReadSettings(path, again));
  EXPECT_EQ(again, Numbered());
}

TEST(Settings, ClearForgetsWhatWasPlayedAndKeepsTheOptions) {
  Settings cleared = Numbered();
  ClearForFirstStart(cleared);
  EXPECT_EQ(cleared.LastSaveFolder + cleared.LastOpenFolder, "");
  EXPECT_EQ(cleared.PlaylistFile + cleared.CurrentFile + cleared.RecentFiles[0], "");
  EXPECT_TRUE(IsOn(cleared.FirstRun));
  EXPECT_EQ(cleared.SilentSizing, Numbered().SilentSizing);
}

// As it is installed.
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

}  // namespace
}  // namespace kv
