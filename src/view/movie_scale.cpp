#include "view/movie_scale.h"

#include <array>
#include <cmath>
#include <cstdio>

namespace kv {
namespace {

int RoundToEven(double value) {
  return static_cast<int>(std::nearbyint(value));
}

}  // namespace

MovieScale GetMovieScale(const MovieScaleInput& input) {
  MovieScale scale;
  scale.AreaWidth = input.ScaleWidth;
  scale.AreaHeight = input.ScaleHeight;
  if (!input.AutoHide || input.PanelAccounted) scale.AreaHeight -= input.PanelHeight;

  const bool fits = input.MovieWidth <= scale.AreaWidth && input.MovieHeight <= scale.AreaHeight;
  if (!input.KeepAspect && input.FitToWindow) {
    scale.Width = scale.AreaWidth;
    scale.Height = scale.AreaHeight;
  } else if (!input.FitToWindow && fits) {
    scale.Width = input.MovieWidth;
    scale.Height = input.MovieHeight;
  } else {
    const double aspect =
        input.MovieHeight > 0 ? static_cast<double>(input.MovieWidth) / input.MovieHeight : 0.0;
    const float area_aspect =
        scale.AreaHeight > 0
            ? static_cast<float>(static_cast<double>(scale.AreaWidth) / scale.AreaHeight)
            : 0.0F;
    if (static_cast<double>(area_aspect) >= aspect) {
      scale.Height = scale.AreaHeight;
      scale.Width = RoundToEven(scale.Height * aspect);
    } else {
      scale.Width = scale.AreaWidth;
      scale.Height = RoundToEven(scale.Width / aspect);
    }
  }
  scale.Left = RoundToEven(scale.AreaWidth / 2.0 - scale.Width / 2.0);
  scale.Top = RoundToEven(scale.AreaHeight / 2.0 - scale.Height / 2.0);
  return scale;
}

std::string ScaleText(const MovieScale& scale, int movie_width, int movie_height,
                      std::string_view decimal_separator) {
  if (movie_width < 1 || movie_height < 1) return {};
  const double percent = 100.0 / (static_cast<double>(movie_width) * movie_height) *
                         (static_cast<double>(scale.AreaWidth) * scale.AreaHeight);
  std::array<char, 96> text{};
  // Halves go away from zero, as everywhere in a text.
  const double shown = std::round(percent * 10.0) / 10.0;
  std::snprintf(text.data(), text.size(), "%04.1f %% (%d x %d)", shown, scale.AreaWidth,
                scale.AreaHeight);
  std::string result = text.data();
  return result.replace(result.find('.'), 1, decimal_separator);
}

}  // namespace kv
