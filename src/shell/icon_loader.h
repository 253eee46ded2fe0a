// `LoadIcons`: fills the picture cache with the desktop's icon of every kind of media.
//
// Looking an icon up can read the disk, so it begins when the window has long been there and takes
// one kind at a time. Owned by `frmMain`; interface thread only.
#pragma once

#include "controls/std_pictures.h"
#include "system/timers.h"

#include <deque>
#include <memory>
#include <string>
#include <string_view>

namespace kv {

class IconLoader {
 public:
  // `time` must outlive this object.
  explicit IconLoader(TimerSource& time);

  // `patterns`: "*.mp3;*.wav"; each extension becomes a key of the cache.
  void LoadIcons(std::string_view patterns);
  void Stop() { timer_->SetEnabled(false); }

  const StdPictureClass& Pictures() const { return pictures_; }

 private:
  void Tick();

  StdPictureClass pictures_;
  std::deque<std::string> waiting_;
  std::unique_ptr<Timer> timer_;
};

}  // namespace kv
