// The face that the rules of hosting see of the meter widget. Interface thread.
#pragma once

#include "visual/hosted_meter.h"
#include "visual/vu_meter_widget.h"

namespace kv {

class HostedMeterQt : public HostedMeter {
 public:
  // `widget` must outlive this object.
  explicit HostedMeterQt(VuMeterWidget& widget) : widget_(widget) {}

  bool Running() const override { return widget_.Meter().Running(); }
  std::string Start() override { return widget_.Meter().Start(); }
  void Stop() override { widget_.Meter().Stop(); }
  int Style() const override { return widget_.Meter().Style(); }
  void SetStyle(int style) override { widget_.Meter().SetStyle(style); }
  bool AutoRedraw() const override { return widget_.Meter().AutoRedraw(); }
  void SetAutoRedraw(bool on) override { widget_.Meter().SetAutoRedraw(on); }
  // Shown by itself, whether or not its window is.
  bool Visible() const override { return !widget_.isHidden(); }
  void SetVisible(bool visible) override { widget_.setVisible(visible); }
  void SetCapture(const Settings& settings) override;
  void SetSampleRate(int hertz) override;
  void SetRefreshRate(int rate) override;
  void SetColors(const Settings& settings) override;
  std::int32_t SurfaceHandle1() override { return widget_.SurfaceHandle1(); }
  std::int32_t SurfaceHandle2() override { return widget_.SurfaceHandle2(); }
  float SurfaceWidth() const override { return widget_.SurfaceWidth(); }
  float SurfaceHeight() const override { return widget_.SurfaceHeight(); }

 private:
  VuMeterWidget& widget_;
};

}  // namespace kv
