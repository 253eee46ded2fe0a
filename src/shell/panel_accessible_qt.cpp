#include "shell/panel_accessible_qt.h"

#include "controls/accessible_qt.h"
#include "engine/video_surface.h"
#include "shell/display_line.h"
#include "shell/main_panel.h"
#include "shell/picture_view.h"
#include "shell/status_strip.h"
#include "shell/time_strip.h"

#include <QAccessible>

namespace kv {
namespace {

QAccessibleInterface* MakeAccessible(const QString& /*class_name*/, QObject* object) {
  if (auto* label = qobject_cast<DisplayLine*>(object)) {
    return new AccessibleText(
        label, {[label] { return label->FullText(); }, [label] { return label->IsLink(); },
                [label] {
                  if (label->on_press) label->on_press();
                }});
  }
  if (auto* strip = qobject_cast<TimeStrip*>(object)) {
    return new AccessibleText(strip, {[strip] { return strip->Text(); }, {}, {}});
  }
  if (auto* strip = qobject_cast<StatusStrip*>(object)) {
    return new QAccessibleWidget(strip, QAccessible::AlertMessage);
  }
  if (auto* panel = qobject_cast<MainPanel*>(object)) {
    return new QAccessibleWidget(panel, QAccessible::Grouping);
  }
  if (auto* picture = qobject_cast<PictureView*>(object)) {
    return new QAccessibleWidget(picture, QAccessible::Graphic);
  }
  if (auto* movie = qobject_cast<VideoSurface*>(object)) {
    return new QAccessibleWidget(movie, QAccessible::Canvas);
  }
  return nullptr;
}

}  // namespace

void InstallPanelAccessibility() {
  QAccessible::installFactory(&MakeAccessible);
}

}  // namespace kv
