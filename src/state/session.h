// What the rooms of the player share while it runs and nobody stores.
//
// Plain data, owned by the main window and handed around by reference. Positions and marks are
// seconds in the current medium. Interface thread only; anything here can change in every call that
// pumps messages.
#pragma once

#include <string>

namespace kv {

// The texts of the ASX metafile that leads to the current medium; all empty for a plain file.
// Written by the opener from what the ASX reader gives.
struct AsxInfo {
  std::string title;
  std::string author;
  std::string copyright;
  std::string moreInfo;
  std::string entry;  // address of the stream, "AsxRef"; not empty: that stream is what plays
};

// The value of a position or mark that is not set.
inline constexpr double kNoPosition = -1.0;

struct Session {
  // The list has changes that are not saved. Set by adding folders, clearing, sorting and shuffling
  // the list, cleared by loading and saving it.
  bool PlaylistDirty = false;

  // `frmPlaylist` is loaded, so that its rows must follow the list. Written by that window.
  bool PlaylistWindowLoaded = false;

  // `frmScanning` is on screen, and its Cancel was pressed. Written by that window; the routine
  // that shows it clears the second.
  bool ScanWindowOpen = false;
  bool ScanAbort = false;

  // `frmQuickSearch` is open. Written by that window.
  bool QuickSearchOpen = false;

  // `frmCopy` is open. Written by that window.
  bool CopyWindowOpen = false;

  // Size of the video in its own pixels, 0 for sound. Written by the opener after each open.
  int MovieWidth = 0;
  int MovieHeight = 0;

  kv::AsxInfo AsxInfo;

  // The section that a resume file gives: above 0 it is in force. Written by the resume files'
  // open, save and release; the opener clears both for every other medium.
  double ResumePosition = kNoPosition;
  double ResumeEndPosition = kNoPosition;

  // The A > B loop. Written by the transport's A > B button, cleared by the opener.
  double MarkA = kNoPosition;
  double MarkB = kNoPosition;

  // The main form's life: being built; built; closing, which is never taken back. Written by the
  // main form alone.
  bool StartingUp = false;
  bool FormLoaded = false;
  bool Unloading = false;

  // Moving the picture along with the window took too long, so it is left alone. Set by the window
  // while it moves, cleared by the opener.
  bool SlowMoveDetected = false;

  // The window is being dragged to a new size and the picture is hidden. Written by the window at
  // the beginning and the end of that drag.
  bool SizingHidden = false;

  // Lines 1 and 2 of "filesupport.dat": patterns separated by ";", and the filter of the open
  // dialog, "|" separated. Written once by the main form's start.
  std::string SupportedExtensions;
  std::string OpenFilter;
};

}  // namespace kv
