// The commands of the playlist window and every way to them: buttons, row menu, keys.
//
// One table for each; a button's tip takes its keys from the table of keys. Constant; any thread.
#pragma once

#include "system/translation.h"

#include <array>
#include <string_view>

namespace kv {

enum class ListCommand {
  kAdd,
  kAutoNext,
  kClear,
  kCopy,
  kCopyFileName,
  kDeleteSel,
  kDown,
  kFind,
  kFindNext,
  kFindPlaying,
  kOpen,
  kOpenSourceFolder,
  kPlay,
  kQuickFind,
  kRandomize,
  kRedraw,
  kRemoveSel,
  kSave,
  kSaveAs,
  kSelectAll,
  kShowDetails,
  kSort,
  kUnload,
  kUp,
};

struct ListButton {
  std::string_view key;  // also the name of its drawing
  ListCommand command;
  std::string_view tip;
  bool checkable = false;
  bool after_gap = false;  // a new group begins with it
};

inline constexpr std::array<ListButton, 13> kListButtons = {{
    {"add", ListCommand::kAdd, TrLater("Add a folder")},
    {"open", ListCommand::kOpen, TrLater("Open a playlist")},
    {"save", ListCommand::kSave, TrLater("Save the playlist")},
    {"saveas", ListCommand::kSaveAs, TrLater("Save the playlist as...")},
    {"removesel", ListCommand::kRemoveSel, TrLater("Remove selected files"), false, true},
    {"clear", ListCommand::kClear, TrLater("Remove all files")},
    {"copy", ListCommand::kCopy, TrLater("Copy selected files to...")},
    {"up", ListCommand::kUp, TrLater("Move selected files up"), false, true},
    {"down", ListCommand::kDown, TrLater("Move selected files down")},
    {"sort", ListCommand::kSort, TrLater("Sort by file name")},
    {"randomize", ListCommand::kRandomize, TrLater("Put in random order")},
    {"showdetails", ListCommand::kShowDetails, TrLater("Show details"), true, true},
    {"autonext", ListCommand::kAutoNext, TrLater("Go on with the next file"), true},
}};

// Which rows an entry of the menu needs to mean something.
enum class ListMenuNeeds { kNothing, kRows, kSelection };

struct ListMenuEntry {
  std::string_view name;  // empty: a separator
  std::string_view caption = {};
  ListCommand command = ListCommand::kFindPlaying;
  ListMenuNeeds needs = ListMenuNeeds::kNothing;
};

inline constexpr std::array<ListMenuEntry, 12> kListMenu = {{
    {"mnuFindPlaying", TrLater("Find playing..."), ListCommand::kFindPlaying, ListMenuNeeds::kRows},
    {"mnuFind", TrLater("Find..."), ListCommand::kFind, ListMenuNeeds::kRows},
    {"mnuQuickFind", TrLater("Quick find..."), ListCommand::kQuickFind},
    {},
    {"mnuRemoveSel", TrLater("Remove selected files..."), ListCommand::kRemoveSel,
     ListMenuNeeds::kSelection},
    {"mnuRemAll", TrLater("Remove all files..."), ListCommand::kClear, ListMenuNeeds::kRows},
    {"mnuDeleteSel", TrLater("Delete selected files from DISK !..."), ListCommand::kDeleteSel,
     ListMenuNeeds::kSelection},
    {},
    {"mnuCopySel", TrLater("Copy selected files to..."), ListCommand::kCopy,
     ListMenuNeeds::kSelection},
    {},
    {"mnuOpenSourceFolder", TrLater("Open source folder..."), ListCommand::kOpenSourceFolder,
     ListMenuNeeds::kSelection},
    {"mnuCopyFileName", TrLater("Copy filename"), ListCommand::kCopyFileName,
     ListMenuNeeds::kSelection},
}};

struct ListKey {
  std::string_view keys;  // as QKeySequence::PortableText has them
  ListCommand command;
  bool repeats = false;  // a key that is held down goes on
};

inline constexpr std::array<ListKey, 19> kListKeys = {{
    {"F1", ListCommand::kFindPlaying},    {"F3", ListCommand::kFindNext},
    {"F5", ListCommand::kRedraw},         {"Del", ListCommand::kRemoveSel, true},
    {"Return", ListCommand::kPlay},       {"Enter", ListCommand::kPlay},
    {"Esc", ListCommand::kUnload},        {"Shift+Del", ListCommand::kClear},
    {"Ctrl+F", ListCommand::kFind},       {"Ctrl+C", ListCommand::kCopy},
    {"Ctrl+R", ListCommand::kRandomize},  {"Ctrl+F12", ListCommand::kAdd},
    {"Ctrl+O", ListCommand::kOpen},       {"Ctrl+S", ListCommand::kSaveAs},
    {"Ctrl+A", ListCommand::kSelectAll},  {"Ctrl+Q", ListCommand::kQuickFind},
    {"Alt+Del", ListCommand::kDeleteSel}, {"Alt+Down", ListCommand::kDown, true},
    {"Alt+Up", ListCommand::kUp, true},
}};

// The keys of a command, the first row that has it; empty when there are none.
std::string_view KeysOf(ListCommand command);

}  // namespace kv
