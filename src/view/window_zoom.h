// The zoom factor of the window against the movie's native size. Owned by `frmMain`, which resizes
// itself to what is answered here; lives for the run and is not saved.
#pragma once

#include <optional>

namespace kv {

struct AreaSize {
  int width = 0;  // device-independent pixels
  int height = 0;
};

class WindowZoom {
 public:
  static constexpr float kZoomIn = -1.0F;
  static constexpr float kZoomOut = -2.0F;

  // The area that the movie is to get. `Factor` is a factor from 0 to 2, or one of the codes above;
  // every negative value but -1 zooms out. Steps are 0.1 in single precision, so that ten of them
  // can end just beside a whole number. Nothing: the window stays (full screen, a factor above 2,
  // no video).
  std::optional<AreaSize> ScaleWindow(float Factor, bool full_screen, int movie_width,
                                      int movie_height);

  // 0 until the first use.
  float CurZoom() const { return CurZoom_; }

 private:
  float CurZoom_ = 0.0F;
};

}  // namespace kv
