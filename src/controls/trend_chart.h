// The strip chart without its picture: samples, grid and the timer that pulls values.
//
// A stream of values runs from the right edge to the left, one pixel column each, over a grid that
// may travel along. The widget (trend_chart_widget.h) owns a model and paints what it says. Lengths
// are device-independent pixels, colours 0x00BBGGRR or a system colour (0x80000000 + index).
// Interface thread only.
#pragma once

#include "controls/property_fields.h"
#include "system/timers.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

namespace kv {

// A chart has no more pixel columns than this.
inline constexpr int kTrendChartColumns = 1600;

// What the setter of Value answers in a design host.
inline constexpr int kSetNotPermitted = 387;

// All stored properties with their defaults. The two pictures are the widget's.
struct TrendChartProperties {
  double Value = 0;              // newest value
  std::int32_t BorderStyle = 0;  // 0 none, 1 a line around the chart
  double Min = 0;                // bottom of the value range
  double Max = 100;              // top of the value range
  bool AutoRedraw = true;        // kept for hosts; the surface is always buffered
  std::int32_t BackColor = 0;
  std::int32_t ForeColor = 255;  // of the trace
  std::int32_t DrawMode = 13;    // how the trace mixes with what is below it, 1 to 16; 13 covers it
  std::int32_t DrawStyle = 0;    // 0 solid, 1 dash, 2 dot, 3 dash dot, 4 dash dot dot, 5 nothing
  std::int32_t DrawWidth = 5;    // of the trace, and the margin at both ends of the value range
  std::int32_t FillColor = 0;    // kept for hosts; nothing here is filled
  std::int32_t MaskColor = static_cast<std::int32_t>(0x8000000FU);  // transparent in MaskPicture
  bool Automove = false;  // pulls its own values on a timer
  bool Grid = true;
  std::int32_t GridSize = 10;  // pitch
  std::int32_t GridColor = 0x808000;
  bool GridMotion = true;               // the vertical lines travel with the trace
  std::int32_t AutoupdateInterval = 0;  // milliseconds; 0 pulls nothing

  friend bool operator==(const TrendChartProperties&, const TrendChartProperties&) = default;
};

using TrendChartField = PropertyField<TrendChartProperties>;
inline constexpr std::array kTrendChartFields = {
    TrendChartField{"Value", &TrendChartProperties::Value},
    TrendChartField{"BorderStyle", &TrendChartProperties::BorderStyle},
    TrendChartField{"Min", &TrendChartProperties::Min},
    TrendChartField{"Max", &TrendChartProperties::Max},
    TrendChartField{"AutoRedraw", &TrendChartProperties::AutoRedraw},
    TrendChartField{"BackColor", &TrendChartProperties::BackColor, PropertyKind::kColor},
    TrendChartField{"ForeColor", &TrendChartProperties::ForeColor, PropertyKind::kColor},
    TrendChartField{"DrawMode", &TrendChartProperties::DrawMode},
    TrendChartField{"DrawStyle", &TrendChartProperties::DrawStyle},
    TrendChartField{"DrawWidth", &TrendChartProperties::DrawWidth},
    TrendChartField{"FillColor", &TrendChartProperties::FillColor, PropertyKind::kColor},
    TrendChartField{"MaskColor", &TrendChartProperties::MaskColor, PropertyKind::kColor},
    TrendChartField{"Automove", &TrendChartProperties::Automove},
    TrendChartField{"Grid", &TrendChartProperties::Grid},
    TrendChartField{"GridSize", &TrendChartProperties::GridSize},
    TrendChartField{"GridColor", &TrendChartProperties::GridColor, PropertyKind::kColor},
    TrendChartField{"GridMotion", &TrendChartProperties::GridMotion},
    TrendChartField{"AutoupdateInterval", &TrendChartProperties::AutoupdateInterval},
};

// What the model needs of the widget it lives in; the base class does nothing.
class TrendChartSurface {
 public:
  virtual ~TrendChartSurface() = default;

  // Gives the chart itself, without a border, this size. The widget answers with SetSize().
  virtual void Resize(int /*width*/, int /*height*/) {}

  // The chart has moved on by one column; nothing else has changed.
  virtual void Moved() {}

  // Anything may look different now.
  virtual void Redraw() {}

  // A property was stored under `key`, or a whole record of them (an empty key).
  virtual void PropertyChanged(std::string_view /*key*/) {}
};

class TrendChartModel {
 public:
  // Both must outlive the model.
  TrendChartModel(TrendChartSurface& surface, TimerSource& time);
  TrendChartModel(const TrendChartModel&) = delete;
  TrendChartModel& operator=(const TrendChartModel&) = delete;

  // The timer asks for a value, which begins at 0. Unset, it stays so.
  std::function<void(std::int32_t& Value)> Update;

  // A design host edits the control's properties instead of using it: no value is taken, no timer
  // runs, and the trace is a flat line.
  void SetDesignHost(bool design_host);

  // Takes over a whole record as it was stored.
  void LoadProperties(const TrendChartProperties& properties);
  const TrendChartProperties& Properties() const { return properties_; }

  // The newest value: it becomes the next column, or with Automove it replaces the newest one.
  // Values beyond Min and Max are drawn where they lie. Answers 0, or kSetNotPermitted.
  int SetValue(double value);

  // Stores one of the properties below, and what follows from it.
  void SetMin(double min) { Store(properties_.Min, min, "Min"); }
  void SetMax(double max) { Store(properties_.Max, max, "Max"); }
  void SetBorderStyle(std::int32_t style) { Store(properties_.BorderStyle, style, "BorderStyle"); }
  void SetBackColor(std::int32_t color) { Store(properties_.BackColor, color, "BackColor"); }
  void SetForeColor(std::int32_t color) { Store(properties_.ForeColor, color, "ForeColor"); }
  void SetDrawMode(std::int32_t mode) { Store(properties_.DrawMode, mode, "DrawMode"); }
  void SetDrawStyle(std::int32_t style) { Store(properties_.DrawStyle, style, "DrawStyle"); }
  // Held between 1 and 32767.
  void SetDrawWidth(std::int32_t width);
  // Starts or stops the timer.
  void SetAutomove(bool automove);
  void SetGrid(bool grid) { Store(properties_.Grid, grid, "Grid"); }
  void SetGridSize(std::int32_t size) { Store(properties_.GridSize, size, "GridSize"); }
  void SetGridColor(std::int32_t color) { Store(properties_.GridColor, color, "GridColor"); }
  void SetGridMotion(bool motion) { Store(properties_.GridMotion, motion, "GridMotion"); }
  // Milliseconds; held between 0 and 65535.
  void SetAutoupdateInterval(std::int32_t milliseconds);

  // Advances the chart by one column, with the newest value.
  void MoveGraph();

  // The inner size of the control, from the widget: on every resize. Above kTrendChartColumns wide
  // the control shrinks at once.
  void SetSize(int width, int height);
  int ScaleWidth() const { return scale_width_; }
  int ScaleHeight() const { return scale_height_; }

  // Where the trace lies in the column `index` counted from the right edge, from 0 to
  // kTrendChartColumns: pixels from the top. It may lie off the surface.
  int TraceY(int index) const;

  // How far the first vertical line of the grid stands from the right edge.
  int GridOffset() const { return properties_.GridMotion ? GridPhase_ : 0; }

 private:
  template <class T>
  void Store(T& field, T value, std::string_view key) {
    field = value;
    surface_.PropertyChanged(key);
    Draw();
  }
  void StartOrStopTimer();
  void Tick();
  void Draw();

  TrendChartSurface& surface_;
  TrendChartProperties properties_;
  bool design_host_ = false;
  int scale_width_ = 0;
  int scale_height_ = 0;
  double factor_ = 0;  // pixels for each unit of the value
  int GridPhase_ = 0;  // 0 to GridSize - 1
  // Newest first: a column's line ends in the value behind it.
  std::array<double, kTrendChartColumns + 1> Samples_{};
  std::unique_ptr<Timer> Timer1_;
};

}  // namespace kv
