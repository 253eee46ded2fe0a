#include "visual/hosted_meter_qt.h"

namespace kv {

void HostedMeterQt::SetCapture(const Settings& settings) {
  VuMeterProperties properties = widget_.Meter().Properties();
  properties.buffersizebytes = settings.AudioBufferSize;
  properties.numberofbuffers = settings.AudioBufferCount;
  properties.samplespersec = settings.AudioSampleRate;
  widget_.Meter().SetProperties(properties);
}

void HostedMeterQt::SetSampleRate(int hertz) {
  VuMeterProperties properties = widget_.Meter().Properties();
  properties.samplespersec = hertz;
  widget_.Meter().SetProperties(properties);
}

void HostedMeterQt::SetRefreshRate(int rate) {
  VuMeterProperties properties = widget_.Meter().Properties();
  properties.RefreshRate = rate;
  widget_.Meter().SetProperties(properties);
}

void HostedMeterQt::SetColors(const Settings& settings) {
  VuMeterProperties properties = widget_.Meter().Properties();
  properties.backcolor = settings.Colors[kMeterBackgroundSlot];
  properties.forecolor = settings.Colors[kMeterForegroundSlot];
  properties.PeakColor = settings.Colors[kMeterPeakSlot];
  properties.ScaleColor.fill(settings.Colors[kMeterForegroundSlot]);
  widget_.Meter().SetProperties(properties);
}

}  // namespace kv
