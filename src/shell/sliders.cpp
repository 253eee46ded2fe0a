#include "shell/sliders.h"

#include "system/translation.h"

#include <cmath>
#include <cstdlib>
#include <utility>

namespace kv {
namespace {

// Hundredths of a decibel between the ends of the volume slider.
constexpr double kVolumeSpan = 5000.0;
constexpr double kBalancePerStep = 1000.0;
constexpr double kRatePerStep = 0.05;

int Rounded(double value) {
  return static_cast<int>(std::lrint(value));
}

}  // namespace

Sliders::Sliders(const SliderModels& models, clsDShowControl& movie, Settings& settings,
                 const Session& session, TimeDisplay& time, const TextPlatform& text,
                 SliderLabels& labels, SliderMeter& meter)
    : models_(models),
      movie_(movie),
      settings_(settings),
      session_(session),
      time_(time),
      text_(text),
      labels_(labels),
      meter_(meter) {}

void Sliders::Configure() {
  const std::array<ScrollerModel*, kSliderDesign.size()> sliders = {
      &models_.Scroller1, &models_.Scroller2, &models_.Scroller3, &models_.Scroller4};
  for (std::size_t i = 0; i < sliders.size(); ++i) {
    const SliderDesign& design = kSliderDesign[i];
    ScrollerModel& slider = *sliders[i];
    slider.SetMax(design.max);
    slider.SetMin(0);
    slider.SetCaption(std::string(Tr(design.tool_tip)));
    if (!design.min_caption.empty()) {
      slider.SetMenuCaption(std::string(design.min_caption), std::string(design.mid_caption),
                            std::string(design.max_caption));
    }
  }
}

void Sliders::Connect() {
  using ScrollHandler = void (Sliders::*)(double, std::int16_t, std::int16_t);
  using AfterScrollHandler = void (Sliders::*)(double, std::int16_t);
  const auto connect = [this](ScrollerModel& slider, ScrollHandler scroll,
                              AfterScrollHandler after_scroll) {
    ScrollerEvents& events = slider.Events();
    events.scroll = [this, scroll](double& value, std::int16_t& shift, std::int16_t button) {
      (this->*scroll)(value, shift, button);
    };
    events.after_scroll = [this, after_scroll](double& value, std::int16_t button) {
      (this->*after_scroll)(value, button);
    };
    events.menu_show = [this](bool& /*cancel*/) { MenuShow(); };
    events.menu_done = [this] { MenuDone(); };
  };
  connect(models_.Scroller1, &Sliders::Scroller1_Scroll, &Sliders::Scroller1_AfterScroll);
  connect(models_.Scroller2, &Sliders::Scroller2_Scroll, &Sliders::Scroller2_AfterScroll);
  connect(models_.Scroller3, &Sliders::Scroller3_Scroll, &Sliders::Scroller3_AfterScroll);
  connect(models_.Scroller4, &Sliders::Scroller4_Scroll, &Sliders::Scroller4_AfterScroll);
  ScrollerEvents& position = models_.Scroller1.Events();
  position.mouse_down = [this](std::int16_t button, std::int16_t shift, float x, float y) {
    Scroller1_MouseDown(button, shift, x, y);
  };
  position.mouse_up = [this](std::int16_t button, std::int16_t shift, float x, float y) {
    Scroller1_MouseUp(button, shift, x, y);
  };
}

void Sliders::Scroller1_Scroll(double Value, std::int16_t /*Shift*/, std::int16_t Button) {
  if (PlaysWithoutPosition(session_)) return;
  time_.ShowPosition(Value);
  if (Button != kLeftButton || !HasVideo()) return;
  if (drag_state_ == DragState::kNone) {
    drag_state_ = Playing() ? DragState::kResume : DragState::kStay;
  }
  if (!ctrl_scrubbing_ && !IsOn(settings_.ShowFramesWhileScrolling)) return;
  if (Playing()) movie_.DS_Pause();
  movie_.DS_SetPosition(Value);
}

void Sliders::Scroller1_AfterScroll(double Value, std::int16_t /*Button*/) {
  const DragState drag = std::exchange(drag_state_, DragState::kNone);
  if (ctrl_scrubbing_) return;
  movie_.DS_SetPosition(Value);
  if (drag == DragState::kResume) movie_.DS_Play();
}

void Sliders::Scroller1_MouseDown(std::int16_t Button, std::int16_t Shift, float /*X*/,
                                  float /*Y*/) {
  // Only the left button drags. The release of another one on the track is never told, and would
  // leave the medium paused and the tick off.
  if (Button != kLeftButton || Shift != kCtrlKey) return;
  if (!movie_.DS_IsPaused()) {
    movie_.DS_Pause();
    paused_by_ctrl_ = true;
  }
  if (HasVideo() && movie_.DS_IsPaused()) ctrl_scrubbing_ = true;
}

void Sliders::Scroller1_MouseUp(std::int16_t /*Button*/, std::int16_t /*Shift*/, float /*X*/,
                                float /*Y*/) {
  // Still set only when the mouse was lost in the middle of a drag: its end was never told.
  const DragState lost_drag = std::exchange(drag_state_, DragState::kNone);
  const bool paused_by_drag =
      lost_drag == DragState::kResume && movie_.DS_IsRunning() && movie_.DS_IsPaused();
  if (std::exchange(paused_by_ctrl_, false) || paused_by_drag) movie_.DS_Play();
  ctrl_scrubbing_ = false;
}

void Sliders::ApplyVolume(double value, bool settled) {
  const int volume = Rounded(value);
  labels_.SetSliderLabel(SliderLabel::kVolume, (volume < 10 ? "0" : "") + std::to_string(volume),
                         settled);
  const double decibels = kVolumeSpan / models_.Scroller2.Max() * volume - kVolumeSpan;
  movie_.DS_SetVolume(Rounded(decibels), true);
  settings_.Volume = volume;
}

void Sliders::Scroller2_Scroll(double Value, std::int16_t /*Shift*/, std::int16_t /*Button*/) {
  ApplyVolume(Value, false);
}

void Sliders::Scroller2_AfterScroll(double Value, std::int16_t /*Button*/) {
  ApplyVolume(Value, true);
}

std::string Sliders::Tenths(int tenths) const {
  const int size = std::abs(tenths);
  return (tenths < 0 ? "-" : "") + std::to_string(size / 10) + text_.DecimalSeparator() +
         std::to_string(size % 10);
}

void Sliders::Scroller3_Scroll(double Value, std::int16_t /*Shift*/, std::int16_t /*Button*/) {
  labels_.SetSliderLabel(SliderLabel::kRate, Tenths(Rounded(Value)), false);
}

void Sliders::Scroller3_AfterScroll(double Value, std::int16_t /*Button*/) {
  const int rate = Rounded(Value);
  if (movie_.DS_IsOpen()) movie_.DS_SetRate(rate * kRatePerStep);
  labels_.SetSliderLabel(SliderLabel::kRate, Tenths(rate), true);
  settings_.PlayRate = rate;
}

void Sliders::ApplyBalance(double value) {
  const double balance = value - models_.Scroller4.Max() / 2;
  labels_.SetSliderLabel(SliderLabel::kBalance, Tenths(Rounded(balance) * 10), false);
  movie_.DS_SetBalance(Rounded(kBalancePerStep * balance));
}

void Sliders::Scroller4_Scroll(double Value, std::int16_t /*Shift*/, std::int16_t /*Button*/) {
  ApplyBalance(Value);
}

void Sliders::Scroller4_AfterScroll(double Value, std::int16_t /*Button*/) {
  ApplyBalance(Value);
  settings_.Balance = Rounded(Value);
}

void Sliders::MenuShow() {
  meter_.PrepareVUStop();
}

void Sliders::MenuDone() {
  meter_.PrepareVUStart();
}

}  // namespace kv
