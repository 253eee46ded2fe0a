// The slider without its picture: value, knob position, range, mouse, keyboard and set menu.
//
// Every slider of the player is one of these. The widget (scroller.h) owns a model, feeds it sizes
// and input and paints what it says; the rules of the player hold the model alone. Lengths are
// device-independent pixels counted from the control's upper left corner, colours 0x00BBGGRR or a
// system colour (0x80000000 + index). Interface thread only; handlers may call back into the model,
// and two steps yield to pending messages (the constructor names them).
#pragma once

#include "system/translation.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace kv {

class MessagePump;

// Mouse buttons and shift keys as masks.
inline constexpr std::int16_t kLeftButton = 1;
inline constexpr std::int16_t kRightButton = 2;
inline constexpr std::int16_t kMiddleButton = 4;
inline constexpr std::int16_t kShiftKey = 1;
inline constexpr std::int16_t kCtrlKey = 2;
inline constexpr std::int16_t kAltKey = 4;

// The two key codes that move the knob: add and subtract of the numeric keypad.
inline constexpr std::int16_t kKeypadAdd = 107;
inline constexpr std::int16_t kKeypadSubtract = 109;

// The colour of a push button's face in the user's desktop theme.
inline constexpr std::int32_t kSystemButtonFace = static_cast<std::int32_t>(0x8000000FU);

enum class ScrollerDirection { kHorizontal = 0, kVertical = 1 };
enum class SetMenuItem { kSetToMin, kSetToMid, kSetToMax };

struct KnobSize {
  float width = 0;
  float height = 0;
};

// The built-in knobs.
inline constexpr KnobSize kHorizontalKnob{11, 21};
inline constexpr KnobSize kVerticalKnob{21, 11};

// A line from (x1, y1) to (x2, y2).
struct ScrollerLine {
  double x1 = 0;
  double y1 = 0;
  double x2 = 0;
  double y2 = 0;
};

// What stands on the control now; an empty line is not drawn.
struct ScrollerLines {
  std::optional<ScrollerLine> axis;        // vertical sliders: along the travel, CenterLineColor
  std::optional<ScrollerLine> center;      // across the width at half height, CenterLineColor
  std::optional<ScrollerLine> range;       // RangeColor
  std::optional<ScrollerLine> knob_range;  // the range on the knob, in knob coordinates
};

// The captions of the popup menu and of its three items, English.
struct SetMenuCaptions {
  std::string file = TrLater("File");
  std::string set_to_min = TrLater("Set to 0%");
  std::string set_to_mid = TrLater("Set to 50%");
  std::string set_to_max = TrLater("Set to 100%");
};

// All stored properties with their defaults. A range start of -1 or less means no range.
struct ScrollerProperties {
  std::int32_t back_color = kSystemButtonFace;
  bool auto_redraw = true;
  ScrollerDirection direction = ScrollerDirection::kHorizontal;
  bool center_line = true;
  double min = 0;
  double max = 32766;
  double value = 0;
  std::int32_t center_line_color = 0x808080;
  std::string caption;
  bool menu_enabled = true;
  bool size_to_knob = true;
  double range_start = -1;
  double range_end = -1;
  std::int32_t range_color = 65535;
  std::int32_t knob_color = kSystemButtonFace;
};

// What the host hears; unset members are skipped. References may be written by the handler: what
// it leaves in `value` and `shift` stays stored as it is, `cancel` stops the menu.
struct ScrollerEvents {
  std::function<void(double& value, std::int16_t& shift, std::int16_t button)> scroll;
  std::function<void(double& value, std::int16_t button)> after_scroll;
  std::function<void(std::int16_t button, std::int16_t shift, float x, float y)> mouse_down;
  std::function<void(std::int16_t button, std::int16_t shift, float x, float y)> mouse_up;
  std::function<void(bool& cancel)> menu_show;
  std::function<void()> menu_done;
  // Only in a design host: a text for a message box with the exclamation icon.
  std::function<void(const std::string& text)> design_message;
};

// What the model needs of the widget it lives in. The base class does nothing, which is all a
// model without a window needs.
class ScrollerSurface {
 public:
  virtual ~ScrollerSurface() = default;

  // Gives the control this outer size; the widget answers with SetSize() if it came out otherwise.
  virtual void Resize(float /*width*/, float /*height*/) {}

  // Something that is drawn has moved or changed.
  virtual void Repaint() {}

  // A property was stored under `key`, or a whole record of them (an empty key); the consequences
  // follow after this call.
  virtual void PropertyChanged(std::string_view /*key*/) {}

  // The tooltip that the host has given to the control.
  virtual std::string ToolTipText() const { return {}; }

  // Shows the menu at the pointer and waits; nothing when it is dismissed.
  virtual std::optional<SetMenuItem> PopUpSetMenu(const SetMenuCaptions& /*captions*/) {
    return std::nullopt;
  }
};

struct ScrollerError {
  int number = 0;
  std::string_view text;
};

class ScrollerModel {
 public:
  // `surface` must outlive the model. `pump` may be null; else it is pumped once in every move over
  // the knob and once in every press on the track.
  explicit ScrollerModel(ScrollerSurface& surface, MessagePump* pump = nullptr);

  ScrollerModel(const ScrollerModel&) = delete;
  ScrollerModel& operator=(const ScrollerModel&) = delete;

  ScrollerEvents& Events() { return events_; }

  // A design host edits the control's properties instead of using it; see SetMin().
  void SetDesignHost(bool design_host) { design_host_ = design_host; }

  // Takes over a whole record as it was stored, unchecked, and raises `scroll` once.
  void LoadProperties(const ScrollerProperties& properties);
  const ScrollerProperties& Properties() const { return properties_; }

  double Value() const { return properties_.value; }
  double Min() const { return properties_.min; }
  double Max() const { return properties_.max; }
  std::int16_t ShiftState() const { return shift_state_; }

  // Stores `value`, held between Min and Max (a Max below Min counts for nothing: the value is then
  // Min), moves the knob and raises `scroll` once with button 0. While the user holds the knob it
  // only stores. Not-a-number is ignored, here and in every other setter.
  void SetValue(double value);

  // Pulls the value up to `min` and raises `scroll`. A negative `min` stays stored and is reported
  // as error 2; a design host is told by `design_message` instead and gets 0, and there `min` also
  // stays at least 1 below Max.
  std::optional<ScrollerError> SetMin(double min);

  // Pulls the value down to `max`; the knob of a value that still fits stays where it is until the
  // value or the size changes. `max` is never corrected.
  void SetMax(double max);

  // Turning the control swaps its outer size: its height takes the width, or the other way round.
  void SetDirection(ScrollerDirection direction);
  void SetBackColor(std::int32_t color);
  void SetCenterLine(bool center_line);
  void SetCenterLineColor(std::int32_t color);
  void SetCaption(std::string caption);
  void SetMenuEnabled(bool enabled);
  void SetSizeToKnob(bool size_to_knob);
  void SetRangeStart(double start);
  void SetRangeEnd(double end);
  void SetRangeColor(std::int32_t color);
  void SetKnobColor(std::int32_t color);

  // Kept for hosts that store it; every surface here is buffered anyway.
  void SetAutoRedraw(bool auto_redraw);

  // The widget has a new background picture.
  void PictureChanged();

  // The size of a custom knob picture; nothing goes back to the built-in knob.
  void SetScrollKnobPicture(std::optional<KnobSize> size);

  // The inner size of the control, from the widget: on every resize.
  void SetSize(float width, float height);
  float ScaleWidth() const { return scale_width_; }
  float ScaleHeight() const { return scale_height_; }

  float KnobLeft() const { return left_; }
  float KnobTop() const { return top_; }
  KnobSize Knob() const { return knob_; }
  bool KnobContains(float x, float y) const;
  const std::string& KnobToolTip() const { return knob_tool_tip_; }
  bool Dragging() const { return dragging_; }
  bool TrackPressed() const { return track_pressed_; }

  // The lines of the present state. The range maps with Max alone, Min plays no part.
  ScrollerLines Lines() const;

  // Asks the surface to paint the centre line and the range.
  void DrawRangeLines();

  // Places the knob from the value; unless `no_event` raises `scroll` with `button`.
  void setValue(std::int16_t button, bool no_event);

  // What a menu item does: assigns `value` and raises `after_scroll` with button 0.
  void SetAndFinish(double value);

  // Raises `menu_show`; unless cancelled shows the menu, does what was picked, raises `menu_done`.
  void ShowSetMenu();
  void SetMenuCaption(std::string min_caption, std::string mid_caption, std::string max_caption);

  // The mouse in control coordinates. Who is hit first, knob or track, gets all events until the
  // last button is up. `buttons` of a move is the mask of what is held.
  void PointerDown(std::int16_t button, std::int16_t shift, float x, float y);
  void PointerMove(std::int16_t buttons, float x, float y);
  void PointerUp(std::int16_t button, std::int16_t shift, float x, float y);

  // The mouse is lost (disabled, hidden): the drag ends without `after_scroll`, the knob goes back
  // to the value, and `mouse_up` closes what `mouse_down` opened. Without a drag nothing happens.
  void CancelDrag();

  // True if the key moved the knob; every key leaves its shift mask in ShiftState().
  bool KeyDown(std::int16_t key_code, std::int16_t shift);
  void KeyUp(std::int16_t key_code, std::int16_t shift);

 private:
  enum class Target { kTrack, kKnob };
  struct Pointer {
    std::int16_t button = 0;
    std::int16_t shift = 0;
    float x = 0;
    float y = 0;
  };

  bool Vertical() const { return properties_.direction == ScrollerDirection::kVertical; }
  // Along the travel: length of the control, length and position of the knob.
  float ScaleLength() const { return Vertical() ? scale_height_ : scale_width_; }
  float KnobLength() const { return Vertical() ? knob_.height : knob_.width; }
  float Travel() const { return ScaleLength() - KnobLength(); }
  float& KnobPosition() { return Vertical() ? top_ : left_; }

  template <class T>
  void Store(T& field, T value, std::string_view key);
  template <class T>
  void StoreAndResize(T& field, T value, std::string_view key);

  KnobSize BuiltInKnob() const { return Vertical() ? kVerticalKnob : kHorizontalKnob; }
  void RunResizeSteps();
  void RequestSize(float width, float height);
  void TakeKnobPosition();
  void RaiseScrollEvent(std::int16_t button);
  void RaiseScroll(std::int16_t button);
  void RaiseAfterScroll(std::int16_t button);
  void CenterKnobOn(float point);

  void KnobButtonDown(const Pointer& at);
  void KnobMove(std::int16_t buttons, float x, float y);
  void KnobButtonUp(const Pointer& at);
  void TrackButtonDown(const Pointer& at);
  void TrackButtonUp(const Pointer& at);
  void RaiseMouseUp(const Pointer& at);

  ScrollerSurface& surface_;
  MessagePump* pump_;
  ScrollerEvents events_;
  ScrollerProperties properties_;
  SetMenuCaptions captions_;
  bool design_host_ = false;

  float scale_width_ = 0;
  float scale_height_ = 0;
  std::optional<KnobSize> custom_knob_;
  KnobSize knob_ = kHorizontalKnob;
  float left_ = 0;
  float top_ = 0;
  std::string knob_tool_tip_;

  std::int16_t shift_state_ = 0;
  bool track_pressed_ = false;
  bool dragging_ = false;
  float down_x_ = 0;
  float down_left_ = 0;
  float down_y_ = 0;
  std::int32_t down_top_ = 0;

  Target target_ = Target::kTrack;
  std::int16_t held_ = 0;
  bool in_track_press_ = false;
  std::optional<Pointer> late_release_;
  bool pumping_move_ = false;
  std::uint32_t moves_ = 0;
  // Expires with the model, so that a step that has yielded can tell whether it still has one.
  std::shared_ptr<const char> life_ = std::make_shared<const char>('\0');
};

}  // namespace kv
