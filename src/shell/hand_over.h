// Turns a command line, or the request of another start, into one medium to open.
//
// There is one player: a start with a path hands it to the player that runs, as one string. The
// shell that has just started the program for a file may send the same file once more; so for
// three seconds after a start with a path, requests are refused. The opening itself runs from a
// timer, never inside the request. Owned by `frmMain`; interface thread only.
#pragma once

#include "system/dialogs.h"
#include "system/timers.h"

#include <string>

namespace kv {

class HandOverHost {
 public:
  virtual ~HandOverHost() = default;

  // Makes `path` the current file and opens it: playing, with the window's size kept, and scaled to
  // the movie afterwards where the user has chosen that.
  virtual void OpenCommandFile(const std::string& path) = 0;
  // Gives up an open that is under way, if there is one.
  virtual void AbandonOpen() = 0;
};

class HandOver {
 public:
  // `link_exe_timer` and `opening_cmd_delay` are the form's timers of those names; their events are
  // passed on to the two handlers below.
  HandOver(HandOverHost& host, Dialogs& dialogs, Timer& link_exe_timer, Timer& opening_cmd_delay);

  // Takes the path from the command line. A file that does not exist, or a resume file whose target
  // does not, is told in a message box. Does nothing with an empty command line.
  void ReadCommandLine(const std::string& command_line);

  // At the end of the form's load: arms the timers for a path that was accepted. Answers true then,
  // and when a request has come meanwhile; otherwise the start is one without a medium.
  bool FinishLoading();

  // Another start, or the shell, asks to have a file opened. False: refused, nothing happens.
  // Otherwise the last path asked for before the timer fires is opened.
  bool Form_LinkExecute(const std::string& CmdStr);
  // A failure of the way in is told to the user.
  void Form_LinkError(int LinkErr);

  void OnLinkExeTimer();
  void OnOpeningCMDDelay();

  const std::string& CommandFile() const { return CommandFile_; }
  bool HaveCommandFile() const { return HaveCommandFile_; }

 private:
  HandOverHost& host_;
  Dialogs& dialogs_;
  Timer& LinkExeTimer_;
  Timer& OpeningCMDDelay_;

  std::string CommandFile_;  // the path waiting to be opened, never with a double quote
  bool HaveCommandFile_ = false;
  bool LinkPending_ = false;
  bool FormLoaded_ = false;
  bool opening_ = false;
};

}  // namespace kv
