// Where the pointer is over a window, by the window's own events.
//
// To ask the desktop takes a round trip to it, which wakes two programs twenty times a second and
// makes the player wait while the desktop is busy. A pointer over the window tells of every move by
// itself; only beyond the window it has to be asked for. Owned by `ScreenRoom`; interface thread
// only.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QWidget>
#include <QWindow>

#include <optional>

namespace kv {

class PointerSight : public QObject {
  Q_OBJECT

 public:
  // Where the pointer is over `form`, a window; nothing when it is not there, or not known to be.
  // Device-independent pixels of the screen.
  std::optional<QPoint> Over(QWidget& form);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QPointer<QWindow> window_;
  std::optional<QPoint> place_;
  QElapsedTimer age_;  // of `place_`
};

}  // namespace kv
