// The picture of the slider: where everything falls on whole device pixels, and how it is drawn.
//
// A scene is all geometry in device pixels, rounded once, so that lines and knob stay crisp and
// keep their size at every scale; two equal scenes of one look are the same picture. Interface
// thread.
#pragma once

#include <QColor>
#include <QPixmap>
#include <QRect>

class QPainter;

namespace kv {

class ScrollerModel;

struct ScrollerScene {
  QRect control;
  QRect axis;  // empty rectangles are not drawn
  QRect center;
  QRect range;
  QRect knob;
  QRect knob_range;  // in control coordinates, within the knob

  friend bool operator==(const ScrollerScene&, const ScrollerScene&) = default;
};

// What decides the colours and the state of the drawing.
struct ScrollerLook {
  QColor back;
  QColor center_line;
  QColor range;
  QColor knob;  // invalid: the host has not chosen one, and it follows `back`
  QColor focus;
  QPixmap picture;      // background, drawn at the upper left corner; may be null
  QPixmap custom_knob;  // null: the built-in knob
  bool vertical = false;
  bool enabled = true;
  bool hover = false;
  bool pressed = false;
  bool keyboard_focus = false;
};

// The scene of the model's present state at `scale` device pixels for each pixel.
ScrollerScene LayOutScroller(const ScrollerModel& model, double scale);

// Draws in device pixels: the painter's unit is one device pixel, its origin the control's corner.
void PaintScroller(QPainter& painter, const ScrollerScene& scene, const ScrollerLook& look,
                   double scale);

}  // namespace kv
