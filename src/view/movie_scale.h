// How large the movie is drawn inside the main window. Calculations without a window; any thread.
//
// All lengths are device-independent pixels; results are rounded to whole pixels, halves to even.
#pragma once

#include <string>
#include <string_view>

namespace kv {

struct MovieScaleInput {
  int ScaleWidth = 0;  // inner size of the main window
  int ScaleHeight = 0;
  int PanelHeight = 0;          // height of the control strip, 0 or 1 when it is hidden
  bool AutoHide = false;        // the strip hides itself, so it may lie over the movie
  bool PanelAccounted = false;  // with AutoHide: keep the strip's height free all the same
  bool KeepAspect = false;
  bool FitToWindow = false;
  int MovieWidth = 0;  // native size, 0 by 0 without video
  int MovieHeight = 0;
};

struct MovieScale {
  int Top = 0;  // the picture, inside the area
  int Left = 0;
  int Width = 0;
  int Height = 0;
  int AreaWidth = 0;  // what the window has for it
  int AreaHeight = 0;
};

// The picture's rectangle. It is stretched over the area, or has its native size where that fits
// and is to be kept, or is as large as its aspect allows. Without video it has no width.
MovieScale GetMovieScale(const MovieScaleInput& input);

// "100.0 % (640 x 360)": the area against the movie's own, in per cent. Empty without video.
// `decimal_separator` is the user's own, see TextPlatform::DecimalSeparator.
std::string ScaleText(const MovieScale& scale, int movie_width, int movie_height,
                      std::string_view decimal_separator);

}  // namespace kv
