// The settings record against its file layout, which is laid out here a second time and by hand.
#include "state/settings_file.h"
#include "support/temp_folder.h"

#include <bit>
#include <cstdint>
#include <filesystem>
#include <gtest/gtest.h>
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
  const auto next = [&](char type, std::uint64_t count = 1) {
    ++number;
    for (std::uint64_t i = 0; i < count; ++i) {
      const std::string text = std::to_string(value(i));
      switch (type) {
        case 'I':
          put(value(i), 2);
          break;
        case 'L':
          put(value(i), 4);
          break;
        case 'D':
          put(std::bit_cast<std::uint64_t>(static_cast<double>(value(i))), 8);
          break;
        default:
          put(text.size(), 2);
          bytes += text;
      }
    }
  };
  const auto run = [&](const char* types) {
    for (; *types != '\0'; ++types) next(*types);
  };
  run("ISILIIIIII");    // 1 to 10
  run("IIIIIIIIIL");    // 11 to 20
  run("LIIILLLLLS");    // 21 to 30
  run("LLLLSSIDII");    // 31 to 40
  run("ILLLLI");        // 41 to 46
  next('L', 33);        // 47, the colours
  run("SILD");          // 48 to 51
  run("ILLLLLSLISSS");  // 52 to 63
  run("LLLLII");        // 64 to 69
  next('D', 12);        // 70 and 71, the playlist's columns
  next('L', 12);
  next('I', 3);   // 72
  run("IIII");    // 73 to 76
  next('I', 2);   // 77
  next('I', 4);   // 78
  run("IIII");    // 79 to 82
  next('S', 10);  // 83, the recent files
  run("II");      // 84 and 85
  return bytes;
}

Settings Numbered() {
  Settings s;
  s.AutoPlayResume = 100;
  s.QuickSearchText = "200";
  s.CpuGraphGridMove = 300;
  s.CpuGraphInterval = 400;
  s.CpuGraph = 500;
  s.CpuGraphGrid = 600;
  s.HideControlsInFullscreen = 700;
  s.FullScreen = 800;
  s.KeepAspect = 900;
  s.FitToWindow = 1000;
  s.HideInFullscreen = 1100;
  s.HideInNormal = 1200;
  s.IncludePathInFileTitle = 1300;
  s.AutoLoadLast = 1400;
  s.SavePlaylist = 1500;
  s.reserved16 = 1600;
  s.FirstRun = 1700;
  s.ShowFramesWhileScrolling = 1800;
  s.PlaylistShowDetails = 1900;
  s.reserved20 = 2000;
  s.reserved21 = 2100;
  s.MinimizeToTray = 2200;
  s.RememberWindowPos = 2300;
  s.RememberSize = 2400;
  s.WindowWidth = 2500;
  s.WindowHeight = 2600;
  s.WindowLeft = 2700;
  s.WindowTop = 2800;
  s.Volume = 2900;
  s.LastOpenFolder = "3000";
  s.RepeatMode = 3100;
  s.PlayRate = 3200;
  s.Balance = 3300;
  s.PlaylistIndex = 3400;
  s.PlaylistFile = "3500";
  s.CurrentFile = "3600";
  s.StorePos = 3700;
  s.LastPosition = 3800;
  s.AutoStart = 3900;
  s.DragDropAddsToPlaylist = 4000;
  s.reserved41 = 4100;
  s.PlaylistTop = 4200;
  s.PlaylistLeft = 4300;
  s.PlaylistHeight = 4400;
  s.PlaylistWidth = 4500;
  s.PlaylistVisible = 4600;
  for (int i = 0; i < 33; ++i) s.Colors.at(static_cast<std::size_t>(i)) = 4700 + i;
  s.ColorScheme = "4800";
  s.PlayingFromPlaylist = 4900;
  s.reserved50 = 5000;
  s.PreviousItemPosition = 5100;
  s.ShowVuMeter = 5200;
  s.VuMeterStyle = 5300;
  s.VuRefreshRate = 5400;
  s.AudioBufferSize = 5500;
  s.AudioBufferCount = 5600;
  s.AudioSampleRate = 5700;
  s.LastSaveFolder = "5800";
  s.PluginStyle = 5900;
  s.UseExternalPlugin = 6000;
  s.PluginProgId = "6100";
  s.PluginName = "6200";
  s.PluginKey = "6300";
  s.VumeterTop = 6400;
  s.VumeterLeft = 6500;
  s.VumeterHeight = 6600;
  s.VumeterWidth = 6700;
  s.VumeterVisible = 6800;
  s.AutoNext = 6900;
  for (int i = 0; i < 12; ++i) {
    s.PlaylistColumnWidth.at(static_cast<std::size_t>(i)) = 7000 + i;
    s.PlaylistColumnPosition.at(static_cast<std::size_t>(i)) = 7100 + i;
  }
  s.reserved72 = {7200, 7201, 7202};
  s.SaveAbsolutePaths = 7300;
  s.FindPlaying = 7400;
  s.AutoZoom = 7500;
  s.AutoPlayPlaylist = 7600;
  s.reserved77 = {7700, 7701};
  s.reserved78 = {7800, 7801, 7802, 7803};
  s.AutoFullscreen = 7900;
  s.AutoRestart = 8000;
  s.RestartPlaying = 8100;
  s.LastWindowState = 8200;
  for (int i = 0; i < 10; ++i) {
    s.RecentFiles.at(static_cast<std::size_t>(i)) = std::to_string(8300 + i);
  }
  s.InitLastFrame = 8400;
  s.SilentSizing = 8500;
  return s;
}

TEST(Settings, EveryFieldStandsInItsPlace) {
  EXPECT_EQ(SettingsToBytes(Settings()).size(), 536U);
  EXPECT_EQ(SettingsToBytes(Numbered()), Layout());
  Settings read;
  EXPECT_TRUE(SettingsFromBytes(Layout() + "what follows is ignored", read));
  EXPECT_EQ(read, Numbered());
}

TEST(Settings, ValuesSurviveAsTheyAre) {
  Settings settings;
  settings.AutoNext = 1;  // true, though not the -1 of a check box
  settings.FitToWindow = FromBool(true);
  settings.WindowLeft = -30000;
  settings.LastPosition = -1.0;
  settings.CurrentFile = std::string("/music/\xFF\x80\0 name", 15);
  const std::string bytes = SettingsToBytes(settings);
  EXPECT_EQ(bytes.substr(20, 2), "\xFF\xFF");  // FitToWindow
  Settings read;
  EXPECT_TRUE(SettingsFromBytes(bytes, read));
  EXPECT_EQ(read, settings);
  EXPECT_TRUE(IsOn(read.AutoNext));
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
  folder.Write("config.dat", "");
  EXPECT_FALSE(ReadSettings(path, read));
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
  Settings expected = Numbered();
  expected.reserved20 = expected.reserved21 = expected.reserved50 = 0;
  expected.PreviousItemPosition = 0;
  expected.PlayingFromPlaylist = 0;
  expected.LastSaveFolder = expected.LastOpenFolder = "";
  expected.PlaylistFile = expected.CurrentFile = "";
  expected.FirstRun = expected.InitLastFrame = -1;
  expected.RecentFiles = {};
  EXPECT_EQ(cleared, expected);
}

}  // namespace
}  // namespace kv
