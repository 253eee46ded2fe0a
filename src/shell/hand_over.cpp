#include "shell/hand_over.h"

#include "shell/command_line.h"
#include "system/ascii_text.h"
#include "system/ini_file.h"
#include "system/paths.h"
#include "system/shown_text.h"
#include "system/translation.h"

#include <algorithm>

namespace kv {
namespace {

std::string WithoutQuotes(std::string text) {
  std::erase(text, '"');
  return text;
}

}  // namespace

HandOver::HandOver(HandOverHost& host, Dialogs& dialogs, Timer& link_exe_timer,
                   Timer& opening_cmd_delay)
    : host_(host),
      dialogs_(dialogs),
      LinkExeTimer_(link_exe_timer),
      OpeningCMDDelay_(opening_cmd_delay) {}

void HandOver::ReadCommandLine(const std::string& command_line) {
  if (command_line.empty()) return;
  CommandFile_ = CommandFileOf(command_line);
  if (!FileExists(CommandFile_)) {
    dialogs_.ShowMessageBox({Fill(Tr("File \"%1\" does not exist!"), ShownName(CommandFile_)),
                             BoxIcon::kExclamation, BoxButtons::kOk, ""});
    return;
  }
  if (LowerAscii(GetFileExtension(CommandFile_, true)) != ".kvr") {
    HaveCommandFile_ = true;
    return;
  }
  const std::string target = ReadIniString(CommandFile_, "RESUME_FILE", "path", "");
  if (FileExists(target)) {
    HaveCommandFile_ = true;
    return;
  }
  dialogs_.ShowMessageBox(
      {Fill(Tr("The opened resume file points to \"%1\" which doesn't exist!"), ShownName(target)),
       BoxIcon::kExclamation, BoxButtons::kOk, ""});
  CommandFile_.clear();
}

bool HandOver::FinishLoading() {
  FormLoaded_ = true;
  if (!HaveCommandFile_) return LinkPending_;
  OpeningCMDDelay_.SetEnabled(true);
  if (!LinkPending_) LinkExeTimer_.SetEnabled(true);
  return true;
}

bool HandOver::Form_LinkExecute(const std::string& CmdStr) {
  if (OpeningCMDDelay_.Enabled()) return false;
  CommandFile_ = WithoutQuotes(CmdStr);
  LinkPending_ = true;
  LinkExeTimer_.SetEnabled(true);
  // The timer is still inside its last event while the file before is being opened, which can take
  // as long as a dead host: the newer wish wins.
  if (opening_) host_.AbandonOpen();
  return true;
}

void HandOver::Form_LinkError(int LinkErr) {
  dialogs_.ShowMessageBox({Fill(Tr("DDE Error. (Link) error code:%1"), std::to_string(LinkErr)),
                           BoxIcon::kStop, BoxButtons::kOk, ""});
}

void HandOver::OnLinkExeTimer() {
  if (!FormLoaded_) return;
  LinkPending_ = false;
  if (!CommandFile_.empty()) {
    opening_ = true;
    host_.OpenCommandFile(std::string(CommandFile_));  // a request inside replaces the field
    opening_ = false;
  }
  HaveCommandFile_ = false;
  // A request that came while the file was being opened is still to be served.
  if (!LinkPending_) LinkExeTimer_.SetEnabled(false);
}

void HandOver::OnOpeningCMDDelay() {
  OpeningCMDDelay_.SetEnabled(false);
}

}  // namespace kv
