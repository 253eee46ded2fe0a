// A user who closes every box at once.
#pragma once

#include "system/dialogs.h"

#include <string>

namespace kv::fuzz {

class QuietDialogs : public Dialogs {
 public:
  BoxAnswer ShowMessageBox(const MessageBoxRequest& request) override {
    if (request.buttons == BoxButtons::kOk) return BoxAnswer::kOk;
    return request.buttons == BoxButtons::kYesNo ? BoxAnswer::kNo : BoxAnswer::kCancel;
  }
  FileDialogResult ShowFileDialog(const FileDialogRequest& /*request*/) override {
    return {file.empty() ? FileDialogResult{} : FileDialogResult{true, file, {}}};
  }
  ColorDialogResult ShowColorDialog(std::int32_t /*initial*/, const CustomColors& custom) override {
    return {-1, custom};
  }
  std::string BrowseDirectorysOnly(const std::string& /*title*/,
                                   const std::string& /*start*/) override {
    return {};
  }

  std::string file;  // what is picked; empty: nothing
};

}  // namespace kv::fuzz
