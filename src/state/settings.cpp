#include "state/settings.h"

namespace kv {

void ClearForFirstStart(Settings& settings) {
  settings.reserved20 = 0;
  settings.reserved21 = 0;
  settings.LastSaveFolder.clear();
  settings.reserved50 = 0;
  settings.PreviousItemPosition = 0;
  settings.PlayingFromPlaylist = FromBool(false);
  settings.PlaylistFile.clear();
  settings.FirstRun = FromBool(true);
  settings.LastOpenFolder.clear();
  settings.CurrentFile.clear();
  settings.InitLastFrame = FromBool(true);
  settings.RecentFiles.fill({});
}

}  // namespace kv
