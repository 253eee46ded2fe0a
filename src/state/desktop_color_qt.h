// A colour from anywhere on the screen, in the way that the desktop allows: from a snapshot, else
// by the desktop's own colour picker.
//
// Interface thread only.
#pragma once

#include "state/frm_capture.h"
#include "state/portal_color_qt.h"
#include "system/window_services_qt.h"

#include <QObject>
#include <QPointer>

#include <cstdint>
#include <functional>

namespace kv {

class DesktopColor : public QObject {
  Q_OBJECT

 public:
  // `windows` must outlive this object; `owner` is the window that asks.
  DesktopColor(WindowServicesQt& windows, QWidget& owner);

  // `done` gets the colour (0x00BBGGRR), or -1 when the user gives up; `refused` is called where
  // the desktop allows neither way. While one is being picked nothing happens.
  void Pick(std::function<void(std::int32_t color)> done, std::function<void()> refused);

  // Takes `frmCapture` off the screen, without a colour.
  void Close();

 private:
  bool CaptureDesktop(const std::function<void(std::int32_t color)>& done);

  WindowServicesQt& windows_;
  QWidget& owner_;
  PortalColor portal_;
  QPointer<frmCapture> capture_;
};

}  // namespace kv
