// The level meter as a widget: a VuMeter with a window, its three displays, and the surface that
// plug-ins paint on.
//
// Pointer positions and surface extents count in pixels of the screen, so that a plug-in finds
// under the pointer what it painted there. An event nobody handles goes on to the parent. Owned by
// its parent widget; interface thread.
#pragma once

#include "visual/audio_capture.h"
#include "visual/meter_surface.h"
#include "visual/vu_meter.h"
#include "visual/vu_styles_qt.h"

#include <QImage>
#include <QWidget>

#include <cstdint>
#include <functional>
#include <memory>

class QDropEvent;

namespace kv {

struct VuMeterEvents {
  // The left button went up over the meter that it went down on.
  std::function<void()> Click;
  std::function<void()> DblClick;
  // `Button`: 1 left, 2 right, 4 middle; for MouseMove the sum of those that are down. `Shift`: sum
  // of 1 Shift, 2 Control, 4 Alt.
  using Mouse = std::function<void(std::int16_t Button, std::int16_t Shift, float X, float Y)>;
  Mouse MouseDown;
  Mouse MouseMove;
  Mouse MouseUp;
  // With `oledropmode` 1.
  std::function<void(QDropEvent& drop)> OLEDragDrop;
};

class VuMeterWidget : public QWidget, private VuMeterView {
  Q_OBJECT

 public:
  // `timers` outlives it; `capture` is not null.
  VuMeterWidget(TimerSource& timers, std::unique_ptr<AudioCapture> capture,
                const VuMeterProperties& properties, QWidget* parent = nullptr);
  ~VuMeterWidget() override;

  VuMeter& Meter() { return *meter_; }
  const VuMeter& Meter() const { return *meter_; }
  VuMeterEvents& Events() { return events_; }

  // For `GetVuMeter`, inside the frame event; see meter_surface.h. Asking for a handle prepares the
  // surface. They stay valid until the control is asked again or resized.
  std::int32_t SurfaceHandle1();
  std::int32_t SurfaceHandle2();
  float SurfaceWidth() const;
  float SurfaceHeight() const;

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void ShowFrame(bool Cancel) override;
  void PropertiesChanged() override;

  QSize ScreenSize(double scale) const;
  VuLook Look(double scale) const;
  void PrepareSurface();
  // Raises a pointer event; without a handler the parent gets it.
  void Raise(const VuMeterEvents::Mouse& handler, std::int16_t button, QMouseEvent* event);

  VuMeterEvents events_;
  std::unique_ptr<AudioCapture> capture_;
  std::unique_ptr<VuStylePainter> style_;
  std::int16_t shown_style_ = -1;
  VuLook look_;
  QImage surface_image_;
  MeterSurface surface_{};
  bool surface_asked_ = false;  // in this frame
  bool surface_shown_ = false;  // instead of a display of our own
  bool left_down_ = false;
  std::unique_ptr<VuMeter> meter_;
};

}  // namespace kv
