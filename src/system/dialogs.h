// The questions the player asks the user: message boxes and the platform's standard dialogs.
//
// The rules of the player talk to this interface; `dialogs_qt.h` shows real windows, the tests
// script the answers and record the texts. Interface thread only. Every call is modal: it pumps
// messages until the user has answered, so timers run meanwhile.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace kv {

// The program's name as the user reads it; the caption of every box that names no other.
inline constexpr const char* kAppTitle = "Kestrelview";

enum class BoxIcon { kNone, kInformation, kExclamation, kStop, kQuestion };
enum class BoxButtons { kOk, kOkCancel, kYesNo, kYesNoCancel };
enum class BoxAnswer { kOk, kCancel, kYes, kNo };

struct MessageBoxRequest {
  std::string text;  // UTF-8, "\n" breaks lines; bytes that are not UTF-8 are shown as U+FFFD
  BoxIcon icon = BoxIcon::kNone;
  BoxButtons buttons = BoxButtons::kOk;
  std::string title;  // empty: kAppTitle
};

// The filter is a list "label|patterns|label|patterns", patterns separated by ";".
struct FileDialogRequest {
  std::string title;
  std::string filter;
  std::string folder;     // start folder; empty: the platform's own choice
  std::string file_name;  // name offered at the start
  bool save = false;      // a save dialog; the overwrite question stays with the caller
};

struct FileDialogResult {
  bool accepted = false;
  std::string file_name;  // the whole path, byte for byte; empty when cancelled
  std::string title;      // the name without its folder
};

// Colours are 0x00BBGGRR, the order in which the settings store them.
using CustomColors = std::array<std::int32_t, 16>;

struct ColorDialogResult {
  std::int32_t color = -1;  // -1: cancelled
  CustomColors custom{};    // as the user left them; as they came when cancelled
};

class Dialogs {
 public:
  virtual ~Dialogs() = default;

  // Shows a box and waits for the answer. Closing the box by its frame answers kCancel where there
  // is a Cancel, kNo where there is only Yes and No, else kOk.
  virtual BoxAnswer ShowMessageBox(const MessageBoxRequest& request) = 0;

  // The standard open or save dialog.
  virtual FileDialogResult ShowFileDialog(const FileDialogRequest& request) = 0;

  // The standard colour dialog, starting at `initial`.
  virtual ColorDialogResult ShowColorDialog(std::int32_t initial, const CustomColors& custom) = 0;

  // Lets the user pick a folder, beginning in `start` (empty: the platform's own choice). The
  // path is given byte for byte; empty when cancelled.
  virtual std::string BrowseDirectorysOnly(const std::string& title, const std::string& start) = 0;
  std::string BrowseForFolderDialog(const std::string& title) {
    return BrowseDirectorysOnly(title, {});
  }
};

}  // namespace kv
