// What the player does to its own windows and to the pointer.
//
// The window of a control or form is told by its widget. One object for the program, since what it
// keeps (the pointer's hide count, the locked window, the task bar) is one for the screen.
// Interface thread only.
#pragma once

#include "system/message_pump.h"

#include <QAbstractItemView>
#include <QImage>
#include <QLineEdit>
#include <QPoint>
#include <QPointer>
#include <QWidget>

#include <cstdint>

namespace kv {

// Bits of a window's style that mean something here.
inline constexpr std::uint32_t kWsCaption = 0xC00000;
inline constexpr std::uint32_t kWsThickFrame = 0x40000;
inline constexpr std::uint32_t kWsExToolWindow = 0x80;
inline constexpr std::uint32_t kWsExAppWindow = 0x40000;

class WindowServicesQt {
 public:
  // `pump` must live longer.
  explicit WindowServicesQt(MessagePump& pump);
  WindowServicesQt(const WindowServicesQt&) = delete;
  WindowServicesQt& operator=(const WindowServicesQt&) = delete;
  ~WindowServicesQt();

  // Keeps the window above all others, where the desktop allows it.
  void SetWindowTopMost(QWidget& window, bool on);

  // Sets or clears style bits. The window manager's frame goes when caption and sizing border are
  // both off. Neither hides the window nor moves its contents.
  void SetWindowStyleBits(QWidget& window, std::uint32_t bits, bool on);

  // The style bits in force; a window begins with caption and sizing border.
  std::uint32_t WindowStyleBits(const QWidget& window) const;

  // Sets the extended style: kWsExToolWindow takes the window off the task bar. With `hide` a
  // window that has to change is hidden around the change.
  void SetWindowExStyle(QWidget& window, bool hide, std::uint32_t style);

  // A full screen covers the task bar by itself here, so this only keeps what was asked for.
  void SetTaskBarVisible(bool visible) { task_bar_visible_ = visible; }
  bool TaskBarVisible() const { return task_bar_visible_; }

  // The window of this program that has the foreground; none when another program has it.
  QWidget* GetActiveHwnd() const;
  void SetActiveHwnd(QWidget& window);

  // Stops the drawing of one window until null is passed. While one is locked no other can be.
  void LockWindowRedraw(QWidget* window);

  void ListBoxSelectAll(QAbstractItemView& list);

  // Offers the paths of the file system while the user types.
  void EnableAutoComplete(QLineEdit& box);

  // Copies `width` x `height` pixels of the desktop from (source_x, source_y) to (x, y) of
  // `target`. False where the desktop does not let itself be read (Wayland); `target` is unchanged
  // then.
  bool CaptureDesktopRect(QImage& target, int x, int y, int width, int height, int source_x,
                          int source_y);

  // In device-independent pixels of the desktop.
  QPoint GetMouseScreenPos() const;

  // 1 the left button, else 2 the right one, else 0.
  int MouseButtonDown() const;

  // Counted: the pointer is hidden while it has been hidden more often than shown.
  void SetCursorHidden(bool hide);

  // The hourglass or the default pointer over all windows. Not counted.
  void ShowBusyPointer(bool busy);

  // The same, then one pump.
  void SetBusyPointer(bool busy);

 private:
  void ApplyPointer();

  MessagePump& pump_;
  QPointer<QWidget> locked_;
  bool task_bar_visible_ = true;
  int pointer_count_ = 0;  // 0 or more: shown
  bool busy_ = false;
  bool overridden_ = false;
};

}  // namespace kv
