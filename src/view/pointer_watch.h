// The watch over the pointer: calls the control strip and sends it away, hides the pointer, and
// reads the clicks on the video area, which has no control to receive them.
//
// `MouseTimer` asks the world twenty times a second; nothing in a tick may block. A pointer of
// which nobody tells where it is counts as away from the form. Owned by `frmMain`; interface thread
// only.
#pragma once

#include "state/session.h"
#include "state/settings.h"
#include "system/message_pump.h"
#include "system/timers.h"
#include "view/full_screen.h"

#include <optional>
#include <string_view>

namespace kv {

enum class Foreground { kOtherProcess, kOtherWindow, kMainForm };

struct ScreenPoint {
  int x = 0;
  int y = 0;
  friend bool operator==(const ScreenPoint&, const ScreenPoint&) = default;
};

// The form and its strip in device-independent pixels. Left and top are those of the outer corner
// on the screen; the strip's top counts from the client area.
struct FormArea {
  int left = 0;
  int top = 0;
  int width = 0;  // with the frame
  int height = 0;
  int ScaleWidth = 0;  // without it
  int ScaleHeight = 0;
  int PanelTop = 0;
  int PanelHeight = 0;
};

class PointerWorld {
 public:
  virtual ~PointerWorld() = default;
  // A popup menu or dialog of this program is another window of ours.
  virtual Foreground ForegroundWindow() const = 0;
  virtual bool FormMinimised() const = 0;
  virtual FormArea AreaOfForm() const = 0;
  virtual bool PanelVisible() const = 0;
  virtual bool DisplayVisible() const = 0;
  // On the screen, pixels; nothing where the desktop keeps it to itself.
  virtual std::optional<ScreenPoint> Pointer() const = 0;
  // 1 the left button, else 2 the right one, else 0. A press that was shorter than the time since
  // the last question counts as down in this one.
  virtual int MouseButtonDown() = 0;
};

class PointerActions {
 public:
  virtual ~PointerActions() = default;
  // A state and not a count: a pointer that was shown twice is hidden by one hiding.
  virtual void ShowCursor(bool show) = 0;
  virtual void SetTaskBarVisible(bool visible) = 0;
  virtual void BUtton_Click(int Index) = 0;
  // Raises the menu event of an item.
  virtual void MENU_Click(std::string_view key) = 0;
  // Both leave a focus alone that is there already.
  virtual void FocusDisplay() = 0;
  virtual void FocusRender() = 0;
};

class PointerWatch {
 public:
  // The form's timers `PanelDelayTimer` and `DelayAutoHide`.
  PointerWatch(PointerWorld& world, PointerActions& actions, FullScreen& full_screen,
               const Settings& settings, const Session& session, const TimerSource& time,
               MessagePump& pump, Timer& PanelDelayTimer, const Timer& DelayAutoHide);

  void OnMouseTimer();

  // Shows or hides the pointer. Without `Force` only a change is passed on, so that whoever counts
  // the calls finds them balanced.
  void SetCursor(bool Show, bool Force);

  bool CursorHidden() const { return CursorHidden_; }
  // The task bar is hidden by full screen and has to come back before the program ends.
  bool TaskbarHidden() const { return TaskbarHidden_; }

 private:
  // Where the pointer is at a tick.
  struct Spot {
    std::optional<ScreenPoint> screen;
    int X = 0;  // from the form's outer corner; count when `screen` is known
    int Y = 0;
    bool inside = false;  // over the form, frame included
  };

  void LeftToOthers();
  void ShowTaskBar();
  void KeepFocus();
  Spot FindPointer(const FormArea& area) const;
  bool ReadPress(const Spot& spot, const FormArea& area);
  void CountClick();
  void JudgePanel(const Spot& spot, const FormArea& area);
  void CountMovement(bool moving);
  void HideIdlePointer(const Spot& spot);
  void FollowVerdict(const Spot& spot);
  bool InFullScreen() const { return IsOn(settings_.FullScreen); }

  PointerWorld& world_;
  PointerActions& actions_;
  FullScreen& full_screen_;
  const Settings& settings_;
  const Session& session_;
  const TimerSource& time_;
  MessagePump& pump_;
  Timer& PanelDelayTimer_;
  const Timer& DelayAutoHide_;

  bool CursorHidden_ = false;
  bool TaskbarHidden_ = false;
  bool ShowPanelRequest_ = false;  // verdict: the panel is wanted
  int MoveTicks_ = 0;
  int StillTicks_ = 0;
  int LastX_ = 0;  // from the form's outer corner
  int LastY_ = 0;
  std::optional<ScreenPoint> LastScreen_;
  std::optional<TimerSource::TimePoint> LastMoveTick_;
  std::optional<TimerSource::TimePoint> LastClickTick_;
  bool PressHandled_ = false;     // the present press has been dealt with
  bool DoubleClickDone_ = false;  // the last click was the second of a double click

  bool seen_in_full_screen_ = false;  // the full screen has had the foreground
};

}  // namespace kv
