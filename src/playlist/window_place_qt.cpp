#include "playlist/window_place_qt.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

namespace kv {
namespace {

constexpr int kGap = 8;
constexpr int kTitleBar = 32;  // a window's frame, which is known only when it is shown

const QScreen* ScreenOf(const QRect& place) {
  const QScreen* const found = QGuiApplication::screenAt(place.center());
  return found != nullptr ? found : QGuiApplication::primaryScreen();
}

}  // namespace

QRect OnScreen(QRect wanted) {
  const QScreen* const screen = ScreenOf(wanted);
  if (screen == nullptr) return wanted;
  const QRect room = screen->availableGeometry();
  wanted.setSize(wanted.size().boundedTo(room.size()));
  wanted.moveLeft(std::clamp(wanted.left(), room.left(), room.right() + 1 - wanted.width()));
  wanted.moveTop(std::clamp(wanted.top(), room.top(), room.bottom() + 1 - wanted.height()));
  return wanted;
}

QRect PlaceBeside(const QWidget* owner, QSize size) {
  const QRect main = owner != nullptr ? owner->window()->frameGeometry()
                                      : QGuiApplication::primaryScreen()->availableGeometry();
  const QRect room = ScreenOf(main)->availableGeometry();
  QRect place(main.topLeft(), size);
  if (main.right() + kGap + size.width() <= room.right()) {
    place.moveLeft(main.right() + kGap);
  } else if (main.left() - kGap - size.width() >= room.left()) {
    place.moveLeft(main.left() - kGap - size.width());
  } else if (main.bottom() + kGap + size.height() + kTitleBar <= room.bottom()) {
    place.moveTop(main.bottom() + kGap);
  } else {
    place.moveCenter(main.center());
  }
  place.setHeight(std::min(size.height(), room.height() - kTitleBar));
  return OnScreen(place);
}

}  // namespace kv
