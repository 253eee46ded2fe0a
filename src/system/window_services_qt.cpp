#include "system/window_services_qt.h"

#include <QApplication>
#include <QCompleter>
#include <QCursor>
#include <QFileSystemModel>
#include <QGuiApplication>
#include <QList>
#include <QPainter>
#include <QPixmap>
#include <QRect>
#include <QScreen>
#include <QVariant>
#include <QWindow>

#include <utility>

namespace kv {
namespace {

constexpr const char* kStyleProperty = "kv_window_style";
constexpr std::uint32_t kFrame = kWsCaption | kWsThickFrame;

// Changes a flag of a window that may be on the screen. QWidget::setWindowFlag would hide it and
// make it anew, which loses its place and flickers; the window system can change it as it stands.
void ChangeFlag(QWidget& window, Qt::WindowType flag, bool on) {
  Qt::WindowFlags flags = window.windowFlags();
  flags.setFlag(flag, on);
  if (flags == window.windowFlags()) return;
  window.overrideWindowFlags(flags);
  if (QWindow* handle = window.windowHandle()) handle->setFlags(flags);
}

}  // namespace

WindowServicesQt::WindowServicesQt(MessagePump& pump) : pump_(pump) {}

WindowServicesQt::~WindowServicesQt() {
  if (overridden_) QGuiApplication::restoreOverrideCursor();
}

void WindowServicesQt::SetWindowTopMost(QWidget& window, bool on) {
  ChangeFlag(window, Qt::WindowStaysOnTopHint, on);
}

void WindowServicesQt::SetWindowStyleBits(QWidget& window, std::uint32_t bits, bool on) {
  const std::uint32_t old = WindowStyleBits(window);
  const std::uint32_t style = on ? old | bits : old & ~bits;
  window.setProperty(kStyleProperty, style);
  ChangeFlag(window, Qt::FramelessWindowHint, (style & kFrame) == 0);
}

std::uint32_t WindowServicesQt::WindowStyleBits(const QWidget& window) const {
  const QVariant style = window.property(kStyleProperty);
  return style.isValid() ? style.toUInt() : kFrame;
}

void WindowServicesQt::SetWindowExStyle(QWidget& window, bool hide, std::uint32_t style) {
  const bool tool = (style & kWsExToolWindow) != 0;
  if ((window.windowType() == Qt::Tool) == tool) return;
  const bool shown = window.isVisible();
  if (hide) window.hide();
  window.overrideWindowFlags((window.windowFlags() & ~Qt::WindowType_Mask) |
                             (tool ? Qt::Tool : Qt::Window));
  if (QWindow* handle = window.windowHandle()) handle->setFlags(window.windowFlags());
  if (hide && shown) window.show();
}

QWidget* WindowServicesQt::GetActiveHwnd() const {
  return QApplication::activeWindow();
}

void WindowServicesQt::SetActiveHwnd(QWidget& window) {
  window.raise();
  window.activateWindow();
}

void WindowServicesQt::LockWindowRedraw(QWidget* window) {
  if (window == nullptr) {
    if (!locked_.isNull()) locked_->setUpdatesEnabled(true);
    locked_ = nullptr;
  } else if (locked_.isNull()) {
    locked_ = window;
    window->setUpdatesEnabled(false);
  }
}

void WindowServicesQt::ListBoxSelectAll(QAbstractItemView& list) {
  list.selectAll();
}

void WindowServicesQt::EnableAutoComplete(QLineEdit& box) {
  auto* const completer = new QCompleter(&box);
  auto* const model = new QFileSystemModel(completer);
  model->setOption(QFileSystemModel::DontWatchForChanges);
  model->setRootPath(QString());
  completer->setModel(model);
  box.setCompleter(completer);
}

bool WindowServicesQt::CaptureDesktopRect(QImage& target, int x, int y, int width, int height,
                                          int source_x, int source_y) {
  const QRect wanted(source_x, source_y, width, height);
  QList<std::pair<QPoint, QPixmap>> parts;
  for (QScreen* screen : QGuiApplication::screens()) {
    const QRect part = wanted & screen->geometry();
    if (part.isEmpty()) continue;
    const QPoint inside = part.topLeft() - screen->geometry().topLeft();
    QPixmap pixels = screen->grabWindow(0, inside.x(), inside.y(), part.width(), part.height());
    if (pixels.isNull()) return false;
    parts.emplace_back(part.topLeft() - wanted.topLeft() + QPoint(x, y), std::move(pixels));
  }
  if (parts.isEmpty()) return false;
  QPainter painter(&target);
  for (const auto& [place, pixels] : parts) painter.drawPixmap(place, pixels);
  return true;
}

QPoint WindowServicesQt::GetMouseScreenPos() const {
  return QCursor::pos();
}

int WindowServicesQt::MouseButtonDown() const {
  const Qt::MouseButtons buttons = QGuiApplication::mouseButtons();
  if (buttons.testFlag(Qt::LeftButton)) return 1;
  return buttons.testFlag(Qt::RightButton) ? 2 : 0;
}

void WindowServicesQt::SetCursorHidden(bool hide) {
  pointer_count_ += hide ? -1 : 1;
  ApplyPointer();
}

void WindowServicesQt::ShowBusyPointer(bool busy) {
  busy_ = busy;
  ApplyPointer();
}

void WindowServicesQt::SetBusyPointer(bool busy) {
  ShowBusyPointer(busy);
  pump_.PumpOnce();
}

// At most one of the toolkit's stacked pointers is ours, and hidden goes before busy.
void WindowServicesQt::ApplyPointer() {
  const bool hidden = pointer_count_ < 0;
  const bool wanted = hidden || busy_;
  const QCursor pointer(hidden ? Qt::BlankCursor : Qt::WaitCursor);
  if (wanted && overridden_) {
    QGuiApplication::changeOverrideCursor(pointer);
  } else if (wanted) {
    QGuiApplication::setOverrideCursor(pointer);
  } else if (overridden_) {
    QGuiApplication::restoreOverrideCursor();
  }
  overridden_ = wanted;
}

}  // namespace kv
