#include "view/window_zoom.h"

#include <cmath>

namespace kv {
namespace {

constexpr float kLargest = 2.0F;
constexpr float kSmallest = 0.5F;
constexpr float kStep = 0.1F;

int Scaled(int length, float factor) {
  return static_cast<int>(
      std::nearbyint(static_cast<double>(length) * static_cast<double>(factor)));
}

}  // namespace

std::optional<AreaSize> WindowZoom::ScaleWindow(float Factor, bool full_screen, int movie_width,
                                                int movie_height) {
  if (CurZoom_ == 0.0F) CurZoom_ = 1.0F;
  if (full_screen || Factor > kLargest || movie_width < 1 || movie_height < 1) return std::nullopt;
  if (Factor >= 0.0F) {
    CurZoom_ = Factor;
  } else if (Factor == kZoomIn) {
    if (CurZoom_ < kLargest) CurZoom_ += kStep;
  } else if (CurZoom_ > kSmallest) {
    CurZoom_ -= kStep;
  }
  return AreaSize{Scaled(movie_width, CurZoom_), Scaled(movie_height, CurZoom_)};
}

}  // namespace kv
