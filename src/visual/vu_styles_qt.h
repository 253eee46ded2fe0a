// The three displays of the level meter: bars, oscilloscope trace and needle instrument.
//
// Each paints in pixels of the screen, so that it is sharp at any scale, in colours made from those
// of the scheme alone, from a postage stamp up to the whole screen: what has no room is left out.
// What stands still is drawn once and kept until size or look change. Owned by the meter's widget;
// interface thread.
#pragma once

#include "visual/vu_meter.h"

#include <QColor>
#include <QFont>
#include <QImage>
#include <QSize>

#include <array>
#include <memory>

class QPainter;

namespace kv {

struct VuLook {
  QColor back;
  QColor fore;
  QColor peak;
  QColor lines;
  QColor marks;
  QColor numbers;
  QColor emblem;
  QFont numbers_font;
  QFont emblem_font;
  double needle_length = 0.75;  // of the instrument's height above its pivot
  double numbers_distance = 0.85;
  QSize size;          // pixels of the screen
  double scale = 1.0;  // pixels of the screen in one of the desktop's
  friend bool operator==(const VuLook&, const VuLook&) = default;
};

class VuStylePainter {
 public:
  virtual ~VuStylePainter() = default;

  // Prepares what stands still. Not called with an empty size.
  virtual void SetLook(const VuLook& look) = 0;

  // Takes the meter's levels over; whether that changes the picture.
  virtual bool Update(const VuMeter& meter) = 0;

  // `painter` counts in pixels of the screen.
  virtual void Paint(QPainter& painter) = 0;
};

std::unique_ptr<VuStylePainter> MakeVuStylePainter(VuStyle style);

std::unique_ptr<VuStylePainter> MakeVuBarsPainter();
std::unique_ptr<VuStylePainter> MakeVuTracePainter();
std::unique_ptr<VuStylePainter> MakeVuNeedlePainter();

// A picture of the look's size, filled with its background, and without an alpha channel.
QImage BlankPicture(const VuLook& look);

// `font` at so many pixels of the screen.
QFont FontOfPixels(QFont font, double pixels);

}  // namespace kv
