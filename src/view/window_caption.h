// The caption of the main window: the program's name, and now and then something more urgent.
//
// A temporary text stays for three seconds; then the caption is blank for a moment and types the
// name again, a letter at a time. Full screen has no caption, and nothing is touched there. Owned
// by `frmMain`; interface thread only.
#pragma once

#include "state/settings.h"
#include "system/timers.h"

#include <functional>
#include <string>

namespace kv {

class WindowCaption {
 public:
  using SetCaption = std::function<void(const std::string&)>;

  // `set_caption` puts a UTF-8 text on the window. The form's timers of these names.
  // `WindowBaseCaption` is the normal caption; it is not set here.
  WindowCaption(SetCaption set_caption, const Settings& settings, Timer& NormalizeCaption,
                Timer& SetCaptionDelay, std::string WindowBaseCaption);

  // Shows `text` for three seconds, counted anew with each call.
  void SetTempWindowCaption(const std::string& text);

  // The user wants no animations: the normal caption then comes back at once.
  void SetReducedMotion(bool reduced) { reduced_motion_ = reduced; }

  void OnNormalizeCaption();
  void OnSetCaptionDelay();

  const std::string& WindowBaseCaption() const { return WindowBaseCaption_; }

 private:
  SetCaption set_caption_;
  const Settings& settings_;
  Timer& NormalizeCaption_;
  Timer& SetCaptionDelay_;
  std::string WindowBaseCaption_;
  int base_length_;      // characters
  int CaptionTick_ = 0;  // ticks of the animation
  bool reduced_motion_ = false;
};

}  // namespace kv
