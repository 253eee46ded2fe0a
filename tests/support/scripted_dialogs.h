// Dialogs that a test answers beforehand and whose texts it reads afterwards.
//
// A box with nothing to choose (OK alone) is recorded and needs no answer. A question without a
// scripted answer fails the test, and so does an answer that nobody asked for.
#pragma once

#include "system/dialogs.h"

#include <deque>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

namespace kv {

class ScriptedDialogs : public Dialogs {
 public:
  ScriptedDialogs() = default;
  ScriptedDialogs(const ScriptedDialogs&) = delete;
  ScriptedDialogs& operator=(const ScriptedDialogs&) = delete;
  ~ScriptedDialogs() override {
    EXPECT_TRUE(box_answers_.empty()) << "a scripted box answer was never asked for";
    EXPECT_TRUE(file_answers_.empty()) << "a scripted file was never asked for";
    EXPECT_TRUE(color_answers_.empty()) << "a scripted colour was never asked for";
    EXPECT_TRUE(folder_answers_.empty()) << "a scripted folder was never asked for";
  }

  void WillAnswer(BoxAnswer answer) { box_answers_.push_back(answer); }
  // Empty: the user cancels.
  void WillPickFile(std::string path) { file_answers_.push_back(std::move(path)); }
  void WillPickColor(ColorDialogResult result) { color_answers_.push_back(result); }
  void WillPickFolder(std::string folder) { folder_answers_.push_back(std::move(folder)); }

  // Called while a dialog is open, as anything may happen then.
  void WhileOpen(std::function<void()> action) { while_open_ = std::move(action); }

  const std::vector<MessageBoxRequest>& Boxes() const { return boxes_; }
  const std::vector<FileDialogRequest>& FileRequests() const { return file_requests_; }

  // The text of the last box, empty when there was none.
  std::string LastText() const { return boxes_.empty() ? std::string() : boxes_.back().text; }

  BoxAnswer ShowMessageBox(const MessageBoxRequest& request) override {
    boxes_.push_back(request);
    Opened();
    if (request.buttons == BoxButtons::kOk) return BoxAnswer::kOk;
    const BoxAnswer closed =
        request.buttons == BoxButtons::kYesNo ? BoxAnswer::kNo : BoxAnswer::kCancel;
    return Next(box_answers_, closed, request.text);
  }

  FileDialogResult ShowFileDialog(const FileDialogRequest& request) override {
    file_requests_.push_back(request);
    Opened();
    FileDialogResult result;
    result.file_name = Next(file_answers_, std::string(), request.title);
    result.accepted = !result.file_name.empty();
    result.title = result.file_name.substr(result.file_name.rfind('/') + 1);
    return result;
  }

  ColorDialogResult ShowColorDialog(std::int32_t /*initial*/, const CustomColors& custom) override {
    Opened();
    return Next(color_answers_, ColorDialogResult{-1, custom}, "colour dialog");
  }

  std::string BrowseDirectorysOnly(const std::string& title,
                                   const std::string& /*start*/) override {
    Opened();
    return Next(folder_answers_, std::string(), title);
  }

 private:
  void Opened() {
    if (while_open_) while_open_();
  }

  template <typename T>
  static T Next(std::deque<T>& answers, T otherwise, const std::string& question) {
    if (answers.empty()) {
      ADD_FAILURE() << "unexpected question: " << question;
      return otherwise;
    }
    T answer = std::move(answers.front());
    answers.pop_front();
    return answer;
  }

  std::deque<BoxAnswer> box_answers_;
  std::deque<std::string> file_answers_;
  std::deque<ColorDialogResult> color_answers_;
  std::deque<std::string> folder_answers_;
  std::function<void()> while_open_;
  std::vector<MessageBoxRequest> boxes_;
  std::vector<FileDialogRequest> file_requests_;
};

}  // namespace kv
