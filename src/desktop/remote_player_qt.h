// Calls to the player that runs, by its MPRIS name on the session bus.
#pragma once

namespace kv {

// Calls `method` of the running player's org.mpris.MediaPlayer2.Player. False when there is none or
// it does not answer; waits a few seconds at most. Needs a QCoreApplication.
bool CallRunningPlayer(const char* method);

}  // namespace kv
