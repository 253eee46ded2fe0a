// The picture inside the window, and the window around the picture.
#include "view/movie_scale.h"

#include "view/window_zoom.h"

#include <array>
#include <gtest/gtest.h>

namespace kv {
namespace {

TEST(MovieScale, PlacesThePicture) {
  using Rectangle = std::array<int, 4>;  // left, top, width, height
  const struct {
    int area_width, area_height;
    bool fit, keep;
    int movie_width, movie_height;
    Rectangle picture;
  } rows[] = {
      {1000, 600, false, false, 640, 480, {180, 60, 640, 480}},
      {1000, 600, true, true, 640, 480, {100, 0, 800, 600}},
      {1000, 600, true, false, 640, 480, {0, 0, 1000, 600}},
      // Too large: its aspect is kept, whatever is chosen.
      {639, 600, false, false, 640, 480, {0, 60, 639, 479}},
      {1000, 300, false, false, 640, 480, {300, 0, 400, 300}},
      // Halves go to the even number: of widths as of the free space.
      {101, 50, true, true, 21, 20, {24, 0, 52, 50}},
      {101, 50, false, false, 20, 20, {40, 15, 20, 20}},
      // Without video there is no width.
      {1000, 600, false, true, 0, 0, {500, 300, 0, 0}},
      {1000, 600, true, true, 0, 0, {500, 0, 0, 600}},
      {0, 0, true, true, 640, 480, {0, 0, 0, 0}},
  };
  for (const auto& row : rows) {
    const MovieScale scale = GetMovieScale({.ScaleWidth = row.area_width,
                                            .ScaleHeight = row.area_height,
                                            .KeepAspect = row.keep,
                                            .FitToWindow = row.fit,
                                            .MovieWidth = row.movie_width,
                                            .MovieHeight = row.movie_height});
    EXPECT_EQ((Rectangle{scale.Left, scale.Top, scale.Width, scale.Height}), row.picture)
        << &row - rows;
  }
}

TEST(MovieScale, LeavesThePanelFreeUnlessItHidesItself) {
  MovieScaleInput input{.ScaleWidth = 1000, .ScaleHeight = 600, .PanelHeight = 100};
  EXPECT_EQ(GetMovieScale(input).AreaHeight, 500);
  input.AutoHide = true;
  EXPECT_EQ(GetMovieScale(input).AreaHeight, 600);
  input.PanelAccounted = true;
  EXPECT_EQ(GetMovieScale(input).AreaHeight, 500);
}

TEST(MovieScale, TellsTheAreaAgainstTheMovie) {
  const auto text = [](int area_width, int area_height, int width, int height,
                       const char* separator = ".") {
    return ScaleText({.AreaWidth = area_width, .AreaHeight = area_height}, width, height,
                     separator);
  };
  EXPECT_EQ(text(1280, 720, 640, 360), "400.0 % (1280 x 720)");
  EXPECT_EQ(text(1, 1, 4, 4, ","), "06,3 % (1 x 1)");  // 6.25: halves away from zero
  EXPECT_EQ(text(640, 360, 0, 0), "");
}

TEST(WindowZoom, StepsBetweenHalfAndDouble) {
  WindowZoom zoom;
  const auto width = [&zoom](float factor) {
    const auto area = zoom.ScaleWindow(factor, false, 1000, 500);
    EXPECT_TRUE(!area || area->height * 2 == area->width);
    return area ? area->width : -1;
  };
  for (int expected = 1100; expected <= 2000; expected += 100) {
    EXPECT_EQ(width(WindowZoom::kZoomIn), expected);
  }
  EXPECT_EQ(width(WindowZoom::kZoomIn), 2000);
  EXPECT_GT(zoom.CurZoom(), 2.0F);  // ten steps in single precision
  EXPECT_EQ(width(0.6F), 600);
  EXPECT_EQ(width(WindowZoom::kZoomOut), 500);
  EXPECT_EQ(width(0.25F), 250);
  EXPECT_EQ(width(WindowZoom::kZoomOut), 250);  // below the least already
  EXPECT_EQ(width(0), 0);                       // and 0 is unset at the next use
  EXPECT_EQ(width(WindowZoom::kZoomOut), 900);
}

TEST(WindowZoom, LeavesTheWindowWhereThereIsNothingToSize) {
  WindowZoom zoom;
  zoom.ScaleWindow(1.5F, false, 640, 480);
  EXPECT_FALSE(zoom.ScaleWindow(3, false, 640, 480));
  EXPECT_FALSE(zoom.ScaleWindow(WindowZoom::kZoomIn, true, 640, 480));
  EXPECT_FALSE(zoom.ScaleWindow(1, false, 0, 480));
  EXPECT_FALSE(zoom.ScaleWindow(1, false, 640, 0));
  EXPECT_EQ(zoom.CurZoom(), 1.5F);
}

}  // namespace
}  // namespace kv
