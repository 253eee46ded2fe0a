// What `frmPlaylist` remembers while it is loaded, as plain data that its rules share.
//
// Owned beside the list, handed around by reference, made new whenever the window is loaded. Row
// numbers count from 1, 0 is none. Interface thread only; anything here can change in every call
// that pumps messages.
#pragma once

namespace kv {

struct PlaylistForm {
  bool Closing = false;    // the window is being unloaded: long work and timers stop
  int DetailsCursor = 0;   // row whose details were filled in last; 0 starts over
  int MarkedRow = 0;       // row that is drawn as playing
  int LastSortColumn = 0;  // column of the last sort by header click, from 1
  int SearchRow = 0;       // where the next find starts
  int ClickedRow = 0;      // row last clicked
};

}  // namespace kv
