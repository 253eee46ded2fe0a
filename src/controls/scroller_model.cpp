#include "controls/scroller_model.h"

#include <cmath>
#include <utility>

namespace kv {

namespace {

constexpr ScrollerError kNegativeMin{2, "ERROR! Cannot set min value to negative ! (below 0 )"};

}  // namespace

ScrollerModel::ScrollerModel(ScrollerSurface& surface, MessagePump* pump)
    : surface_(surface), pump_(pump) {}

template <class T>
void ScrollerModel::Store(T& field, T value, std::string_view key) {
  field = std::move(value);
  surface_.PropertyChanged(key);
}

template <class T>
void ScrollerModel::StoreAndResize(T& field, T value, std::string_view key) {
  Store(field, std::move(value), key);
  RunResizeSteps();
}

void ScrollerModel::LoadProperties(const ScrollerProperties& properties) {
  properties_ = properties;
  knob_tool_tip_ = properties_.caption;
  knob_ = custom_knob_.value_or(BuiltInKnob());
  surface_.PropertyChanged({});
  RunResizeSteps();
  setValue(0, false);
}

void ScrollerModel::SetValue(double value) {
  if (std::isnan(value)) return;
  constexpr std::string_view kKey = "Value";
  Store(properties_.value, value, kKey);
  if (properties_.max < properties_.min) {
    // No value satisfies both ends; held to each in turn it would never come to rest.
    if (value != properties_.min) Store(properties_.value, properties_.min, kKey);
  } else if (value > properties_.max) {
    Store(properties_.value, properties_.max, kKey);
  } else if (value < properties_.min) {
    Store(properties_.value, properties_.min, kKey);
  }
  // Under the user's hand the knob is the source of the value.
  if (dragging_ || track_pressed_) return;
  setValue(0, false);
}

std::optional<ScrollerError> ScrollerModel::SetMin(double min) {
  if (std::isnan(min)) return std::nullopt;
  constexpr std::string_view kKey = "Min";
  Store(properties_.min, min, kKey);
  if (min < 0) {
    if (!design_host_) return kNegativeMin;
    if (events_.design_message) events_.design_message(std::string(kNegativeMin.text));
    Store(properties_.min, 0.0, kKey);
  }
  if (design_host_ && properties_.min > properties_.max - 1) {
    Store(properties_.min, properties_.max - 1, kKey);
  }
  if (properties_.value < properties_.min) SetValue(properties_.min);
  setValue(0, false);
  return std::nullopt;
}

void ScrollerModel::SetMax(double max) {
  if (std::isnan(max)) return;
  Store(properties_.max, max, "Max");
  if (properties_.value > max) SetValue(max);
  surface_.Repaint();  // the range is mapped with Max
}

void ScrollerModel::SetDirection(ScrollerDirection direction) {
  Store(properties_.direction, direction, "Direction");
  const float side = Vertical() ? scale_width_ : scale_height_;
  RequestSize(side, side);
  if (!custom_knob_) knob_ = BuiltInKnob();
  RunResizeSteps();
}

void ScrollerModel::SetScrollKnobPicture(std::optional<KnobSize> size) {
  Store(custom_knob_, size, "ScrollKnobPicture");
  knob_ = custom_knob_.value_or(BuiltInKnob());
  RunResizeSteps();
}

void ScrollerModel::PictureChanged() {
  surface_.PropertyChanged("Picture");
  RunResizeSteps();
}

void ScrollerModel::SetBackColor(std::int32_t color) {
  StoreAndResize(properties_.back_color, color, "BackColor");
}

void ScrollerModel::SetCenterLine(bool center_line) {
  StoreAndResize(properties_.center_line, center_line, "CenterLine");
}

void ScrollerModel::SetCenterLineColor(std::int32_t color) {
  StoreAndResize(properties_.center_line_color, color, "CenterLineColor");
}

void ScrollerModel::SetSizeToKnob(bool size_to_knob) {
  StoreAndResize(properties_.size_to_knob, size_to_knob, "SizeToKnob");
}

void ScrollerModel::SetRangeStart(double start) {
  if (!std::isnan(start)) StoreAndResize(properties_.range_start, start, "RangeStart");
}

void ScrollerModel::SetRangeEnd(double end) {
  if (!std::isnan(end)) StoreAndResize(properties_.range_end, end, "RangeEnd");
}

void ScrollerModel::SetRangeColor(std::int32_t color) {
  StoreAndResize(properties_.range_color, color, "RangeColor");
}

void ScrollerModel::SetCaption(std::string caption) {
  Store(properties_.caption, std::move(caption), "Caption");
  knob_tool_tip_ = properties_.caption;
}

void ScrollerModel::SetMenuEnabled(bool enabled) {
  Store(properties_.menu_enabled, enabled, "MenuEnabled");
}

void ScrollerModel::SetKnobColor(std::int32_t color) {
  Store(properties_.knob_color, color, "KnobColor");
}

void ScrollerModel::SetAutoRedraw(bool auto_redraw) {
  Store(properties_.auto_redraw, auto_redraw, "AutoRedraw");
}

void ScrollerModel::SetSize(float width, float height) {
  scale_width_ = width;
  scale_height_ = height;
  RunResizeSteps();
}

void ScrollerModel::RequestSize(float width, float height) {
  scale_width_ = width;
  scale_height_ = height;
  surface_.Resize(width, height);
}

void ScrollerModel::RunResizeSteps() {
  if (properties_.size_to_knob) {
    if (Vertical()) {
      if (knob_.width != scale_width_) RequestSize(knob_.width, scale_height_);
    } else if (knob_.height != scale_height_) {
      RequestSize(scale_width_, knob_.height);
    }
  }
  if (Vertical()) {
    left_ = scale_width_ / 2 - knob_.width / 2;
  } else {
    top_ = scale_height_ / 2 - knob_.height / 2;
  }
  setValue(0, true);
}

bool ScrollerModel::KnobContains(float x, float y) const {
  return x >= left_ && x < left_ + knob_.width && y >= top_ && y < top_ + knob_.height;
}

// Only what the present state asks for is drawn: on a surface that is painted afresh a cleared
// range or a former size must not leave its lines behind.
ScrollerLines ScrollerModel::Lines() const {
  ScrollerLines lines;
  const double width = scale_width_;
  const double height = scale_height_;
  const double middle = height / 2;
  if (properties_.center_line) {
    if (Vertical()) lines.axis = {width / 2, 0, width / 2, height};
    lines.center = {0, middle, width, middle};
  }
  if (properties_.range_start > -1 && properties_.max > 0) {
    const double start_x = width / (properties_.max + 3) * properties_.range_start;
    const double end_x = width / properties_.max * properties_.range_end + knob_.width / 2;
    lines.range = {start_x, middle, end_x, middle};
    if (start_x <= left_ + knob_.width && end_x > left_) {
      const double knob_middle = knob_.height / 2;
      lines.knob_range = {start_x - left_ - 1, knob_middle, end_x - left_, knob_middle};
    }
  }
  return lines;
}

void ScrollerModel::DrawRangeLines() {
  surface_.Repaint();
}

void ScrollerModel::setValue(std::int16_t button, bool no_event) {
  const double factor = Travel() / (properties_.max - properties_.min);
  const auto position = static_cast<float>((properties_.value - properties_.min) * factor);
  // With Max = Min there is no place to go to: the knob stays.
  if (std::isfinite(position)) KnobPosition() = position;
  if (!no_event) RaiseScrollEvent(button);
  DrawRangeLines();
}

// Turns the knob position into the value, in two assignments, of which each is clamped. Both start
// from the position as it was: outside a drag the first one already moves the knob.
void ScrollerModel::TakeKnobPosition() {
  const float travel = Travel();
  double ratio = 0;
  if (travel != 0) {
    // A vertical slider leaves Min out here, so with a Min above 0 it reaches Max early.
    const double span = Vertical() ? properties_.max : properties_.max - properties_.min;
    ratio = span / travel;
  }
  const double value = KnobPosition() * ratio;
  SetValue(value);
  SetValue(value + properties_.min);
}

void ScrollerModel::RaiseScrollEvent(std::int16_t button) {
  if (events_.scroll) events_.scroll(properties_.value, shift_state_, button);
}

void ScrollerModel::RaiseScroll(std::int16_t button) {
  TakeKnobPosition();
  RaiseScrollEvent(button);
  DrawRangeLines();
}

void ScrollerModel::RaiseAfterScroll(std::int16_t button) {
  TakeKnobPosition();
  if (events_.after_scroll) events_.after_scroll(properties_.value, button);
}

}  // namespace kv
