#include "visual/meter_accessible_qt.h"

#include "controls/accessible_qt.h"
#include "system/translation_qt.h"
#include "visual/vu_meter_widget.h"

#include <QAccessible>

#include <cmath>

namespace kv {
namespace {

QString Spoken(const char* pattern, double value) {
  return ToQString(Fill(Tr(pattern), std::to_string(std::lrint(value))));
}

// Each display moves levels of its own; the others stand still meanwhile.
AccessibleReading::Reading Read(const VuMeter& meter) {
  constexpr double kPercent = 100.0;
  switch (static_cast<VuStyle>(meter.Style())) {
    case VuStyle::kBars: {
      const auto& levels = meter.Bars().Levels();
      const double level = levels.empty() ? kLowestLevel : levels.front().level;
      return {level, kLowestLevel, 0.0, Spoken(TrLater("%1 dB"), level)};
    }
    case VuStyle::kNeedle: {
      const double percent = kPercent * meter.Needle().Deflection();
      return {percent, 0.0, kPercent, Spoken(TrLater("%1 %"), percent)};
    }
    case VuStyle::kTrace:
      break;
  }
  return {};
}

QAccessibleInterface* MakeAccessible(const QString& /*class_name*/, QObject* object) {
  auto* const meter = qobject_cast<VuMeterWidget*>(object);
  if (meter == nullptr) return nullptr;
  return new AccessibleReading(meter, QAccessible::ProgressBar,
                               [meter] { return Read(meter->Meter()); });
}

}  // namespace

void InstallMeterAccessibility() {
  QAccessible::installFactory(&MakeAccessible);
}

}  // namespace kv
