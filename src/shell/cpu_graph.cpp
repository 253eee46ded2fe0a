#include "shell/cpu_graph.h"

#include "system/translation_qt.h"

#include <algorithm>

namespace kv {
namespace {

constexpr std::size_t kChartBack = 30;
constexpr std::size_t kChartFore = 31;
constexpr std::size_t kChartGrid = 32;
constexpr int kColumnPixels = 2;
constexpr std::int64_t kIntervalUnit = 100;  // milliseconds
constexpr std::int64_t kMostMilliseconds = 65535;

}  // namespace

CpuGraph::CpuGraph(TimerSource& time, QWidget& parent)
    : feed_(CpuUsage_), TrendChart1_(new TrendChart(time, &parent)) {
  CpuUsage_.Initialize();
  TrendChart1_->setObjectName(QStringLiteral("TrendChart1"));
  TrendChart1_->setAccessibleName(QTr("Processor load"));
  TrendChart1_->Model().SetDrawWidth(kColumnPixels);
  TrendChart1_->Model().Update = [this](auto& value) { value = feed_.Next(); };
  TrendChart1_->hide();
}

void CpuGraph::UpdateTrendChart(const Settings& settings) {
  TrendChartModel& chart = TrendChart1_->Model();
  chart.SetGrid(IsOn(settings.CpuGraphGrid));
  const std::int64_t interval = (std::int64_t{settings.CpuGraphInterval} + 1) * kIntervalUnit;
  chart.SetAutoupdateInterval(
      static_cast<int>(std::clamp<std::int64_t>(interval, 0, kMostMilliseconds)));
  chart.SetGridMotion(IsOn(settings.CpuGraphGridMove));
}

void CpuGraph::SetVisible(bool visible) {
  TrendChart1_->setVisible(visible);
  TrendChart1_->Model().SetAutomove(visible);
}

void CpuGraph::SetColors(const std::array<std::int32_t, kColorSlots>& colors) {
  TrendChartModel& chart = TrendChart1_->Model();
  chart.SetBackColor(colors[kChartBack]);
  chart.SetForeColor(colors[kChartFore]);
  chart.SetGridColor(colors[kChartGrid]);
}

}  // namespace kv
