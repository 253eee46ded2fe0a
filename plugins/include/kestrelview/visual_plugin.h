// What a visualisation plug-in of Kestrelview and the player agree upon.
//
// A plug-in is a shared library in the folder "plugins" that holds one QObject class; the player
// knows nothing of it but names. This header and Qt (Core and Gui; Widgets for a dialog) are all
// that a plug-in needs, and it links nothing of the player. README.md beside it is the guide.
//
// The library. The class carries
//
//   Q_OBJECT
//   Q_PLUGIN_METADATA(IID KESTRELVIEW_VISUAL_IID)
//   Q_CLASSINFO("ProgId", "Yours.YourPlugin")
//
// and a constructor without arguments marked Q_INVOKABLE. "plugins.ini" beside the library has the
// line "yourfile.so=Yours.YourPlugin" in its section [Plugins]. The player makes objects of the
// class as it needs them: one each time it starts (to read what the manager shows), one that lives
// while it is on view, now and then one to be configured. The constructor must be cheap, open no
// window and not rely on being the only object. An object ends by its destructor, nothing else.
//
// Members, reached by name. One that is missing, throws or has other types is passed over; then
// nothing happens, or the field stays empty.
//
//   Read: a property, or a method without arguments that gives the value.
//     p_author, p_authorurl, p_description, p_pluginname, p_version   QString
//     p_hasconfig          bool     there is a dialog; asked again whenever it is offered
//     p_type               int      0, "Audio visualization"
//     PictureScreenShoot   QImage   the picture in the manager, 320 x 180 is good
//     NoAutoRedraw         bool     optional; see VisualSurface
//
//   Called: public slots or Q_INVOKABLE methods; int results may also be void.
//     int GetVuMeter(QByteArray& samples, int& count, int surface1, int surface2, float width,
//                    float height, int& foreground, int& background, int& peak)
//     void MediaChanged()                              another medium has been opened
//     int OpenConfigDialog(); void closedialog()       if p_hasconfig
//     void DoubleClick()                               these four in the separate window alone
//     void MouseDown(short& button, short& shift, float& x, float& y), MouseMove, MouseUp
//
// GetVuMeter paints one frame. `samples` is the sound since the last one: 8-bit samples of one
// channel, 128 is silence, `count` of them, which may be none. How many come a second is the user's
// choice, 11025 at first. The bytes are yours until you return. `surface1` and `surface2` together
// are the VisualSurface; `width` and `height` are its size in pixels. The colours are 0x00BBGGRR,
// those of the user's scheme and not copies: reading is what you want.
//
// Mouse: `button` 1 left, 2 right, 4 middle, 0 none; in MouseMove the sum of those held. `shift` is
// the sum of 1 Shift, 2 Ctrl, 4 Alt. `x` and `y` in pixels of the surface, from its upper left
// corner.
//
// Threads and time. All of it is the player's interface thread: what takes long holds up the
// player, so a frame should be done in a millisecond or two. Exceptions end at the player's door
// and cost the frame. A crash, an endless loop or a write beside the pixels cannot be contained in
// one process and takes the player down.
#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QObject>

#include <cstddef>
#include <cstdint>

#define KESTRELVIEW_VISUAL_IID "org.kestrelview.VisualPlugin/1"

namespace kestrelview {

// The picture to paint on. It and its pixels are valid until GetVuMeter returns; the next frame may
// bring another place and size. A pixel is a 32-bit word 0xFFRRGGBB (QImage::Format_RGB32), the
// upper left one first.
//
// Before each frame the player fills the whole of it with the background colour. A plug-in whose
// NoAutoRedraw is true finds what it painted last instead, except after a change of size, and may
// return without painting to leave that on view.
struct VisualSurface {
  std::int32_t width;   // pixels of the screen, 1 or more
  std::int32_t height;  // the same
  std::int32_t stride;  // bytes from one line to the next below it, a multiple of 4
  float scale;          // pixels of the screen in one of the desktop's, above 0
  std::uint32_t* pixels;
};

// The surface of a frame: `surface1` are the lower and `surface2` the upper 32 bits of its address.
inline VisualSurface* SurfaceOf(int surface1, int surface2) {
  const auto low = static_cast<std::uint32_t>(surface1);
  const auto high = static_cast<std::uint32_t>(surface2);
  const std::uint64_t address = (std::uint64_t{high} << 32U) | low;
  return reinterpret_cast<VisualSurface*>(static_cast<std::uintptr_t>(address));
}

// Line `y` of the picture, 0 to height - 1.
inline QRgb* LineOf(const VisualSurface& surface, int y) {
  return surface.pixels + static_cast<std::ptrdiff_t>(y) * (surface.stride / 4);
}

// The picture for QPainter; it shares the surface's pixels and must go before GetVuMeter returns.
// The painter's units are pixels of the desktop, so that lines and texts are as thick at any scale:
// the picture is width / scale wide and height / scale high.
inline QImage ImageOf(const VisualSurface& surface) {
  QImage image(reinterpret_cast<uchar*>(surface.pixels), surface.width, surface.height,
               surface.stride, QImage::Format_RGB32);
  image.setDevicePixelRatio(static_cast<qreal>(surface.scale));
  return image;
}

// The other way round: a picture of Format_RGB32 as a surface, for the preview. Valid as long as
// the picture is left alone.
inline VisualSurface SurfaceOn(QImage& image) {
  return {image.width(), image.height(), static_cast<std::int32_t>(image.bytesPerLine()),
          static_cast<float>(image.devicePixelRatio()),
          reinterpret_cast<std::uint32_t*>(image.bits())};
}

// A colour of the scheme. One that only names a colour of the desktop (the top bit is set) comes as
// `otherwise`.
inline QColor ColorOf(int color, const QColor& otherwise) {
  if (color < 0) return otherwise;
  return {color & 0xFF, (color >> 8) & 0xFF, (color >> 16) & 0xFF};
}

}  // namespace kestrelview
