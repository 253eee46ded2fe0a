// The four sliders of the strip: position, volume, rate and balance, and what moving them does.
//
// Knows the models alone. A plain drag of the position pauses a playing picture when it is to
// follow the knob and plays on afterwards; a drag with Ctrl does so always and keeps the playback
// tick off (`CtrlScrubbing`). Owned by `frmMain`, which outlives it; interface thread only.
//
// Volume runs from 0 to 99, full; rate from 0 to 40, 20 being the true speed; balance from 0 to 18,
// 9 being the middle; position in seconds up to the duration of the medium.
#pragma once

#include "controls/scroller_model.h"
#include "engine/dshow_control.h"
#include "shell/time_display.h"
#include "state/session.h"
#include "state/settings.h"
#include "system/text_platform.h"
#include "system/translation.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace kv {

struct SliderModels {
  ScrollerModel& Scroller1;  // position
  ScrollerModel& Scroller2;  // volume
  ScrollerModel& Scroller3;  // rate
  ScrollerModel& Scroller4;  // balance
};

// What the form gives a slider once and for all. Empty menu captions leave the control's own.
struct SliderDesign {
  double max;
  std::string_view tool_tip;  // also to be given to the widget
  std::string_view min_caption;
  std::string_view mid_caption;
  std::string_view max_caption;
};

// In the order of the sliders' numbers. The end of the position is set for each medium: until the
// first there is none.
inline constexpr std::array kSliderDesign = {
    SliderDesign{0, "", "", "", ""},
    SliderDesign{99, TrLater("Volume 0.0 to 99. 99 is normal. (Left or Right) or (Mouse wheel)"),
                 TrLater("0%"), TrLater("50%"), TrLater("100%")},
    SliderDesign{40, TrLater("Speed (0.0 - 4.0) 2.0 is normal."), TrLater("Min"), TrLater("Normal"),
                 TrLater("Max")},
    SliderDesign{18, TrLater("Balance -9.0 to 9.0. 0.0 is middle!"), TrLater("Left"),
                 TrLater("Middle"), TrLater("Right")},
};

// Which slider a value label belongs to; the number is its index in both arrays of labels.
enum class SliderLabel { kBalance = 0, kRate = 3, kVolume = 6 };

// The value labels beside the sliders.
class SliderLabels {
 public:
  virtual ~SliderLabels() = default;

  // Shows a value: `Disp2` while it is being changed, `Disp` once it is `settled`. The balance is
  // never told as settled.
  virtual void SetSliderLabel(SliderLabel which, const std::string& text, bool settled) = 0;
};

// What the level meter does around a slider's popup menu.
class SliderMeter {
 public:
  virtual ~SliderMeter() = default;
  virtual void PrepareVUStop() = 0;
  virtual void PrepareVUStart() = 0;
};

class Sliders {
 public:
  // All must outlive this object, and this object the last event of the models.
  Sliders(const SliderModels& models, clsDShowControl& movie, Settings& settings,
          const Session& session, TimeDisplay& time, const TextPlatform& text, SliderLabels& labels,
          SliderMeter& meter);

  // Gives the models their design data. To be done first: a connected slider writes settings.
  void Configure();

  // From now on the events of the models arrive at the handlers below.
  void Connect();

  // Shows the time at `Value`, seconds. In a left drag (`Button` 1) of a picture that is to follow
  // the knob, also goes there.
  void Scroller1_Scroll(double Value, std::int16_t Shift, std::int16_t Button);
  // Goes to `Value`, unless Ctrl has been doing so all along.
  void Scroller1_AfterScroll(double Value, std::int16_t Button);
  void Scroller1_MouseDown(std::int16_t Button, std::int16_t Shift, float X, float Y);
  void Scroller1_MouseUp(std::int16_t Button, std::int16_t Shift, float X, float Y);

  // Volume. The bottom is -5000 hundredths of a decibel and not silence.
  void Scroller2_Scroll(double Value, std::int16_t Shift, std::int16_t Button);
  void Scroller2_AfterScroll(double Value, std::int16_t Button);

  // Rate. Applied when the change is finished, and only to an open medium; the label is twice the
  // factor.
  void Scroller3_Scroll(double Value, std::int16_t Shift, std::int16_t Button);
  void Scroller3_AfterScroll(double Value, std::int16_t Button);

  // Balance. Heard at once, kept when the change is finished.
  void Scroller4_Scroll(double Value, std::int16_t Shift, std::int16_t Button);
  void Scroller4_AfterScroll(double Value, std::int16_t Button);

  // The popup menu of any of the four.
  void MenuShow();
  void MenuDone();

  // A drag with Ctrl is under way: the position is the user's.
  bool CtrlScrubbing() const { return ctrl_scrubbing_; }

 private:
  // Whether a plain left drag is to be followed by play.
  enum class DragState { kNone = -1, kResume = 1, kStay = 2 };

  bool Playing() const { return movie_.DS_IsRunning() && !movie_.DS_IsPaused(); }
  bool HasVideo() const { return session_.MovieWidth >= 1 && session_.MovieHeight >= 1; }
  std::string Tenths(int tenths) const;
  void ApplyVolume(double value, bool settled);
  void ApplyBalance(double value);

  SliderModels models_;
  clsDShowControl& movie_;
  Settings& settings_;
  const Session& session_;
  TimeDisplay& time_;
  const TextPlatform& text_;
  SliderLabels& labels_;
  SliderMeter& meter_;

  bool ctrl_scrubbing_ = false;
  bool paused_by_ctrl_ = false;
  DragState drag_state_ = DragState::kNone;
};

}  // namespace kv
