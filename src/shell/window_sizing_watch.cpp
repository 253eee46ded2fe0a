#include "shell/window_sizing_watch.h"

#include <chrono>
#include <utility>

namespace kv {
namespace {

// A renderer that needs this long to be moved cannot keep up with a window.
constexpr std::chrono::milliseconds kSlowMove{25};

}  // namespace

WindowSizingWatch::WindowSizingWatch(clsDShowControl& movie, const Settings& settings,
                                     Session& session, const TimerSource& time, SizingView& view,
                                     GetMovieScale get_movie_scale)
    : movie_(movie),
      settings_(settings),
      session_(session),
      time_(time),
      view_(view),
      get_movie_scale_(std::move(get_movie_scale)) {}

bool WindowSizingWatch::NewMessage(WindowMessage message) {
  const bool silent = IsOn(settings_.SilentSizing);
  switch (message) {
    case WindowMessage::kSize:
      if (session_.SizingHidden) view_.PrintCurScale();
      return session_.SizingHidden;
    case WindowMessage::kWindowPosChanging:
      if (!session_.SlowMoveDetected && !session_.SizingHidden && view_.RenderVisible() &&
          movie_.DS_IsOpen()) {
        FollowWindow();
      }
      return false;
    case WindowMessage::kSizing:
      if (movie_.DS_IsOpen() && silent) HidePicture();
      return false;
    case WindowMessage::kExitSizeMove:
      if (silent && session_.SizingHidden) ShowPicture();
      return false;
  }
  return false;
}

void WindowSizingWatch::FollowWindow() {
  const PictureRectangle picture = get_movie_scale_();
  const TimerSource::TimePoint begin = time_.Now();
  movie_.DS_ChangeTarget(picture.Top, picture.Left, picture.Width, picture.Height,
                         view_.RenderHandle());
  if (time_.Now() - begin >= kSlowMove) session_.SlowMoveDetected = true;
}

void WindowSizingWatch::HidePicture() {
  session_.SizingHidden = true;
  view_.SetPanelVisible(false);
  view_.SetRenderVisible(false);
  view_.PutAwayVuMeter1();
}

void WindowSizingWatch::ShowPicture() {
  view_.LockWindowRedraw(true);
  view_.Form_Resize();
  view_.SetPanelVisible(true);
  view_.SetRenderVisible(true);
  view_.SetVumeterVisible();
  view_.LockWindowRedraw(false);
  session_.SizingHidden = false;
}

}  // namespace kv
