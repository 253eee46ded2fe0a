#include "pond.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float kSpeed = 0.24F;  // square of cells a step; stable below a half
constexpr float kMostDepth = 40.0F;
constexpr float kHollow = 5.0F;  // how much narrower than all that moves
constexpr float kRest = 0.997F;  // what is left after a step of a height, against long swell

}  // namespace

void Pond::Resize(int columns, int rows) {
  if (columns == columns_ && rows == rows_) return;
  columns_ = columns;
  rows_ = rows;
  Calm();
}

void Pond::Calm() {
  const auto cells = static_cast<std::size_t>(columns_) * static_cast<std::size_t>(rows_);
  now_.assign(cells, 0.0F);
  before_.assign(cells, 0.0F);
}

void Pond::Drop(float x, float y, float radius, float depth) {
  const int top = std::max(1, static_cast<int>(y - radius));
  const int bottom = std::min(rows_ - 2, static_cast<int>(y + radius));
  const int left = std::max(1, static_cast<int>(x - radius));
  const int right = std::min(columns_ - 2, static_cast<int>(x + radius));
  for (int row = top; row <= bottom; ++row) {
    for (int column = left; column <= right; ++column) {
      const float away = std::hypot(static_cast<float>(column) - x, static_cast<float>(row) - y);
      if (away >= radius) continue;
      // A hollow with a rim as high as it is deep: no water is lost, so the pond does not sway.
      const float place = away * away * kHollow / (radius * radius);
      const float push = depth * (1.0F - place) * std::exp(-place);
      float& cell = now_[static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_) +
                         static_cast<std::size_t>(column)];
      cell = std::clamp(cell - push, -kMostDepth, kMostDepth);
    }
  }
}

void Pond::Step(float loss) {
  const float keep = 1.0F - loss;
  const std::ptrdiff_t line = columns_;
  for (int row = 1; row + 1 < rows_; ++row) {
    const float* const here = Row(row);
    float* const out = before_.data() + row * line;
    for (int column = 1; column + 1 < columns_; ++column) {
      const float* const cell = here + column;
      const float bend = cell[-1] + cell[1] + cell[-line] + cell[line] - 4.0F * *cell;
      out[column] = (*cell + (*cell - out[column]) * keep + kSpeed * bend) * kRest;
    }
    // What reaches the rim is given back by half.
    out[0] = out[1] * 0.5F;
    out[columns_ - 1] = out[columns_ - 2] * 0.5F;
  }
  if (rows_ > 2) {
    for (int column = 0; column < columns_; ++column) {
      before_[static_cast<std::size_t>(column)] =
          before_[static_cast<std::size_t>(column + line)] * 0.5F;
      const std::ptrdiff_t last = (rows_ - 1) * line + column;
      before_[static_cast<std::size_t>(last)] =
          before_[static_cast<std::size_t>(last - line)] * 0.5F;
    }
  }
  now_.swap(before_);
}
