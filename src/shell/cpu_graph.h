// The CPU graph of the main window: the chart, what feeds it, and the settings that it follows.
// Owned by `frmMain`; interface thread only.
#pragma once

#include "controls/trend_chart_widget.h"
#include "state/settings.h"
#include "system/cpu_usage.h"
#include "system/timers.h"

#include <QWidget>

namespace kv {

class CpuGraph {
 public:
  // The chart becomes a child of `parent`; `time` must outlive both.
  CpuGraph(TimerSource& time, QWidget& parent);
  CpuGraph(const CpuGraph&) = delete;
  CpuGraph& operator=(const CpuGraph&) = delete;

  QWidget& Chart() { return *TrendChart1_; }

  // Grid and interval.
  void UpdateTrendChart(const Settings& settings);
  // Shown or hidden; a hidden chart asks for nothing.
  void SetVisible(bool visible);
  void SetColors(const std::array<std::int32_t, kColorSlots>& colors);

 private:
  clsCPUUsageNT CpuUsage_;
  CpuGraphFeed feed_;
  TrendChart* TrendChart1_;  // a child of the panel
};

}  // namespace kv
