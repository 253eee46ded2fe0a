// All settings of the player, and most of the state that survives a restart.
//
// One record for the whole run, owned by the main window and handed around by reference; every room
// reads and writes its fields directly, and only settings_file.h knows how it lies on the disk. The
// fields stand in the order of the file. A Boolean is -1 or 0 and read with IsOn(), so that any
// other value found on the disk survives. Texts are UTF-8, paths are bytes. Lengths are twips, 15
// to a pixel, unless told otherwise. Interface thread only.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace kv {

using SettingsBool = std::int16_t;

constexpr bool IsOn(SettingsBool value) {
  return value != 0;
}
constexpr SettingsBool FromBool(bool value) {
  return value ? SettingsBool{-1} : SettingsBool{0};
}

inline constexpr std::size_t kColorSlots = 33;
inline constexpr std::size_t kPlaylistColumns = 12;
inline constexpr std::size_t kRecentFiles = 10;

// The reserved fields mean nothing to this version and are written back as they were read.
struct Settings {
  SettingsBool AutoPlayResume = 0;            // start playing when a resume file is opened
  std::string QuickSearchText;                // last text of the quick search box
  SettingsBool CpuGraphGridMove = 0;          // the grid of the CPU graph scrolls with the trace
  std::int32_t CpuGraphInterval = 0;          // 0 to 9: an update every (value + 1) * 100 ms
  SettingsBool CpuGraph = 0;                  // show the CPU graph
  SettingsBool CpuGraphGrid = 0;              // show the grid of the CPU graph
  SettingsBool HideControlsInFullscreen = 0;  // the panel is kept hidden in full screen
  SettingsBool FullScreen = 0;                // state: the window is in full screen
  SettingsBool KeepAspect = 0;                // keep the movie's aspect ratio
  SettingsBool FitToWindow = 0;               // scale video up to the window
  SettingsBool HideInFullscreen = 0;          // the controls hide themselves in full screen
  SettingsBool HideInNormal = 0;              // the controls hide themselves in window mode
  SettingsBool IncludePathInFileTitle = 0;    // the file title shows the whole path
  SettingsBool AutoLoadLast = 0;              // load the last file at start
  SettingsBool SavePlaylist = 0;              // save the playlist on exit without asking
  std::int16_t reserved16 = 0;
  SettingsBool FirstRun = 0;                  // the next start is a first start
  SettingsBool ShowFramesWhileScrolling = 0;  // the picture follows the knob without Ctrl
  SettingsBool PlaylistShowDetails = 0;       // the playlist reads and shows media details
  std::int32_t reserved20 = 0;
  std::int32_t reserved21 = 0;
  SettingsBool MinimizeToTray = 0;     // and the tray icon is visible
  SettingsBool RememberWindowPos = 0;  // restore WindowLeft and WindowTop at start
  SettingsBool RememberSize = 0;       // restore WindowWidth and WindowHeight at start
  std::int32_t WindowWidth = 0;        // main window in its last normal state
  std::int32_t WindowHeight = 0;
  std::int32_t WindowLeft = 0;
  std::int32_t WindowTop = 0;
  std::int32_t Volume = 0;                  // volume slider, 0 to 99
  std::string LastOpenFolder;               // of the last file picked in the open dialog
  std::int32_t RepeatMode = 0;              // 0 off, 1 the medium, 2 the list
  std::int32_t PlayRate = 0;                // rate slider, 0 to 40, 20 is the true speed
  std::int32_t Balance = 0;                 // balance slider, 0 to 18, 9 is the middle
  std::int32_t PlaylistIndex = 0;           // playing entry, from 1; 0 none
  std::string PlaylistFile;                 // path of the current playlist
  std::string CurrentFile;                  // path or URL of the current medium
  SettingsBool StorePos = 0;                // seek to LastPosition when the last file is loaded
  double LastPosition = 0;                  // position slider at the last save, seconds
  SettingsBool AutoStart = 0;               // start playing after the last file is loaded
  SettingsBool DragDropAddsToPlaylist = 0;  // files dropped on the window go to the playlist
  std::int16_t reserved41 = 0;
  std::int32_t PlaylistTop = 0;  // playlist window
  std::int32_t PlaylistLeft = 0;
  std::int32_t PlaylistHeight = 0;
  std::int32_t PlaylistWidth = 0;                  // above 0: the four are valid
  SettingsBool PlaylistVisible = 0;                // state: the playlist window is open
  std::array<std::int32_t, kColorSlots> Colors{};  // 0x00BBGGRR
  std::string ColorScheme;               // file name in the colour scheme folder, with ".dat"
  SettingsBool PlayingFromPlaylist = 0;  // state: the medium was started from the playlist
  std::int32_t reserved50 = 0;
  double PreviousItemPosition = 0;     // of the medium a newly opened one replaced, seconds;
                                       // -1 none
  SettingsBool ShowVuMeter = 0;        // show the level meter when sound plays
  std::int32_t VuMeterStyle = 0;       // style of the level meter, 0 to 2
  std::int32_t VuRefreshRate = 0;      // of the level meter, from 1
  std::int32_t AudioBufferSize = 0;    // of the level meter, bytes
  std::int32_t AudioBufferCount = 0;   // of the level meter
  std::int32_t AudioSampleRate = 0;    // of the level meter, Hz
  std::string LastSaveFolder;          // of the last copy of a medium
  std::int32_t PluginStyle = 0;        // style that the last cycle through plug-ins left
  SettingsBool UseExternalPlugin = 0;  // the visualisation is a plug-in
  std::string PluginProgId;            // object name of the selected plug-in
  std::string PluginName;              // its display name
  std::string PluginKey;               // key of its catalogue entry
  std::int32_t VumeterTop = 0;         // level meter window
  std::int32_t VumeterLeft = 0;
  std::int32_t VumeterHeight = 0;
  std::int32_t VumeterWidth = 0;    // above 0: the four are valid
  SettingsBool VumeterVisible = 0;  // state: the level meter window is open
  SettingsBool AutoNext = 0;        // go on to the next entry at the end of a medium
  std::array<double, kPlaylistColumns> PlaylistColumnWidth{};           // in column order
  std::array<std::int32_t, kPlaylistColumns> PlaylistColumnPosition{};  // from 1
  std::array<std::int16_t, 3> reserved72{};
  SettingsBool SaveAbsolutePaths = 0;  // M3U playlists are written with absolute paths only
  SettingsBool FindPlaying = 0;        // the playlist window follows the playing entry
  SettingsBool AutoZoom = 0;           // size the window to the movie on open
  SettingsBool AutoPlayPlaylist = 0;   // start playing when a playlist is opened
  std::array<std::int16_t, 2> reserved77{};
  std::array<std::int16_t, 4> reserved78{};
  SettingsBool AutoFullscreen = 0;   // leave full screen when the focus goes elsewhere
  SettingsBool AutoRestart = 0;      // start again after a system exit that found us running
  SettingsBool RestartPlaying = 0;   // state: that exit found a medium playing
  std::int16_t LastWindowState = 0;  // 0 normal, 1 minimised, 2 maximised
  std::array<std::string, kRecentFiles> RecentFiles{};  // newest first, empty at the end
  SettingsBool InitLastFrame = 0;                       // show the last movie's last frame at start
  SettingsBool SilentSizing = 0;                        // hide the movie while the window is sized

  friend bool operator==(const Settings&, const Settings&) = default;
};

// Makes the next start a first start: forgets what was played, keeps every option.
void ClearForFirstStart(Settings& settings);

}  // namespace kv
