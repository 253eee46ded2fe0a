// Every command of the player, as one table: the menu's tree, captions, pictures and accelerators.
//
// A command is known by its key ("mOpen"), which menu, keyboard, buttons and dispatcher share. The
// entries of the recent files and of the plug-ins are made at run time, see menu_model.h. Constant;
// any thread.
#pragma once

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

struct Command {
  std::string_view parent;  // key of the entry whose submenu this stands in; empty for the root
  std::string_view key;     // empty for most separators
  CommandType type = CommandType::kPlain;
  std::string_view caption = {};
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
    Command{"", kRootMenu, kPlainItem, "MENU", "icons/menu.ico"},
    Command{kRootMenu, "mOpen", kPlainItem, "Open...", "icons/open.ico", kCtrlKey, 'O'},
    Command{kRootMenu, "mOpenURL", kPlainItem, "Open URL...", "icons/openURL.ico", kCtrlKey, 'U'},
    Command{kRootMenu, "mRecent", kPlainItem, "Recent files...", "icons/openURL.ico"},
    Command{"mRecent", "mRecent_Spl", CommandType::kSeparator},
    Command{"mRecent", "mRecent_Clear", kPlainItem, "Clear recent menu", "icons/remove.ico"},
    kRootSeparator,
    Command{kRootMenu, "mSaveAs", kPlainItem, "Save As...", "icons/copyfiles.ico", kCtrlKey, 'S'},
    kRootSeparator,
    Command{kRootMenu, "mSaveRFAs", kPlainItem, "Save Resume File As...", "icons/ResumeFile.ico"},
    Command{kRootMenu, "mSaveRFEnd", kPlainItem, "Set Resume File End Pos...",
            "icons/ResumeFile_end.ico"},
    Command{kRootMenu, "mSaveRFEndClear", kPlainItem, "Clear Resume File End Pos...",
            "icons/clear_ResumeFile_end.ico"},
    Command{kRootMenu, "mReleaseRF", kPlainItem, "Release Resume Data",
            "icons/Release_ResumeData.ico"},
    kRootSeparator,
    Command{kRootMenu, "mPlay", kPlainItem, "Play", "icons/play.ico", 0, kKeyEnter},
    Command{kRootMenu, "mPause", kPlainItem, "Pause", "icons/pause.ico", 0, kKeySpace},
    Command{kRootMenu, "mStop", kPlainItem, "Stop", "icons/stop.ico", 0, kKeyBackspace},
    kRootSeparator,
    Command{kRootMenu, "mPrevious", kPlainItem, "Previous", "icons/previous.ico", 0, kKeyPageUp},
    Command{kRootMenu, "mNext", kPlainItem, "Next", "icons/next.ico", 0, kKeyPageDown},
    kRootSeparator,
    Command{kRootMenu, "mJumpToFirst", kPlainItem, "Jump to first", "icons/to_start.ico", 0,
            kKeyHome},
    Command{kRootMenu, "mJumpToLast", kPlainItem, "Jump to last", "icons/to_last.ico", 0, kKeyEnd},
    kRootSeparator,
    Command{kRootMenu, "mOptions", kPlainItem, "Options", "icons/options.ico", kCtrlKey, 'K'},
    kRootSeparator,
    Command{kRootMenu, "mVideo", kPlainItem, "Video", "icons/video.ico"},
    Command{"mVideo", "mKeepAspect", kCheckMark, "Keep aspect ratio", "", 0, 'A'},
    Command{"mVideo", "mFitToWindow", kCheckMark, "Fit to window", "", 0, 'F'},
    Command{"mVideo", "", CommandType::kSeparator},
    Command{"mVideo", "mZoom100", kPlainItem, "Zoom to original size", "", 0, 'Z'},
    kRootSeparator,
    Command{kRootMenu, "mFullScreen", kCheckMark, "FullScreen", "", kAltKey, kKeyEnter},
    kRootSeparator,
    Command{kRootMenu, "mPlaylist", kPlainItem, "Open Playlist", "icons/playlist.ico", 0, 'P'},
    kRootSeparator,
    Command{kRootMenu, "mPlugins", kPlainItem, "Visualizations"},
    Command{"mPlugins", "mPlug_-2", kCheckMark, "Show plugin in movie area"},
    Command{"mPlugins", "", CommandType::kSeparator},
    Command{"mPlugins", kBuiltInMeterKey, kCheckMark, "Build-in"},
    Command{kRootMenu, "mPluginManager", kPlainItem, "Open Plugin Manager..."},
    kRootSeparator,
    Command{kRootMenu, "mAbout", kPlainItem, "About...", "icons/about.ico"},
    kRootSeparator,
    Command{kRootMenu, "mHelp", kPlainItem, "Help", "icons/help.ico", 0, kKeyF1},
    kRootSeparator,
    Command{kRootMenu, "mExit", kPlainItem, "Exit", "icons/exit.ico", 0, kKeyEsc},
    // The meter's window: a command of the keyboard alone.
    Command{kRootMenu, "mShowScope", kPlainItem, "Level meter window", "", 0, 'S', false},
};

// An accelerator as the menu shows it: "Ctrl+O", "Alt+Enter", "Page Up"; empty without a key.
std::string AcceleratorText(std::int16_t shift, std::int16_t key_code);

}  // namespace kv
