// Writes what a new installation starts from: "config.dat" with the factory options and the first
// colours, and the same colours as the scheme "default.dat".
//
// Usage: make_config DATA_FOLDER. Run it after a change here and keep the two files it writes.
#include "state/settings.h"
#include "state/settings_file.h"
#include "system/save_file.h"

#include <cstdint>
#include <iostream>
#include <string>

namespace {

constexpr std::int32_t kTwipsPerPixel = 15;

struct SlotColor {
  std::size_t slot;
  std::uint32_t rgb;  // 0xRRGGBB
};

// The colours of the kestrel: night and slate blue, and amber for what is marked or playing. Text
// stands on its background at 4.5 : 1 or better, lines and traces at 3 : 1.
constexpr SlotColor kColors[] = {
    {0, 0x283044},   // button background
    {1, 0x1A2030},   // general background
    {2, 0x131925},   // playlist background
    {3, 0xD8DEE9},   // playlist foreground
    {4, 0xCDD5E3},   // general text
    {5, 0x0E121B},   // separator line1, the shade
    {6, 0x333D54},   // separator line2, the light
    {7, 0xF2A65A},   // playlist playing number
    {8, 0x1A2030},   // scroller background
    {9, 0x6A7BA0},   // scroller line
    {13, 0x212839},  // menu background
    {14, 0xD8DEE9},  // menu text
    {15, 0x3A4560},  // menu separator
    {17, 0x33405B},  // menu highlight background
    {18, 0xF2A65A},  // scroller A > B line
    {19, 0x6F8FC4},  // menu highlight border
    {21, 0xFFFFFF},  // menu highlight text
    {22, 0x0E121B},  // display background
    {23, 0xB5CBEB},  // display text
    {24, 0x0E121B},  // level meter background
    {25, 0x7FA8D9},  // level meter foreground
    {26, 0xF2A65A},  // level meter peak
    {27, 0xF2A65A},  // display flash label
    {28, 0xFFE9C9},  // display flash label, flashing
    {29, 0xF2A65A},  // display playlist number
    {30, 0x0E121B},  // graph background
    {31, 0x7FA8D9},  // graph trace
    {32, 0x28324A},  // graph grid
};

kv::Settings FactorySettings() {
  constexpr kv::SettingsBool kOn = kv::FromBool(true);
  kv::Settings settings;
  settings.FirstRun = kOn;
  settings.InitLastFrame = kOn;

  settings.KeepAspect = kOn;
  settings.FitToWindow = kOn;
  settings.HideInFullscreen = kOn;
  settings.RememberWindowPos = kOn;
  settings.RememberSize = kOn;
  settings.WindowLeft = 120 * kTwipsPerPixel;
  settings.WindowTop = 90 * kTwipsPerPixel;
  settings.WindowWidth = 720 * kTwipsPerPixel;
  settings.WindowHeight = 480 * kTwipsPerPixel;

  settings.Volume = 99;
  settings.PlayRate = 20;
  settings.Balance = 9;

  settings.AutoPlayResume = kOn;
  settings.AutoLoadLast = kOn;
  settings.StorePos = kOn;
  settings.PreviousItemPosition = -1;

  settings.AutoNext = kOn;
  settings.SavePlaylist = kOn;
  settings.AutoPlayPlaylist = kOn;
  settings.PlaylistShowDetails = kOn;
  settings.FindPlaying = kOn;
  for (std::size_t i = 0; i < kv::kPlaylistColumns; ++i) {
    settings.PlaylistColumnWidth[i] = 0;  // as wide as the user's font needs
    settings.PlaylistColumnPosition[i] = static_cast<std::int32_t>(i + 1);
  }

  settings.ShowVuMeter = kOn;
  settings.PluginStyle = 1;
  settings.VuRefreshRate = 25;
  settings.AudioBufferSize = 64;
  settings.AudioBufferCount = 16;
  settings.AudioSampleRate = 11025;

  // For the day the graph is switched on: once a second, on a grid that moves along.
  settings.CpuGraphInterval = 9;
  settings.CpuGraphGrid = kOn;
  settings.CpuGraphGridMove = kOn;

  settings.ColorScheme = "default.dat";
  for (const SlotColor& color : kColors) {
    const std::uint32_t bgr = (color.rgb & 0xFFU) << 16 | (color.rgb & 0xFF00U) | color.rgb >> 16;
    settings.Colors[color.slot] = static_cast<std::int32_t>(bgr);
  }
  return settings;
}

// A scheme file is the 33 slots, each a little-endian 32-bit number.
std::string SchemeBytes(const kv::Settings& settings) {
  std::string bytes;
  for (const std::int32_t color : settings.Colors) {
    for (int shift = 0; shift < 32; shift += 8) {
      bytes += static_cast<char>(static_cast<std::uint32_t>(color) >> shift & 0xFFU);
    }
  }
  return bytes;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "Usage: make_config DATA_FOLDER\n";
    return 2;
  }
  const std::string folder = argv[1];
  const kv::Settings settings = FactorySettings();
  std::string error;
  if (!kv::WriteSettings(folder + "/config.dat", settings, &error) ||
      !kv::SaveFileChecked(folder + "/colorscemes/default.dat", SchemeBytes(settings), &error)) {
    std::cerr << "make_config: " << error << '\n';
    return 1;
  }
  return 0;
}
