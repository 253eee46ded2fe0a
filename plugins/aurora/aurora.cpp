#include "aurora.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <cstdint>

using kestrelview::LineOf;
using kestrelview::Mix;
using kestrelview::VisualSurface;

namespace {

constexpr float kPictureSeconds = 0.030F;
constexpr double kCell = 5.0;  // units; lights are soft
constexpr float kFloor = -54.0F;
constexpr int kLightest = 90;             // of 255, of a night
constexpr std::size_t kGrainSize = 1021;  // a prime, so that lines do not repeat
constexpr int kLongestSpan = 256;         // pixels of a cell
constexpr float kBrightest = 254.9F;      // leaves room for the grain
constexpr float kBias = 1.0F / 64.0F;     // so that what is rounded off never leads below 0

// Bins of 15.6 Hz at 8000 Hz, and where in the sky the curtain hangs.
struct Curtain {
  std::size_t first;
  std::size_t end;
  float base;    // of the height, from the top
  float speed;   // of the folds
  float length;  // of the rays, of the height
  float gain;
};

constexpr std::array<Curtain, 4> kCurtainRows = {{
    {2, 9, 0.72F, 0.21F, 0.26F, 1.00F},
    {9, 28, 0.60F, -0.17F, 0.20F, 0.80F},
    {28, 84, 0.47F, 0.26F, 0.15F, 0.65F},
    {84, 250, 0.34F, -0.31F, 0.11F, 0.55F},
}};

const QSize kPreview(320, 180);

float Wave(float value) {
  return std::sin(value);
}

// Three channels in one number, each with twelve binary places in a field of 21 bits. As sums of
// what the fields are worth such numbers can be added and taken away, as long as no channel of the
// result is below 0.
using Packed = std::int64_t;
constexpr float kOne = 4096.0F;
constexpr unsigned kField = 21;

template <class Light>
Packed Pack(const Light& light) {
  constexpr Packed kShift = Packed{1} << kField;
  return (static_cast<Packed>(light.red * kOne) * kShift +
          static_cast<Packed>(light.green * kOne)) *
             kShift +
         static_cast<Packed>(light.blue * kOne);
}

QRgb ColorOf(Packed light) {
  const auto bits = static_cast<std::uint64_t>(light);
  return 0xFF000000U | (static_cast<QRgb>(bits >> 38U) & 0xFF0000U) |
         (static_cast<QRgb>(bits >> 25U) & 0xFF00U) | (static_cast<QRgb>(bits >> 12U) & 0xFFU);
}

int FirstPixel(int cell_number, float cell) {
  return static_cast<int>(std::ceil(static_cast<float>(cell_number) * cell));
}

}  // namespace

Aurora::Aurora() : grain_(kGrainSize + kLongestSpan) {
  std::uint32_t state = 20080;
  for (Packed& grain : grain_) {
    state = state * 1664525U + 1013904223U;
    const float value = static_cast<float>(state >> 8U) / 16777216.0F;
    grain = Pack(Light{value, value, value});
  }
}

int Aurora::GetVuMeter(QByteArray& samples, int& count, int surface1, int surface2, float /*width*/,
                       float /*height*/, int& foreground, int& background, int& peak) {
  history_.Add(samples, count);
  const float seconds = clock_.Step();
  waiting_ += seconds;
  const VisualSurface& surface = *kestrelview::SurfaceOf(surface1, surface2);
  if (waiting_ < kPictureSeconds) return 0;
  Listen(std::min(waiting_, 0.1F));
  waiting_ = 0.0F;
  Colors colors{kestrelview::ColorOf(foreground, Qt::white),
                kestrelview::ColorOf(background, Qt::black), kestrelview::ColorOf(peak, Qt::red)};
  // Night falls in light schemes, too.
  if (qGray(colors.background.rgb()) > kLightest) {
    colors.background = Mix(Qt::black, colors.foreground, 0.22);
  }
  Render(surface, colors);
  return 0;
}

void Aurora::Listen(float seconds) {
  spectrum_.Take(history_);
  for (std::size_t index = 0; index < kCurtains; ++index) {
    const Curtain& row = kCurtainRows[index];
    const float target = kestrelview::HeightOf(
        spectrum_.Loudest(row.first, row.end) * (1.0F + float(index)), kFloor);
    const float slowness = target > level_[index] ? 0.08F : 0.7F;
    level_[index] += (target - level_[index]) * (1.0F - std::exp(-seconds / slowness));
    if (index > 0) continue;
    if (target > average_ + 0.12F && surge_ < 0.4F) surge_ = 1.0F;
    average_ += (target - average_) * (1.0F - std::exp(-seconds / 1.2F));
  }
  surge_ *= std::exp(-seconds / 0.5F);
  time_ += seconds * (0.55F + 1.1F * (level_[1] + level_[2]) / 2.0F);
}

void Aurora::Render(const VisualSurface& surface, const Colors& colors) {
  const double cell = kCell * static_cast<double>(surface.scale);
  columns_ = static_cast<int>(std::ceil(surface.width / cell)) + 1;
  rows_ = static_cast<int>(std::ceil(surface.height / cell)) + 1;
  night_.Resize(surface.width, surface.height, surface.scale);
  LightSky(colors);
  PaintSky(surface);
  night_.PaintStars(surface, time_, level_[3]);
  const QColor ink = Mix(colors.background, Qt::black, 0.55);
  const double glow = 0.07 + 0.10 * surge_ + 0.08 * level_[0];
  night_.PaintRidges(surface, Mix(ink, colors.foreground, glow).rgb(), ink.rgb());
  PaintKestrel(surface, ink);
}

void Aurora::LightSky(const Colors& colors) {
  const QColor zenith = Mix(colors.background, Qt::black, 0.35);
  const QColor horizon = Mix(colors.background, colors.foreground, 0.16);
  sky_.resize(static_cast<std::size_t>(columns_) * static_cast<std::size_t>(rows_));
  for (int y = 0; y < rows_; ++y) {
    const double down = static_cast<double>(y) / rows_;
    const QColor color = Mix(zenith, horizon, down * down);
    std::fill_n(sky_.begin() + static_cast<std::ptrdiff_t>(y) * columns_, columns_,
                Light{float(color.red()), float(color.green()), float(color.blue())});
  }
  // Saturated, as pale scheme colours would give pale lights.
  const QColor low = QColor::fromHsvF(std::max(0.0F, colors.foreground.hueF()),
                                      std::max(0.78F, colors.foreground.hsvSaturationF()), 1.0F);
  const QColor high = QColor::fromHsvF(std::fmod(low.hueF() + 0.30F, 1.0F), 0.74F, 0.95F);
  const QColor warm = Mix(high, colors.peak, 0.45);
  const auto light = [](const QColor& color) {
    return Light{float(color.red()), float(color.green()), float(color.blue())};
  };
  for (std::size_t index = kCurtains; index-- > 0;) {
    HangCurtain(index, light(Mix(low, high, 0.12 * static_cast<double>(index))),
                light(index % 2 == 0 ? high : warm));
  }
}

void Aurora::HangCurtain(std::size_t curtain, const Light& low, const Light& high) {
  const Curtain& row = kCurtainRows[curtain];
  const float level = level_[curtain];
  const auto number = static_cast<float>(curtain);
  const float drift = time_ * row.speed;
  const auto height = static_cast<float>(rows_);
  for (int column = 0; column < columns_; ++column) {
    const float place = static_cast<float>(column) / static_cast<float>(columns_) * 6.2832F;
    const float fold = 0.055F * Wave(place * 0.9F + drift * 1.9F + number * 1.7F) +
                       0.035F * Wave(place * 2.3F - drift * 2.7F + number) +
                       0.016F * Wave(place * 5.1F + drift * 4.1F);
    const float foot = (row.base + fold - 0.05F * level - 0.02F * surge_) * height;
    // Rays: fine, quick changes of brightness along the curtain.
    const float rays = 0.62F +
                       0.24F * Wave(place * 7.0F + drift * 6.0F + 2.0F * Wave(place * 1.3F)) +
                       0.14F * Wave(place * 19.0F - drift * 9.0F);
    const float veil =
        std::max(0.0F, 0.46F + 0.36F * Wave(place * 0.7F + drift + number * 2.4F) +
                           0.30F * Wave(place * 1.9F - drift * 1.6F + number * 4.1F));
    float light =
        row.gain * rays * veil * (0.06F + 0.52F * level * level + 0.34F * surge_ * (0.3F + level));
    const float length =
        std::max(1.5F, height * row.length * (0.55F + 0.75F * level) * (0.7F + 0.5F * rays));
    const float keep = std::exp(-1.0F / length);
    float share = 0.0F;
    const int first = std::min(rows_ - 1, static_cast<int>(foot));
    // A soft lower hem of two cells, then rays that fade upwards and change their colour.
    for (int y = std::min(rows_ - 1, first + 2); y >= 0 && light > 0.004F; --y) {
      const float hem = std::clamp(foot + 2.0F - static_cast<float>(y), 0.0F, 2.0F) / 2.0F;
      const float lit = light * hem;
      Light& cell = sky_[static_cast<std::size_t>(y) * static_cast<std::size_t>(columns_) +
                         static_cast<std::size_t>(column)];
      cell = cell + (low + (high - low) * share) * lit;
      if (y > first) continue;
      light *= keep;
      share += (1.0F - share) * 0.9F / length;
    }
  }
}

// The cells' light on the pixels, without edges between them. Within a cell each channel changes
// evenly along and down, so a pixel costs two additions for all three.
void Aurora::PaintSky(const VisualSurface& surface) {
  const auto cell = static_cast<float>(kCell * static_cast<double>(surface.scale));
  // Filmic: bright places go to white slowly instead of being cut.
  const auto tone = [](float value) {
    return std::min(kBrightest, 255.0F * value / (value + 170.0F) * 1.667F);
  };
  for (Light& light : sky_) {
    light = {tone(light.red), tone(light.green), tone(light.blue)};
  }
  spans_.resize(static_cast<std::size_t>(columns_) - 1);
  std::size_t grain = 0;
  int y = 0;
  for (int row = 0; row + 1 < rows_ && y < surface.height; ++row) {
    MeasureSpans(surface.width, cell, row, y);
    const int end = std::min(surface.height, FirstPixel(row + 1, cell));
    for (; y < end; ++y) {
      QRgb* const line = LineOf(surface, y);
      for (Span& span : spans_) {
        Packed light = span.light;
        const Packed* const noise = grain_.data() + grain;
        for (int x = span.first; x < span.end; ++x, light += span.step) {
          line[x] = ColorOf(light + noise[x - span.first]);
        }
        grain += static_cast<std::size_t>(span.end - span.first);
        if (grain >= kGrainSize) grain -= kGrainSize;
        span.light += span.light_down;
        span.step += span.step_down;
      }
    }
  }
}

// What the lines of a row of cells need, from line `y`, its first, on.
void Aurora::MeasureSpans(int width, float cell, int row, int y) {
  const float down = static_cast<float>(y) / cell - static_cast<float>(row);
  const Light* const upper = sky_.data() + static_cast<std::ptrdiff_t>(row) * columns_;
  const Light* const lower = upper + columns_;
  const Light bias{kBias, kBias, kBias};
  for (int column = 0; column + 1 < columns_; ++column) {
    Span& span = spans_[static_cast<std::size_t>(column)];
    span.first = std::min(width, FirstPixel(column, cell));
    span.end = std::min({width, FirstPixel(column + 1, cell), span.first + kLongestSpan});
    const float along = static_cast<float>(span.first) / cell - static_cast<float>(column);
    const Light above = upper[column + 1] - upper[column];
    const Light below = lower[column + 1] - lower[column];
    const Light top = upper[column] + above * along;
    const Light change = lower[column] + below * along - top;
    span.light = Pack(top + change * down + bias);
    span.light_down = Pack(change * (1.0F / cell));
    span.step = Pack((above + (below - above) * down) * (1.0F / cell));
    span.step_down = Pack((below - above) * (1.0F / (cell * cell)));
  }
}

void Aurora::PaintKestrel(const VisualSurface& surface, const QColor& color) const {
  QImage image = kestrelview::ImageOf(surface);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
  const double width = surface.width / static_cast<double>(surface.scale);
  const double height = surface.height / static_cast<double>(surface.scale);
  const double size = std::min(width, height * 1.6) * 0.05;
  // It stands in the wind: the head is still, the wings work.
  const double sway = time_ * 0.5;
  painter.translate(width * (0.66 + 0.012 * std::sin(sway)),
                    height * (0.40 + 0.015 * std::sin(sway * 1.7)) - height * 0.03 * level_[0]);
  painter.scale(size, size);
  painter.rotate(-12.0);
  const double beat = std::sin(time_ * 5.5) * 0.55;
  QPainterPath bird;
  bird.addEllipse(QPointF(-0.36, -0.02), 0.15, 0.12);  // the head, bent down to look
  bird.moveTo(-0.46, -0.02);
  bird.lineTo(-0.56, 0.07);
  bird.lineTo(-0.40, 0.07);
  bird.moveTo(-0.36, -0.12);
  bird.cubicTo(-0.05, -0.20, 0.20, -0.06, 0.42, 0.06);
  bird.lineTo(1.05, 0.20);  // the fanned tail
  bird.quadTo(1.12, 0.36, 1.00, 0.50);
  bird.lineTo(0.34, 0.24);
  bird.cubicTo(0.0, 0.26, -0.25, 0.20, -0.36, 0.08);
  bird.closeSubpath();
  for (const double side : {-1.0, 1.0}) {
    // Long, pointed, bent at the wrist; the far one seems shorter.
    const double reach = side < 0 ? 1.15 : 1.55;
    const double lift = -0.62 - beat * (side < 0 ? 0.8 : 1.0);
    const double lean = side < 0 ? -0.35 : 0.25;
    bird.moveTo(-0.24, -0.10);
    bird.cubicTo(-0.30 + lean * 0.4, lift * 0.55, lean * reach, lift * 0.95 - 0.10,
                 lean * reach + side * reach * 0.62, lift * 1.25);
    bird.cubicTo(lean * reach + side * reach * 0.30, lift * 0.95 + 0.05, lean * 0.8 + 0.12,
                 lift * 0.40, 0.30, 0.04);
    bird.closeSubpath();
  }
  bird.setFillRule(Qt::WindingFill);
  painter.drawPath(bird);
}

QImage Aurora::Preview() const {
  QImage image(kPreview, QImage::Format_RGB32);
  Aurora scene;
  scene.level_ = {0.75F, 0.6F, 0.55F, 0.5F};
  scene.time_ = 7.3F;
  scene.Render(kestrelview::SurfaceOn(image),
               {QColor(0xC0, 0xFF, 0xFF), QColor(0x0B, 0x12, 0x1A), QColor(0xFF, 0x9A, 0x3C)});
  return image;
}
