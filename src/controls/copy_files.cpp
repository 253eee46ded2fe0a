#include "controls/copy_files.h"

#include "system/paths.h"
#include "system/translation.h"

#include <cstdint>
#include <utility>

namespace kv {
namespace {

constexpr std::int32_t kBlockSize = 262144;  // bytes

}  // namespace

CopyFiles::CopyFiles(CopyFilesWindow& window, FileCopier& copier, Dialogs& dialogs,
                     std::vector<std::string> files)
    : window_(window), copier_(copier), dialogs_(dialogs), files_(std::move(files)) {}

void CopyFiles::Start() {
  const std::weak_ptr<const bool> alive = alive_;
  std::string folder = dialogs_.BrowseForFolderDialog(Tr("Choose copy destination:"));
  if (alive.expired()) return;
  if (folder.empty()) {
    window_.Unload();
    return;
  }
  if (!folder.ends_with('/')) folder += '/';
  folder_ = std::move(folder);
  CopyNext();
}

void CopyFiles::Cancel() {
  cancelled_ = true;
  copier_.CancelCopy();
}

// The last part only, whichever way the entry is written: the copy lies in the folder itself.
std::string CopyFiles::Name() const {
  const std::string name = FileNameOfPath(files_[count_ - 1]);
  return name.substr(name.rfind('/') + 1);
}

void CopyFiles::CopyNext() {
  if (cancelled_ || count_ == files_.size()) {
    window_.Unload();
    return;
  }
  ++count_;
  copy_number_ = 0;
  CopyTo(Name());
}

void CopyFiles::CopyTo(const std::string& name) {
  target_name_ = name;
  window_.ShowLabels(
      Fill(Tr("Copying file \"%1\"."), Name()),
      Fill(Tr("File %1 / %2"), std::to_string(count_), std::to_string(files_.size())),
      Fill(Tr("To: \"%1\""), target_name_));
  copier_.xCopyFile(files_[count_ - 1], folder_ + target_name_, kBlockSize, false,
                    [this](CopyResult result) { OnResult(result); });
}

void CopyFiles::OnResult(CopyResult result) {
  const std::weak_ptr<const bool> alive = alive_;
  if (cancelled_) result = CopyResult::kCancelled;  // also when this file was complete just before
  switch (result) {
    case CopyResult::kDone:
      CopyNext();
      return;
    case CopyResult::kDestinationExists:
      // The copier itself tells whether the next name is free, without a look at the disk here.
      ++copy_number_;
      CopyTo("Copy (" + std::to_string(copy_number_) + ") of " + Name());
      return;
    case CopyResult::kDiskError:
      Stop(Tr("Disk error, copy was canceled!"), BoxIcon::kStop);
      return;
    case CopyResult::kNoSource:
      Stop(Tr("NoExist, copy was canceled!"), BoxIcon::kExclamation);
      return;
    case CopyResult::kNoFreeSpace: {
      const bool retry = window_.AskRetry(
          Fill(Tr("There is not enough free space to copy the file \"%1\""), Name()));
      if (alive.expired()) return;
      if (retry && !cancelled_) {
        CopyTo(target_name_);
      } else {
        window_.Unload();
      }
      return;
    }
    case CopyResult::kCancelled:
      window_.Unload();
      return;
  }
}

void CopyFiles::Stop(const std::string& message, BoxIcon icon) {
  MessageBoxRequest box;
  box.text = message;
  box.icon = icon;
  const std::weak_ptr<const bool> alive = alive_;
  dialogs_.ShowMessageBox(box);
  if (!alive.expired()) window_.Unload();
}

}  // namespace kv
