#include "shell/panel_keys.h"

#include "controls/scroller.h"
#include "controls/smart_button.h"
#include "shell/display_line.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace kv {

void PanelKeys::Add(QWidget& control) {
  control.installEventFilter(this);
}

bool PanelKeys::HoldFocus() const {
  const QWidget* const focus = form_.focusWidget();
  return focus != nullptr && panel_.isAncestorOf(focus) && focus->isVisible();
}

bool PanelKeys::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease) return false;
  const auto& key = static_cast<const QKeyEvent&>(*event);
  const bool walks = key.key() == Qt::Key_Tab || key.key() == Qt::Key_Backtab;
  if (walks && (key.modifiers() & ~Qt::ShiftModifier) == 0) return false;
  auto* const control = qobject_cast<QWidget*>(watched);
  if (control == nullptr) return false;
  if (event->type() == QEvent::KeyPress && Act(*control, key)) return true;
  QCoreApplication::sendEvent(&form_, event);
  return true;
}

bool PanelKeys::Act(QWidget& control, const QKeyEvent& key) {
  const bool press = key.key() == Qt::Key_Space && key.modifiers() == Qt::ControlModifier;
  if (auto* const button = qobject_cast<SmartButton*>(&control); button != nullptr && press) {
    if (!key.isAutoRepeat()) button->animateClick();
    return true;
  }
  if (auto* const label = qobject_cast<DisplayLine*>(&control); label != nullptr && press) {
    if (!key.isAutoRepeat() && label->on_press) label->on_press();
    return true;
  }
  auto* const slider = qobject_cast<Scroller*>(&control);
  if (slider == nullptr || !slider->isEnabled()) return false;
  const bool plain = (key.modifiers() & ~Qt::KeypadModifier) == 0;
  if (!plain || (key.key() != Qt::Key_Up && key.key() != Qt::Key_Down)) return false;
  slider->Step(key.key() == Qt::Key_Up ? 1 : -1);
  return true;
}

}  // namespace kv
