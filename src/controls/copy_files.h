// Copies several files into one folder that the user picks, one after the other.
//
// The rules behind `frmCopy`: what its labels read, what happens when a name is taken or the disk
// is full, and when the whole list ends. Owned by that window. Interface thread only.
#pragma once

#include "controls/file_copier.h"
#include "system/dialogs.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace kv {

// The window, as the rules see it.
class CopyFilesWindow {
 public:
  virtual ~CopyFilesWindow() = default;

  // "Copying file "a.mp3".", "File 1 / 3", "To: "a.mp3"". Names are bytes.
  virtual void ShowLabels(const std::string& label1, const std::string& label2,
                          const std::string& label3) = 0;
  // A warning with the buttons Retry and Cancel; true for Retry.
  virtual bool AskRetry(const std::string& text) = 0;
  // All is over. Called once, the last call of all; the rules may be destroyed inside.
  virtual void Unload() = 0;
};

class CopyFiles {
 public:
  // `files`: the paths in their order. What is handed over must outlive this object, the dialogs
  // also what they show.
  CopyFiles(CopyFilesWindow& window, FileCopier& copier, Dialogs& dialogs,
            std::vector<std::string> files);

  // Asks for the folder and begins; without one the window is unloaded at once.
  void Start();

  // Ends the list with the file that is being copied, without a message. That takes the time that
  // the copier needs; before Start and while it asks nothing happens but that nothing begins.
  void Cancel();

 private:
  void CopyNext();
  void CopyTo(const std::string& name);
  void OnResult(CopyResult result);
  void Stop(const std::string& message, BoxIcon icon);
  std::string Name() const;

  CopyFilesWindow& window_;
  FileCopier& copier_;
  Dialogs& dialogs_;
  std::vector<std::string> files_;
  std::string folder_;       // with a trailing "/"
  std::size_t count_ = 0;    // files begun
  int copy_number_ = 0;      // of "Copy (1) of a.mp3"; 0: the name itself
  std::string target_name_;  // without the folder
  bool cancelled_ = false;
  // Expires with this object, which can be closed while a question is open.
  std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
};

}  // namespace kv
