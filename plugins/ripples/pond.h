// The water: a field of heights on which waves run, by the wave equation in small steps.
//
// Cells are square; what is at the rim is thrown back, softened. No toolkit.
#pragma once

#include <cstddef>
#include <vector>

class Pond {
 public:
  // Calms the water when the size changes.
  void Resize(int columns, int rows);
  void Calm();

  // Something falls in: pushes the water down over `radius` cells around (x, y) by `depth`.
  void Drop(float x, float y, float radius, float depth);

  // One step of time; `loss` is how much of the movement goes, 0.0 to 1.0.
  void Step(float loss);

  int Columns() const { return columns_; }
  int Rows() const { return rows_; }
  // The heights of row `y`, 0 in calm water.
  const float* Row(int y) const {
    return now_.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(columns_);
  }

 private:
  int columns_ = 0;
  int rows_ = 0;
  std::vector<float> now_;
  std::vector<float> before_;
};
