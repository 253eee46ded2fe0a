// Mouse, keyboard and set menu of the slider.
#include "controls/scroller_model.h"
#include "system/message_pump.h"

#include <cmath>
#include <utility>

namespace kv {

void ScrollerModel::PointerDown(std::int16_t button, std::int16_t shift, float x, float y) {
  // A press that arrives while the press before it still yields is dropped.
  if (in_track_press_) return;
  if (held_ == 0) target_ = KnobContains(x, y) ? Target::kKnob : Target::kTrack;
  held_ = static_cast<std::int16_t>(held_ | button);
  if (target_ == Target::kKnob) {
    KnobButtonDown({button, shift, x - left_, y - top_});
  } else {
    TrackButtonDown({button, shift, x, y});
  }
}

void ScrollerModel::PointerMove(std::int16_t buttons, float x, float y) {
  if (in_track_press_) return;
  held_ = static_cast<std::int16_t>(held_ & buttons);
  if (dragging_ && (buttons & kLeftButton) == 0) {
    CancelDrag();  // the release never came
    return;
  }
  const bool knob = held_ == 0 ? KnobContains(x, y) : target_ == Target::kKnob;
  if (knob) KnobMove(buttons, x - left_, y - top_);
}

void ScrollerModel::PointerUp(std::int16_t button, std::int16_t shift, float x, float y) {
  if (in_track_press_) {
    late_release_ = Pointer{button, shift, x, y};
    return;
  }
  if ((held_ & button) == 0) return;  // pressed elsewhere, or the drag was cancelled
  held_ = static_cast<std::int16_t>(held_ & ~button);
  if (target_ == Target::kKnob) {
    KnobButtonUp({button, shift, x - left_, y - top_});
  } else {
    TrackButtonUp({button, shift, x, y});
  }
}

void ScrollerModel::CancelDrag() {
  held_ = 0;
  track_pressed_ = false;
  if (!std::exchange(dragging_, false)) return;
  setValue(0, true);
  RaiseMouseUp({kLeftButton, 0, 0, 0});
}

void ScrollerModel::KnobButtonDown(const Pointer& at) {
  track_pressed_ = false;
  if (at.button != kLeftButton) return;
  if (!dragging_) {
    down_x_ = at.x;
    down_y_ = at.y;
    down_left_ = left_;
    down_top_ = static_cast<std::int32_t>(std::lrint(top_));
    dragging_ = true;
  }
  if (events_.mouse_down) events_.mouse_down(at.button, at.shift, at.x, at.y);
}

void ScrollerModel::KnobMove(std::int16_t buttons, float x, float y) {
  const std::uint32_t move = ++moves_;
  // A move that arrives inside the pump does not pump again, so the depth stays bounded.
  if (pump_ != nullptr && !pumping_move_) {
    const std::weak_ptr<const char> life = life_;
    pumping_move_ = true;
    pump_->PumpOnce();
    if (life.expired()) return;
    pumping_move_ = false;
    if (move != moves_) return;  // a newer move came first; the knob must not jump back
  }
  knob_tool_tip_ = surface_.ToolTipText();
  if (!dragging_) return;

  // The pointer counts from the knob, which has moved since the press: each step adds to the last.
  const float wanted =
      Vertical() ? y - down_y_ + static_cast<float>(down_top_) : x - down_x_ + down_left_;
  float& position = KnobPosition();
  if (wanted < 0) {
    position = 0;
  } else if (wanted + KnobLength() > ScaleLength()) {
    position = Travel();
  } else {
    position = wanted;
  }
  if (Vertical()) {
    down_top_ = static_cast<std::int32_t>(std::lrint(top_));
  } else {
    down_left_ = left_;
  }
  RaiseScroll(buttons);
}

void ScrollerModel::KnobButtonUp(const Pointer& at) {
  dragging_ = false;
  if (at.button == kLeftButton) RaiseAfterScroll(at.button);
  if (at.button == kRightButton && properties_.menu_enabled) {
    const std::weak_ptr<const char> life = life_;
    ShowSetMenu();
    if (life.expired()) return;
  }
  track_pressed_ = false;
  RaiseMouseUp(at);
}

void ScrollerModel::RaiseMouseUp(const Pointer& at) {
  if (events_.mouse_up) events_.mouse_up(at.button, at.shift, at.x, at.y);
}

void ScrollerModel::CenterKnobOn(float point) {
  const float half = KnobLength() / 2;
  float& position = KnobPosition();
  if (point + half > ScaleLength()) {
    position = Travel();
  } else if (point - half >= 0) {
    position = point - half;
  } else {
    position = 0;
  }
}

// A left press brings the knob to the pointer and goes on as a drag of the knob; as that drag
// starts at the knob's corner, its first move puts the knob's edge under the pointer.
void ScrollerModel::TrackButtonDown(const Pointer& at) {
  if (at.button == kLeftButton) {
    const std::weak_ptr<const char> life = life_;
    in_track_press_ = true;
    track_pressed_ = true;
    CenterKnobOn(Vertical() ? at.y : at.x);
    RaiseScroll(0);
    if (pump_ != nullptr) pump_->PumpOnce();
    if (life.expired()) return;
    in_track_press_ = false;
    if (!track_pressed_) {  // the mouse was lost inside the pump
      late_release_.reset();
      setValue(0, true);
      return;
    }
    KnobButtonDown({kLeftButton, 0, 0, 0});
    target_ = Target::kKnob;
  }
  if (events_.mouse_down) events_.mouse_down(at.button, at.shift, at.x, at.y);
  if (late_release_) {
    const Pointer release = *std::exchange(late_release_, std::nullopt);
    PointerUp(release.button, release.shift, release.x, release.y);
  }
}

void ScrollerModel::TrackButtonUp(const Pointer& at) {
  track_pressed_ = false;
  if (at.button != kRightButton) return;
  if (properties_.menu_enabled) {
    ShowSetMenu();
  } else {
    RaiseMouseUp(at);
  }
}

bool ScrollerModel::KeyDown(std::int16_t key_code, std::int16_t shift) {
  shift_state_ = shift;
  if (key_code == kKeypadAdd) {
    CenterKnobOn(KnobPosition() + KnobLength() + 1);
  } else if (key_code == kKeypadSubtract) {
    CenterKnobOn(KnobPosition() - 1);
  } else {
    return false;
  }
  RaiseScroll(0);
  return true;
}

void ScrollerModel::KeyUp(std::int16_t /*key_code*/, std::int16_t shift) {
  shift_state_ = shift;
}

void ScrollerModel::SetAndFinish(double value) {
  SetValue(value);
  RaiseAfterScroll(0);
}

void ScrollerModel::ShowSetMenu() {
  bool cancel = false;
  if (events_.menu_show) events_.menu_show(cancel);
  if (cancel) return;
  const std::weak_ptr<const char> life = life_;
  const std::optional<SetMenuItem> item = surface_.PopUpSetMenu(captions_);
  if (life.expired()) return;
  if (item == SetMenuItem::kSetToMin) SetAndFinish(properties_.min);
  if (item == SetMenuItem::kSetToMid) SetAndFinish(properties_.max / 2);
  if (item == SetMenuItem::kSetToMax) SetAndFinish(properties_.max);
  if (events_.menu_done) events_.menu_done();
}

void ScrollerModel::SetMenuCaption(std::string min_caption, std::string mid_caption,
                                   std::string max_caption) {
  captions_.set_to_min = std::move(min_caption);
  captions_.set_to_mid = std::move(mid_caption);
  captions_.set_to_max = std::move(max_caption);
}

}  // namespace kv
