// What moving and sizing the main window does to the picture.
//
// Keeps the picture glued to a window that is moved, unless the machine is too slow for it, and
// hides it while a window is sized where the user wants that. Called by `frmMain`, its owner, from
// what the desktop tells about the window; interface thread only.
#pragma once

#include "engine/dshow_control.h"
#include "state/session.h"
#include "state/settings.h"
#include "system/timers.h"

#include <functional>

namespace kv {

// The messages of a window that are watched, in their numbers.
enum class WindowMessage {
  kSize = 5,                // it has another size
  kWindowPosChanging = 70,  // it is about to be moved
  kSizing = 532,            // the user drags its frame
  kExitSizeMove = 562,      // the user has let go of it
};

// The picture inside `Render`, pixels.
struct PictureRectangle {
  int Top = 0;
  int Left = 0;
  int Width = 0;
  int Height = 0;
};

class SizingView {
 public:
  virtual ~SizingView() = default;
  virtual bool RenderVisible() const = 0;
  virtual WindowHandle RenderHandle() const = 0;
  virtual void SetRenderVisible(bool visible) = 0;
  virtual void SetPanelVisible(bool visible) = 0;
  // Hides and stops the level meter in the main window.
  virtual void PutAwayVuMeter1() = 0;
  // Shows the present zoom in the title bar.
  virtual void PrintCurScale() = 0;
  // From true to false nothing of the form is drawn.
  virtual void LockWindowRedraw(bool lock) = 0;
  virtual void Form_Resize() = 0;
  // Decides anew whether the meter in the main window runs and shows.
  virtual void SetVumeterVisible() = 0;
};

class WindowSizingWatch {
 public:
  using GetMovieScale = std::function<PictureRectangle()>;

  // All must outlive this object.
  WindowSizingWatch(clsDShowControl& movie, const Settings& settings, Session& session,
                    const TimerSource& time, SizingView& view, GetMovieScale get_movie_scale);

  // Handles one message. True when it must not be handled any further.
  bool NewMessage(WindowMessage message);

 private:
  void FollowWindow();
  void HidePicture();
  void ShowPicture();

  clsDShowControl& movie_;
  const Settings& settings_;
  Session& session_;
  const TimerSource& time_;
  SizingView& view_;
  GetMovieScale get_movie_scale_;
};

}  // namespace kv
