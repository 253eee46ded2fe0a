#include "controls/trend_chart.h"

#include <algorithm>
#include <cmath>

namespace kv {
namespace {

constexpr std::int32_t kLongestInterval = 65535;
constexpr std::int32_t kWidestPen = 32767;
// Far off every surface; a painter's coordinates must stay small.
constexpr double kFarAway = 30000;

}  // namespace

TrendChartModel::TrendChartModel(TrendChartSurface& surface, TimerSource& time)
    : surface_(surface), Timer1_(time.MakeTimer(TimerKind::kOrdinary, 0, [this] { Tick(); })) {}

void TrendChartModel::SetDesignHost(bool design_host) {
  design_host_ = design_host;
  StartOrStopTimer();
  Draw();
}

void TrendChartModel::LoadProperties(const TrendChartProperties& properties) {
  properties_ = properties;
  properties_.DrawWidth = std::clamp(properties.DrawWidth, 1, kWidestPen);
  surface_.PropertyChanged({});
  SetAutoupdateInterval(properties_.AutoupdateInterval);
  StartOrStopTimer();
  Draw();
}

int TrendChartModel::SetValue(double value) {
  if (design_host_) return kSetNotPermitted;
  properties_.Value = value;
  surface_.PropertyChanged("Value");
  if (properties_.Automove) {
    Samples_[0] = value;
  } else {
    MoveGraph();
  }
  return 0;
}

void TrendChartModel::SetAutomove(bool automove) {
  properties_.Automove = automove;
  StartOrStopTimer();
  surface_.PropertyChanged("Automove");
  Draw();
}

void TrendChartModel::SetDrawWidth(std::int32_t width) {
  Store(properties_.DrawWidth, std::clamp(width, 1, kWidestPen), "DrawWidth");
}

void TrendChartModel::SetAutoupdateInterval(std::int32_t milliseconds) {
  properties_.AutoupdateInterval = std::clamp(milliseconds, 0, kLongestInterval);
  if (Timer1_->Interval() != properties_.AutoupdateInterval) {
    Timer1_->SetInterval(properties_.AutoupdateInterval);
  }
  surface_.PropertyChanged("AutoupdateInterval");
}

void TrendChartModel::StartOrStopTimer() {
  Timer1_->SetEnabled(properties_.Automove && !design_host_);
}

void TrendChartModel::Tick() {
  std::int32_t value = 0;
  if (Update) Update(value);
  SetValue(value);
  MoveGraph();
}

void TrendChartModel::MoveGraph() {
  // The pitch may have become smaller than the phase was.
  if (++GridPhase_ >= properties_.GridSize) GridPhase_ = 0;
  std::copy_backward(Samples_.begin(), Samples_.end() - 1, Samples_.end());
  Samples_[0] = properties_.Value;
  surface_.Moved();
}

void TrendChartModel::SetSize(int width, int height) {
  StartOrStopTimer();
  scale_width_ = std::min(width, kTrendChartColumns);
  scale_height_ = height;
  if (width > kTrendChartColumns) surface_.Resize(scale_width_, scale_height_);
  Draw();
}

void TrendChartModel::Draw() {
  if (properties_.Grid) properties_.GridSize = std::max(properties_.GridSize, 1);
  const double range = properties_.Max - properties_.Min;
  const double margins = 2.0 * properties_.DrawWidth;
  factor_ = range == 0 ? 0 : (scale_height_ - margins) / range;
  surface_.Redraw();
}

int TrendChartModel::TraceY(int index) const {
  const double value =
      design_host_ ? properties_.Max / 2 : Samples_.at(static_cast<std::size_t>(index));
  const double height = (value - properties_.Min) * factor_ + properties_.DrawWidth;
  const double y = scale_height_ - height;
  // What is no number lies at the bottom.
  if (std::isnan(y)) return scale_height_ - properties_.DrawWidth;
  return static_cast<int>(std::nearbyint(std::clamp(y, -kFarAway, kFarAway)));
}

}  // namespace kv
