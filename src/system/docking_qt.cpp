#include "system/docking_qt.h"

#include "system/x11_qt.h"

#include <QApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <utility>

namespace kv {
namespace {

// How often a drag is looked at, and how long a window has to rest after it: the window manager's
// last word comes a moment after the button.
constexpr int kWatchMilliseconds = 20;
constexpr int kRestTicks = 2;

DockRect ToDockRect(const QRect& rect) {
  return {rect.x(), rect.y(), rect.x() + rect.width(), rect.y() + rect.height()};
}

bool IsTarget(const QWidget& window) {
  const Qt::WindowType type = window.windowType();
  return window.isVisible() && !window.isMinimized() &&
         (type == Qt::Window || type == Qt::Dialog || type == Qt::Tool);
}

std::vector<DockRect> DockTargets(const QWidget* moving) {
  std::vector<DockRect> targets;
  for (const QScreen* screen : QGuiApplication::screens()) {
    targets.push_back(ToDockRect(screen->availableGeometry()));
  }
  for (const QWidget* window : QApplication::topLevelWidgets()) {
    if (window != moving && IsTarget(*window)) {
      targets.push_back(ToDockRect(window->frameGeometry()));
    }
  }
  return targets;
}

// `place` and the window manager's frame around it.
DockRect WithFrame(const QRect& place, const QWidget& window) {
  const QRect inside = window.geometry();
  const QRect frame = window.frameGeometry();
  return ToDockRect(place.adjusted(frame.left() - inside.left(), frame.top() - inside.top(),
                                   frame.right() - inside.right(),
                                   frame.bottom() - inside.bottom()));
}

}  // namespace

Docking::Docking(TimerSource& time, DragAsked dragged) : dragged_(std::move(dragged)) {
  if (!dragged_) dragged_ = [] { return MouseHeldByOthers(); };
  watch_ = time.MakeTimer(TimerKind::kHighResolution, kWatchMilliseconds, [this] { Watch(); });
  qApp->installNativeEventFilter(this);
}

Docking::~Docking() {
  qApp->removeNativeEventFilter(this);
}

Docking::DockedWindow* Docking::Find(const QObject* window) {
  const auto at = std::find_if(DockedWindows_.begin(), DockedWindows_.end(),
                               [window](const auto& docked) { return docked.window == window; });
  return at == DockedWindows_.end() ? nullptr : &*at;
}

void Docking::DockWindow(QWidget& Form) {
  if (Find(&Form) != nullptr) return;
  DockedWindows_.push_back({&Form, Form.geometry()});
  FindFrame(DockedWindows_.back());
  Form.installEventFilter(this);
  connect(&Form, &QObject::destroyed, this, &Docking::Remove);
}

void Docking::UndockWindow(QWidget& Form) {
  Form.removeEventFilter(this);
  disconnect(&Form, &QObject::destroyed, this, &Docking::Remove);
  Remove(&Form);
}

void Docking::Remove(const QObject* window) {
  std::erase_if(DockedWindows_, [window](const auto& docked) { return docked.window == window; });
  if (dragged_window_ != window) return;
  dragged_window_ = nullptr;
  watch_->SetEnabled(false);
}

bool Docking::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Move || event->type() == QEvent::Resize) {
    if (DockedWindow* docked = Find(watched)) PlaceChanged(*docked);
  }
  return QObject::eventFilter(watched, event);
}

void Docking::FindFrame(DockedWindow& docked) {
  xcb_connection_t* const connection = X11Connection();
  const auto window = static_cast<xcb_window_t>(docked.window->internalWinId());
  if (connection != nullptr && window != 0) docked.frame = WatchX11Frame(connection, window);
}

// Many a window manager tells a window of its move at the end alone, when the mouse has been let
// go; the frame goes along with the mouse.
bool Docking::nativeEventFilter(const QByteArray& event_type, void* message, qintptr* /*result*/) {
  if (event_type != "xcb_generic_event_t") return false;
  const int type = static_cast<const xcb_generic_event_t*>(message)->response_type & 0x7F;
  if (type == XCB_CONFIGURE_NOTIFY) {
    const auto* const moved = static_cast<const xcb_configure_notify_event_t*>(message);
    for (DockedWindow& docked : DockedWindows_) {
      if (docked.frame != 0 && docked.frame == moved->window && dragged_()) PlaceChanged(docked);
    }
  } else if (type == XCB_REPARENT_NOTIFY) {
    const auto* const framed = static_cast<const xcb_reparent_notify_event_t*>(message);
    for (DockedWindow& docked : DockedWindows_) {
      if (docked.window->internalWinId() == framed->window) FindFrame(docked);
    }
  }
  return false;
}

void Docking::PlaceChanged(DockedWindow& docked) {
  quiet_ticks_ = 0;
  if (dragged_window_ == docked.window) return;
  // The program places its windows itself, and so do others; only the user's hand makes them snap.
  if (dragged_window_ != nullptr || !dragged_()) {
    docked.place = docked.window->geometry();
    return;
  }
  dragged_window_ = docked.window;
  watch_->SetEnabled(true);
}

void Docking::Watch() {
  if (dragged_()) {
    quiet_ticks_ = 0;
  } else if (++quiet_ticks_ > kRestTicks) {
    watch_->SetEnabled(false);
    Settle();
  }
}

void Docking::Settle() {
  DockedWindow* const docked = Find(std::exchange(dragged_window_, nullptr));
  if (docked == nullptr) return;
  QWidget& window = *docked->window;
  const QRect inside = window.geometry();
  const QRect started = std::exchange(docked->place, inside);
  // A drag may end in a tiled or maximised window, or in none.
  if (started == inside || !window.isVisible() ||
      (window.windowState() & ~Qt::WindowActive) != Qt::WindowNoState) {
    return;
  }
  const DockRect dropped = WithFrame(inside, window);
  const SizingSide side = DraggedSide(WithFrame(started, window), dropped);
  const std::vector<DockRect> targets = DockTargets(&window);
  const DockRect snapped =
      side == SizingSide::kNone ? DockMoving(dropped, targets) : DockSizing(dropped, side, targets);
  window.setGeometry(inside.adjusted(snapped.left - dropped.left, snapped.top - dropped.top,
                                     snapped.right - dropped.right,
                                     snapped.bottom - dropped.bottom));
}

}  // namespace kv
