// The scene below the northern lights, which does not move: two ridges, the wood on the nearer one,
// the stars above. Made for one size of the picture.
#pragma once

#include <QColor>

#include <kestrelview/visual_plugin.h>
#include <vector>

class Night {
 public:
  struct Star {
    int x = 0;  // pixels
    int y = 0;
    float light = 0.0F;  // 0.0 to 1.0
    float phase = 0.0F;  // of its twinkling, radians
  };

  // Does nothing when it is made for that size already. `scale`: pixels per unit.
  void Resize(int width, int height, double scale);

  // Puts the stars on the picture; `seconds` moves their twinkling, `sparkle` (0.0 to 1.0) is how
  // much they do.
  void PaintStars(const kestrelview::VisualSurface& surface, float seconds, float sparkle) const;

  // Covers the sky by the ridges.
  void PaintRidges(const kestrelview::VisualSurface& surface, QRgb far_color,
                   QRgb near_color) const;

 private:
  void MakeRidges();
  void MakeWood();
  void MakeStars();

  int width_ = 0;
  int height_ = 0;
  double scale_ = 1.0;
  std::vector<float> far_;  // upper edge in each column, pixels from the top
  std::vector<float> near_;
  std::vector<Star> stars_;
};
