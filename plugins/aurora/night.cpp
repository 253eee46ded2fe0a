#include "night.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

using kestrelview::LineOf;
using kestrelview::VisualSurface;

namespace {

// The same scene every time: a small generator of its own (xorshift).
class Dice {
 public:
  explicit Dice(std::uint32_t seed) : state_(seed) {}
  // 0.0 to 1.0
  float Roll() {
    state_ ^= state_ << 13U;
    state_ ^= state_ >> 17U;
    state_ ^= state_ << 5U;
    return static_cast<float>(state_ >> 8U) / 16777216.0F;
  }

 private:
  std::uint32_t state_;
};

struct Wave {
  float waves;  // across the picture
  float phase;
  float size;  // of the picture's height
};

constexpr std::array kFarWaves = {Wave{1.3F, 0.4F, 0.045F}, Wave{3.7F, 2.2F, 0.028F},
                                  Wave{9.1F, 1.1F, 0.011F}, Wave{23.0F, 0.3F, 0.0045F}};
constexpr std::array kNearWaves = {Wave{0.8F, 3.6F, 0.05F}, Wave{2.9F, 0.9F, 0.018F},
                                   Wave{11.0F, 2.0F, 0.004F}};
constexpr float kFarHeight = 0.80F;
constexpr float kNearHeight = 0.915F;
constexpr float kAreaOfStar = 2600.0F;  // square units for each star
constexpr float kTreeGap = 5.5F;        // units

template <std::size_t kCount>
float Skyline(const std::array<Wave, kCount>& waves, float place, float height) {
  float edge = height;
  for (const Wave& wave : waves) {
    edge -= wave.size * std::sin(wave.waves * place * 6.2832F + wave.phase);
  }
  return edge;
}

std::uint32_t Part(QRgb color, unsigned shift) {
  return (color >> shift) & 0xFFU;
}

// `share` of 0 to 256.
QRgb Between(QRgb from, QRgb to, std::uint32_t share) {
  QRgb mixed = 0xFF000000U;
  for (const unsigned shift : {0U, 8U, 16U}) {
    mixed |= ((Part(from, shift) * (256U - share) + Part(to, shift) * share) >> 8U) << shift;
  }
  return mixed;
}

}  // namespace

void Night::Resize(int width, int height, double scale) {
  if (width == width_ && height == height_ && scale == scale_) return;
  width_ = width;
  height_ = height;
  scale_ = scale;
  MakeRidges();
  MakeWood();
  MakeStars();
}

void Night::MakeRidges() {
  far_.resize(static_cast<std::size_t>(width_));
  near_.resize(static_cast<std::size_t>(width_));
  for (int x = 0; x < width_; ++x) {
    const float place = static_cast<float>(x) / static_cast<float>(width_);
    const auto at = static_cast<std::size_t>(x);
    far_[at] = Skyline(kFarWaves, place, kFarHeight) * static_cast<float>(height_);
    near_[at] = Skyline(kNearWaves, place, kNearHeight) * static_cast<float>(height_);
  }
}

// Firs: cones with branches, of which neighbours grow into each other.
void Night::MakeWood() {
  Dice dice(977);
  const std::vector<float> ground = near_;
  const auto scale = static_cast<float>(scale_);
  float x = 0.0F;
  while (x < static_cast<float>(width_)) {
    const float tall = static_cast<float>(height_) * (0.025F + 0.055F * dice.Roll() * dice.Roll());
    const float foot = ground[static_cast<std::size_t>(x)];
    const float wide = tall * 0.22F;
    for (int away = static_cast<int>(-wide); away <= static_cast<int>(wide); ++away) {
      const int column = static_cast<int>(x) + away;
      if (column < 0 || column >= width_) continue;
      const float out = std::abs(static_cast<float>(away)) / std::max(wide, 1.0F);
      const float branch = 0.06F * std::sin(out * 22.0F);
      const float top = foot - tall * std::max(0.0F, 1.0F - out + branch);
      float& edge = near_[static_cast<std::size_t>(column)];
      edge = std::min(edge, top);
    }
    x += kTreeGap * scale * (0.4F + dice.Roll());
  }
}

void Night::MakeStars() {
  Dice dice(4242);
  const double units = width_ / scale_ * (height_ / scale_);
  stars_.resize(static_cast<std::size_t>(std::clamp(units / kAreaOfStar, 20.0, 900.0)));
  for (Star& star : stars_) {
    star.x = static_cast<int>(dice.Roll() * static_cast<float>(width_));
    star.y = static_cast<int>(dice.Roll() * static_cast<float>(height_) * 0.8F);
    const float luck = dice.Roll();
    star.light = 0.2F + 0.8F * luck * luck * luck;
    star.phase = dice.Roll() * 6.2832F;
  }
}

void Night::PaintStars(const VisualSurface& surface, float seconds, float sparkle) const {
  const int size = std::max(1, static_cast<int>(scale_));
  for (const Star& star : stars_) {
    const float twinkle = std::sin(seconds * (1.5F + star.phase) + star.phase);
    const float light = star.light * (0.75F + 0.25F * twinkle + 0.6F * sparkle * star.light);
    const auto share = static_cast<std::uint32_t>(std::clamp(light, 0.0F, 1.0F) * 230.0F);
    for (int y = star.y; y < std::min(star.y + size, height_); ++y) {
      QRgb* const line = LineOf(surface, y);
      for (int x = star.x; x < std::min(star.x + size, width_); ++x) {
        line[x] = Between(line[x], 0xFFF4F8FFU, share);
      }
    }
  }
}

void Night::PaintRidges(const VisualSurface& surface, QRgb far_color, QRgb near_color) const {
  const auto cover = [&surface](int y, int x, float edge, QRgb color) {
    const float inside = static_cast<float>(y + 1) - edge;
    if (inside <= 0.0F) return;
    QRgb& pixel = LineOf(surface, y)[x];
    pixel =
        inside >= 1.0F ? color : Between(pixel, color, static_cast<std::uint32_t>(inside * 256.0F));
  };
  const float highest = std::min(*std::min_element(far_.begin(), far_.end()),
                                 *std::min_element(near_.begin(), near_.end()));
  for (int y = std::max(0, static_cast<int>(highest) - 1); y < height_; ++y) {
    for (int x = 0; x < width_; ++x) {
      const auto at = static_cast<std::size_t>(x);
      // What the nearer ridge hides need not be painted.
      if (static_cast<float>(y) < near_[at]) cover(y, x, far_[at], far_color);
      cover(y, x, near_[at], near_color);
    }
  }
}
