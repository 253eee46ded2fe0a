// A control that a picture can be shown in: `Render` of the main window, or one of another window.
//
// Any number of them can exist; the engine shows its picture in the one whose handle it was given
// (`IVideoWindow.put_Owner`), inside the rectangle it was given, and moves to another without a
// reload. What the picture leaves free is painted in the surface's background colour. Interface
// thread only.
#pragma once

#include "engine/filter_graph.h"

#include <QPointer>
#include <QWidget>

#include <map>
#include <memory>

namespace kv {

class VideoSurface;

// The surfaces there are, by handle. Must outlive every surface.
class VideoSurfaces {
 public:
  WindowHandle Add(VideoSurface* surface);
  void Remove(WindowHandle handle);
  // Null for a handle that names no surface, or none any more.
  VideoSurface* Find(WindowHandle handle) const;

 private:
  std::map<WindowHandle, VideoSurface*> surfaces_;
  WindowHandle last_ = 0;
};

class VideoSurface : public QWidget {
  Q_OBJECT

 public:
  explicit VideoSurface(VideoSurfaces& surfaces, QWidget* parent = nullptr);
  ~VideoSurface() override;

  // What to give to `put_Owner`; never 0.
  WindowHandle Handle() const { return handle_; }

  // Shows the surface over the whole screen, out of its window, and puts it back.
  void SetFullScreen(bool on);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  VideoSurfaces& surfaces_;
  WindowHandle handle_;
  QPointer<QWidget> home_;  // the parent to return to from full screen
  QRect home_geometry_;
};

}  // namespace kv
