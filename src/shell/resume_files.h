// Resume files: where a medium was left, and where its section ends.
//
// A ".kvr" is an INI file with the one section "RESUME_FILE": `Path` (the medium), `POS` (seconds),
// `PLFile` ("-1" when it was played from the playlist), `PLID` (its number there) and, if it was
// set, `ENDPOS` (seconds). Numbers are written with a point and as many digits as they need, and
// read with a point or a comma. Owned by `frmMain`; interface thread only.
#pragma once

#include "engine/dshow_control.h"
#include "playlist/ost_list.h"
#include "state/session.h"
#include "state/settings.h"
#include "system/dialogs.h"
#include "system/message_pump.h"
#include "system/text_platform.h"

#include <string>

namespace kv {

class ResumeFilesHost {
 public:
  virtual ~ResumeFilesHost() = default;
  // `OpenFile` with `IsResumeStart`, its other flags false. Pumps messages. `CurrentFile` is `path`
  // afterwards unless the open was refused or a newer one has overtaken it.
  virtual void OpenFile(const std::string& path, bool from_playlist) = 0;
  virtual void UpdateFileDisp(const std::string& text) = 0;
  // `picKVR`.
  virtual void ShowResumeMark(bool visible) = 0;
};

struct ResumeFilesParts {
  clsDShowControl& Movie;
  Settings& settings;
  Session& session;
  const OSTList& playlist;
  Dialogs& dialogs;
  MessagePump& pump;
  const TextPlatform& text;
};

class ResumeFiles {
 public:
  // All must outlive this object.
  ResumeFiles(ResumeFilesHost& host, ResumeFilesParts parts);

  // The three save actions of the menu. Asks for the file and halts the medium meanwhile. Without
  // `endPos` the medium and its position are written, in place of what the file held; with it the
  // end position alone, which `clearEnd` takes out. A cancelled dialog and both end actions leave
  // the medium paused.
  void SaveResumeFile(bool endPos, bool clearEnd);

  // Returns to the point that the file tells. `fromPlaylist` becomes true when the medium is found
  // in the list. `AutoPlayResume` and `AutoStart` decide about playing, never the caller.
  void OpenResumeFile(const std::string& path, bool& fromPlaylist, bool StartPlaying);

  // Puts the section out of force.
  void ReleaseResumeData();

 private:
  // Empty: the user gave up, or the program ends.
  std::string AskForName(bool endPos);
  void SaveEnd(const std::string& name, bool clear);
  bool MayReplace(const std::string& name);
  void SavePoint(const std::string& name);
  bool IsInPlaylist(const std::string& medium) const;
  // To the position in force, as long as `medium` is the current file.
  void GoOn(const std::string& medium);
  void Exclaim(const std::string& text);

  ResumeFilesHost& host_;
  ResumeFilesParts parts_;
  int depth_ = 0;  // resume files that are being opened, one inside the other
};

}  // namespace kv
