#include "ripples.h"

#include <QApplication>

#include <algorithm>
#include <cmath>

using kestrelview::LineOf;
using kestrelview::Mix;
using kestrelview::VisualSurface;

namespace {

constexpr float kCell = 2.5F;  // pixels of the desktop
constexpr float kStepSeconds = 0.014F;
constexpr int kMostSteps = 5;  // in one frame; what is left of the time is forgotten
constexpr float kFloor = -54.0F;
constexpr float kCalmLevel = 92.0F;  // of 255: where calm water lies in the ramp
constexpr float kSlope = 22.0F;      // of the ramp for each unit of slope
constexpr float kFocus = 9.0F;       // and of curvature, which gathers the light

// Bins of 15.6 Hz at 8000 Hz, and the drops that fall for them.
struct Part {
  std::size_t first;
  std::size_t end;
  float jump;    // above the average, that counts as a beat
  float rest;    // seconds between two
  float radius;  // cells
  float depth;
};

constexpr std::array<Part, 3> kParts = {{
    {2, 10, 0.13F, 0.30F, 11.0F, 9.0F},
    {16, 60, 0.15F, 0.22F, 7.0F, 6.0F},
    {80, 250, 0.17F, 0.15F, 5.0F, 4.5F},
}};

const QSize kPreview(320, 180);

}  // namespace

int Ripples::GetVuMeter(QByteArray& samples, int& count, int surface1, int surface2, float width,
                        float height, int& foreground, int& background, int& peak) {
  const VisualSurface& surface = *kestrelview::SurfaceOf(surface1, surface2);
  // A large window has larger cells, so that it costs no more than a middling one.
  cell_ = std::max(kCell * surface.scale, std::sqrt(width * height / 60000.0F));
  pond_.Resize(std::max(4, static_cast<int>(width / cell_) + 2),
               std::max(4, static_cast<int>(height / cell_) + 2));
  history_.Add(samples, count);
  const float seconds = clock_.Step();
  time_ += seconds;
  Rain(seconds);
  debt_ = std::min(debt_ + seconds, kMostSteps * kStepSeconds);
  const float loss = 0.040F * std::pow(0.05F, static_cast<float>(options_.run) / 100.0F);
  const int steps = static_cast<int>(debt_ / kStepSeconds);
  for (int step = 0; step < steps; ++step) pond_.Step(loss);
  debt_ -= static_cast<float>(steps) * kStepSeconds;
  MakeRamp({kestrelview::ColorOf(foreground, Qt::white),
            kestrelview::ColorOf(background, Qt::black), kestrelview::ColorOf(peak, Qt::red)});
  Paint(surface);
  return 0;
}

// 0.0 to 1.0 (xorshift)
float Ripples::Chance() {
  dice_ ^= dice_ << 13U;
  dice_ ^= dice_ >> 17U;
  dice_ ^= dice_ << 5U;
  return static_cast<float>(dice_ >> 8U) / 16777216.0F;
}

void Ripples::Rain(float seconds) {
  spectrum_.Take(history_);
  const float amount = static_cast<float>(options_.rain) / 100.0F;
  for (std::size_t index = 0; index < kParts.size(); ++index) {
    const Part& part = kParts[index];
    const float level = kestrelview::HeightOf(
        spectrum_.Loudest(part.first, part.end) * (1.0F + 2.0F * static_cast<float>(index)),
        kFloor);
    rest_[index] -= seconds;
    // A steady tone makes no beats, but it drips.
    const bool drip = level > 0.2F && Chance() < seconds * level * 0.35F * amount;
    const bool beat = level > average_[index] + part.jump * (1.4F - amount) && rest_[index] <= 0.0F;
    if (amount > 0.0F && (beat || drip)) {
      rest_[index] = part.rest * (1.6F - amount);
      const float x = 0.08F + 0.84F * Chance();
      const float y = 0.10F + 0.80F * Chance();
      pond_.Drop(x * static_cast<float>(pond_.Columns()), y * static_cast<float>(pond_.Rows()),
                 part.radius * (0.8F + 0.4F * Chance()), part.depth * (0.4F + 0.6F * level));
    }
    average_[index] += (level - average_[index]) * (1.0F - std::exp(-seconds / 0.35F));
  }
}

void Ripples::MakeRamp(const Colors& colors) {
  QColor deep = Mix(colors.background, Qt::black, 0.25);
  QColor water = Mix(colors.background, colors.foreground, 0.55);
  QColor light = Mix(colors.foreground, Qt::white, 0.55);
  QColor glow = colors.peak;
  if (const RipplesColors* const chosen = RipplesColorsOf(options_.colors)) {
    deep = QColor(chosen->deep);
    water = QColor(chosen->water);
    light = QColor(chosen->light);
    glow = light;
  }
  for (int step = 0; step < 256; ++step) {
    const double share = step / 255.0;
    QColor color = share < 0.55 ? Mix(deep, water, std::pow(share / 0.55, 1.35))
                                : Mix(water, light, (share - 0.55) / 0.45);
    if (options_.glint)
      color = Mix(color, Mix(glow, Qt::white, 0.5), std::max(0.0, share - 0.8) * 3.5);
    ramp_[static_cast<std::size_t>(step)] = color.rgb();
  }
}

void Ripples::Paint(const VisualSurface& surface) {
  const auto columns = static_cast<std::size_t>(pond_.Columns());
  // Brightness of the cells of two rows, then of the pixels between them.
  const auto shade = [this, columns](int row, std::vector<float>& out) {
    const int y = std::clamp(row, 1, pond_.Rows() - 2);
    const float* const above = pond_.Row(y - 1);
    const float* const here = pond_.Row(y);
    const float* const below = pond_.Row(y + 1);
    // Dusk: the far side of the pond has the light of the sky.
    const float sky = kCalmLevel - 46.0F * static_cast<float>(y) / static_cast<float>(pond_.Rows());
    for (std::size_t x = 1; x + 1 < columns; ++x) {
      const float slope = (here[x - 1] - here[x + 1]) * 0.6F + (above[x] - below[x]);
      const float bend = 4.0F * here[x] - here[x - 1] - here[x + 1] - above[x] - below[x];
      out[x] = std::clamp(sky + slope * kSlope + bend * kFocus, 0.0F, 255.0F);
    }
    out.front() = out[1];
    out.back() = out[columns - 2];
  };
  std::vector<float> upper(columns);
  std::vector<float> lower(columns);
  std::vector<float> line_of_cells(columns);
  const float step = 1.0F / cell_;
  int shaded = -1;
  for (int y = 0; y < surface.height; ++y) {
    const float at = static_cast<float>(y) * step;
    const int row = static_cast<int>(at);
    if (row != shaded) {
      if (row == shaded + 1 && shaded >= 0) {
        upper.swap(lower);
      } else {
        shade(row, upper);
      }
      shade(row + 1, lower);
      shaded = row;
    }
    const float down = at - static_cast<float>(row);
    for (std::size_t x = 0; x < columns; ++x) {
      line_of_cells[x] = upper[x] + (lower[x] - upper[x]) * down;
    }
    QRgb* const line = LineOf(surface, y);
    for (int x = 0; x < surface.width; ++x) {
      const float across = static_cast<float>(x) * step;
      const auto column = static_cast<std::size_t>(across);
      const float share = across - static_cast<float>(column);
      const float value =
          line_of_cells[column] +
          (line_of_cells[std::min(column + 1, columns - 1)] - line_of_cells[column]) * share;
      line[x] = ramp_[static_cast<std::size_t>(value)];
    }
  }
}

int Ripples::OpenConfigDialog() {
  if (dialog_ != nullptr) {
    dialog_->raise();
    dialog_->activateWindow();
    return 0;
  }
  // The player may let this object go while the dialog is open.
  const QPointer<Ripples> alive(this);
  const QPointer<RipplesDialog> dialog(new RipplesDialog(
      options_,
      [alive](const RipplesOptions& options) {
        if (alive != nullptr) alive->options_ = options;
      },
      QApplication::activeWindow()));
  dialog_ = dialog;
  if (dialog->exec() == QDialog::Accepted && dialog != nullptr) {
    SaveRipplesOptions(dialog->Options());
  }
  delete dialog.data();
  return 0;
}

void Ripples::closedialog() {
  if (dialog_ != nullptr) dialog_->reject();
}

void Ripples::DoubleClick() {
  pond_.Calm();
}

void Ripples::MouseDown(short& button, short& /*shift*/, float& x, float& y) {
  if ((button & 1) == 0) return;
  finger_ = QPointF(x, y);
  pond_.Drop(x / cell_, y / cell_, 10.0F, 8.0F);
}

void Ripples::MouseMove(short& button, short& /*shift*/, float& x, float& y) {
  if ((button & 1) == 0 || !finger_) return;
  // A finger drawn through the water: drops all along its way.
  const QPointF way = QPointF(x, y) - *finger_;
  const double length = std::hypot(way.x(), way.y());
  const int drops = std::clamp(static_cast<int>(length / (2.0 * cell_)), 1, 60);
  for (int index = 1; index <= drops; ++index) {
    const QPointF at = *finger_ + way * (static_cast<double>(index) / drops);
    pond_.Drop(static_cast<float>(at.x()) / cell_, static_cast<float>(at.y()) / cell_, 6.0F, 2.5F);
  }
  finger_ = QPointF(x, y);
}

void Ripples::MouseUp(short& button, short& /*shift*/, float& /*x*/, float& /*y*/) {
  if (button == 1) finger_.reset();
}

QImage Ripples::Preview() const {
  QImage image(kPreview, QImage::Format_RGB32);
  Ripples scene;
  scene.options_ = {};
  scene.cell_ = 1.6F;
  scene.pond_.Resize(202, 115);
  const auto run = [&scene](int steps) {
    for (int step = 0; step < steps; ++step) scene.pond_.Step(0.006F);
  };
  scene.pond_.Drop(62.0F, 64.0F, 9.0F, 9.0F);
  run(50);
  scene.pond_.Drop(146.0F, 44.0F, 8.0F, 9.0F);
  run(30);
  scene.pond_.Drop(112.0F, 88.0F, 6.0F, 8.0F);
  run(26);
  scene.MakeRamp({QColor(0xC0, 0xFF, 0xFF), QColor(0x0B, 0x12, 0x1A), QColor(0xFF, 0x9A, 0x3C)});
  scene.Paint(kestrelview::SurfaceOn(image));
  return image;
}
