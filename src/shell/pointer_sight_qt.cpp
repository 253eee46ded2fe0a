#include "shell/pointer_sight_qt.h"

#include <QCursor>
#include <QEvent>
#include <QMouseEvent>

namespace kv {
namespace {

// What was heard is not trusted for longer: another program that takes the pointer for itself may
// take it away unheard.
constexpr qint64 kTrustMilliseconds = 1000;

}  // namespace

std::optional<QPoint> PointerSight::Over(QWidget& form) {
  if (form.windowHandle() != window_) {
    if (!window_.isNull()) window_->removeEventFilter(this);
    window_ = form.windowHandle();
    if (!window_.isNull()) window_->installEventFilter(this);
    place_.reset();
  }
  if (!form.underMouse()) return std::nullopt;
  if (!place_ || age_.hasExpired(kTrustMilliseconds)) {
    place_ = QCursor::pos(form.screen());
    age_.start();
  }
  return place_;
}

bool PointerSight::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::Enter:
    case QEvent::MouseMove:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
      place_ = static_cast<const QSinglePointEvent*>(event)->globalPosition().toPoint();
      age_.start();
      break;
    case QEvent::Leave:
      place_.reset();
      break;
    default:
      break;
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace kv
