#include "engine/video_surface.h"

#include <QPaintEvent>
#include <QPainter>

namespace kv {

WindowHandle VideoSurfaces::Add(VideoSurface* surface) {
  surfaces_[++last_] = surface;
  return last_;
}

void VideoSurfaces::Remove(WindowHandle handle) {
  surfaces_.erase(handle);
}

VideoSurface* VideoSurfaces::Find(WindowHandle handle) const {
  const auto found = surfaces_.find(handle);
  return found == surfaces_.end() ? nullptr : found->second;
}

VideoSurface::VideoSurface(VideoSurfaces& surfaces, QWidget* parent)
    : QWidget(parent), surfaces_(surfaces), handle_(surfaces.Add(this)) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setPalette(QPalette(Qt::black));
}

VideoSurface::~VideoSurface() {
  surfaces_.Remove(handle_);
}

void VideoSurface::SetFullScreen(bool on) {
  if (on == !home_.isNull()) return;
  if (on) {
    home_ = parentWidget();
    home_geometry_ = geometry();
    if (home_.isNull()) return;
    setWindowFlag(Qt::Window, true);
    showFullScreen();
    return;
  }
  setWindowFlag(Qt::Window, false);
  setParent(home_);
  setGeometry(home_geometry_);
  home_.clear();
  show();
}

void VideoSurface::paintEvent(QPaintEvent* event) {
  QPainter(this).fillRect(event->rect(), palette().window());
}

}  // namespace kv
