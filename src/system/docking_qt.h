// `Docking`: the program's windows snap to each other and to the work area when the user has moved
// or sized them with the mouse.
//
// On this system the window manager drags a window and asks nobody, and a window that moves itself
// meanwhile is torn between the two; nor may the drag be taken over, since the user's desktop tiles
// and changes workspaces by it. So the window snaps the moment it is let go. Needs X11; elsewhere
// nothing happens. Owned by the shell, one for the program; interface thread only.
#pragma once

#include "system/docking.h"
#include "system/timers.h"

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QRect>
#include <QWidget>

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace kv {

class Docking : public QObject, private QAbstractNativeEventFilter {
  Q_OBJECT

 public:
  // Whether a mouse button is down anywhere on the desktop, and not in a window of this program.
  using DragAsked = std::function<bool()>;

  // `time` must outlive this object. Without `dragged` the X server is asked.
  explicit Docking(TimerSource& time, DragAsked dragged = {});
  ~Docking() override;

  // From now on the window snaps; a second call for it changes nothing. A window may be destroyed
  // without being taken out.
  void DockWindow(QWidget& Form);

  // Leaves the window alone again.
  void UndockWindow(QWidget& Form);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct DockedWindow {
    QWidget* window;
    QRect place;              // without its frame, when it last stood still
    std::uint32_t frame = 0;  // the window manager's around it; 0 none
  };

  bool nativeEventFilter(const QByteArray& event_type, void* message, qintptr* result) override;

  DockedWindow* Find(const QObject* window);
  void FindFrame(DockedWindow& docked);
  void Remove(const QObject* window);
  void PlaceChanged(DockedWindow& docked);
  void Watch();
  void Settle();

  DragAsked dragged_;
  std::vector<DockedWindow> DockedWindows_;
  const QWidget* dragged_window_ = nullptr;
  int quiet_ticks_ = 0;  // since the button went up and the window last moved
  std::unique_ptr<Timer> watch_;
};

}  // namespace kv
