// Every command of the player, as one table: the menu's tree, captions, pictures and accelerators.
//
// A command is known by its key ("mOpen"), which menu, keyboard, buttons and dispatcher share. The
// entries of recent files, plug-ins and tracks are made at run time, see menu_model.h. Constant;
// any thread.
#pragma once

#include "system/translation.h"
#include "view/key_table.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace kv {

enum class CommandType { kPlain = 0, kCheck = 2, kSeparator = 3 };

inline constexpr std::string_view kRootMenu = "M";

// Keys made at run time begin with these: "mRecent_f07", "mPlug_3". The built-in plug-in entries
// are "mPlug_-1", the level meter, and "mPlug_-2", whether there is a picture at all.
inline constexpr std::string_view kRecentKey = "mRecent_f";
inline constexpr std::string_view kPluginKey = "mPlug_";
inline constexpr std::string_view kBuiltInMeterKey = "mPlug_-1";
// And those of the tracks of a medium: "mSub_2", "mSnd_1"; "mSub_0" is none.
inline constexpr std::string_view kSubtitleKey = "mSub_";
inline constexpr std::string_view kSoundKey = "mSnd_";
inline constexpr std::string_view kSubtitlesMenu = "mSubtitles";
inline constexpr std::string_view kSoundTracksMenu = "mSoundTracks";

struct Command {
  std::string_view parent;  // key of the entry whose submenu this stands in; empty for the root
  std::string_view key;     // empty for most separators
  CommandType type = CommandType::kPlain;
  std::string_view caption = {};  // English
  std::string_view picture = {};  // file of the program's data, empty for none
  std::int16_t shift = 0;         // accelerator: mask of kShiftKey, kCtrlKey, kAltKey ...
  std::int16_t key_code = 0;      // ... and key, 0 for none
  bool visible = true;
};

inline constexpr CommandType kCheckMark = CommandType::kCheck;
inline constexpr CommandType kPlainItem = CommandType::kPlain;
inline constexpr Command kRootSeparator{kRootMenu, "", CommandType::kSeparator};

// In the order of the menu; a parent stands in front of what it holds.
inline constexpr std::array kCommands = {
    Command{"", kRootMenu, kPlainItem, TrLater("MENU"), "icons/menu.ico"},
    Command{kRootMenu, "mOpen", kPlainItem, TrLater("Open..."), "icons/open.ico", kCtrlKey, 'O'},
    Command{kRootMenu, "mOpenURL", kPlainItem, TrLater("Open URL..."), "icons/openURL.ico",
            kCtrlKey, 'U'},
    Command{kRootMenu, "mRecent", kPlainItem, TrLater("Recent files..."), "icons/openURL.ico"},
    Command{"mRecent", "mRecent_Spl", CommandType::kSeparator},
    Command{"mRecent", "mRecent_Clear", kPlainItem, TrLater("Clear recent menu"),
            "icons/remove.ico"},
    kRootSeparator,
    Command{kRootMenu, "mSaveAs", kPlainItem, TrLater("Save As..."), "icons/copyfiles.ico",
            kCtrlKey, 'S'},
    kRootSeparator,
    Command{kRootMenu, "mSaveRFAs", kPlainItem, TrLater("Save Resume File As..."),
            "icons/ResumeFile.ico"},
    Command{kRootMenu, "mSaveRFEnd", kPlainItem, TrLater("Set Resume File End Pos..."),
            "icons/ResumeFile_end.ico"},
    Command{kRootMenu, "mSaveRFEndClear", kPlainItem, TrLater("Clear Resume File End Pos..."),
            "icons/clear_ResumeFile_end.ico"},
    Command{kRootMenu, "mReleaseRF", kPlainItem, TrLater("Release Resume Data"),
            "icons/Release_ResumeData.ico"},
    kRootSeparator,
    Command{kRootMenu, "mPlay", kPlainItem, TrLater("Play"), "icons/play.ico", 0, kKeyEnter},
    Command{kRootMenu, "mPause", kPlainItem, TrLater("Pause"), "icons/pause.ico", 0, kKeySpace},
    Command{kRootMenu, "mStop", kPlainItem, TrLater("Stop"), "icons/stop.ico", 0, kKeyBackspace},
    kRootSeparator,
    Command{kRootMenu, "mPrevious", kPlainItem, TrLater("Previous"), "icons/previous.ico", 0,
            kKeyPageUp},
    Command{kRootMenu, "mNext", kPlainItem, TrLater("Next"), "icons/next.ico", 0, kKeyPageDown},
    kRootSeparator,
    Command{kRootMenu, "mJumpToFirst", kPlainItem, TrLater("Jump to first"), "icons/to_start.ico",
            0, kKeyHome},
    Command{kRootMenu, "mJumpToLast", kPlainItem, TrLater("Jump to last"), "icons/to_last.ico", 0,
            kKeyEnd},
    kRootSeparator,
    Command{kRootMenu, "mOptions", kPlainItem, TrLater("Options"), "icons/options.ico", kCtrlKey,
            'K'},
    kRootSeparator,
    Command{kRootMenu, "mVideo", kPlainItem, TrLater("Video"), "icons/video.ico"},
    Command{"mVideo", "mKeepAspect", kCheckMark, TrLater("Keep aspect ratio"), "", 0, 'A'},
    Command{"mVideo", "mFitToWindow", kCheckMark, TrLater("Fit to window"), "", 0, 'F'},
    Command{"mVideo", "", CommandType::kSeparator},
    Command{"mVideo", "mZoom100", kPlainItem, TrLater("Zoom to original size"), "", 0, 'Z'},
    Command{"mVideo", "", CommandType::kSeparator},
    Command{"mVideo", kSubtitlesMenu, kPlainItem, TrLater("Subtitles")},
    Command{kSubtitlesMenu, "", CommandType::kSeparator},
    Command{kSubtitlesMenu, "mSubtitles_Load", kPlainItem, TrLater("Load subtitles...")},
    Command{"mVideo", kSoundTracksMenu, kPlainItem, TrLater("Sound tracks")},
    kRootSeparator,
    Command{kRootMenu, "mFullScreen", kCheckMark, TrLater("FullScreen"), "", kAltKey, kKeyEnter},
    kRootSeparator,
    Command{kRootMenu, "mPlaylist", kPlainItem, TrLater("Open Playlist"), "icons/playlist.ico", 0,
            'P'},
    kRootSeparator,
    Command{kRootMenu, "mPlugins", kPlainItem, TrLater("Visualizations")},
    Command{"mPlugins", "mPlug_-2", kCheckMark, TrLater("Show plugin in movie area")},
    Command{"mPlugins", "", CommandType::kSeparator},
    Command{"mPlugins", kBuiltInMeterKey, kCheckMark, TrLater("Build-in")},
    Command{kRootMenu, "mPluginManager", kPlainItem, TrLater("Open Plugin Manager...")},
    kRootSeparator,
    Command{kRootMenu, "mAbout", kPlainItem, TrLater("About..."), "icons/about.ico"},
    kRootSeparator,
    Command{kRootMenu, "mHelp", kPlainItem, TrLater("Help"), "icons/help.ico", 0, kKeyF1},
    kRootSeparator,
    Command{kRootMenu, "mExit", kPlainItem, TrLater("Exit"), "icons/exit.ico", 0, kKeyEsc},
    // The meter's window: a command of the keyboard alone.
    Command{kRootMenu, "mShowScope", kPlainItem, TrLater("Level meter window"), "", 0, 'S', false},
};

// An accelerator as the menu shows it: "Ctrl+O", "Alt+Enter", "Page Up"; empty without a key.
std::string AcceleratorText(std::int16_t shift, std::int16_t key_code);

}  // namespace kv
