// Brings the renderer's pictures to the surface that owns them.
//
// Belongs to `MpvEngine` and lives as long. Keeps the owner, the rectangle and the canvas, a child
// of the owning surface that shows the newest picture, and tells the renderer in which size
// pictures are wanted. Decides once between the graphics card and the processor. Interface thread
// only.
#pragma once

#include "engine/video_renderer.h"
#include "engine/video_surface.h"

#include <QObject>
#include <QPointer>
#include <QRect>
#include <QWidget>
#include <mpv/client.h>

#include <atomic>
#include <functional>
#include <memory>

namespace kv {

enum class VideoPath { kHardware, kSoftware };

// Whether `ChooseVideoPath` can come to choose the hardware: to be asked before the application
// object is made, which must then be told to share OpenGL contexts.
bool MayUseHardwareVideo();

// Where the OpenGL renderer is hardware it is worth it; where it is a software one, or there is
// none, the processor draws the pictures more cheaply itself. `KESTRELVIEW_VIDEO` with "gl" or "sw"
// overrides. Needs the application object.
VideoPath ChooseVideoPath();

class VideoOutput : public QObject {
  Q_OBJECT

 public:
  explicit VideoOutput(VideoPath path);
  ~VideoOutput() override;

  VideoPath Path() const { return path_; }
  VideoSurfaces& Surfaces() { return surfaces_; }

  // Makes the renderer of a new core and takes its pictures from now on.
  std::shared_ptr<VideoRenderer> Attach(mpv_handle* core);

  void SetOwner(WindowHandle owner);
  // In device-independent pixels of the owner.
  void SetRectangle(const QRect& rectangle);
  const QRect& Rectangle() const { return rectangle_; }
  // Forgets the last picture; the next that comes is the first of its medium.
  void Discard();
  // Off: the owner shows nothing but itself.
  void SetShown(bool shown);
  bool SetFullScreen(bool on);
  void SetCursorHidden(bool hidden);
  bool CursorHidden() const { return cursor_hidden_; }

  // How many pictures have been painted in all.
  long PaintedPictures() const { return painted_; }

  // Called each time before a new picture is painted.
  void SetPictureListener(std::function<void()> listener) { on_picture_ = std::move(listener); }

  // Called when the first picture since the last `SetShown(true)` has been painted.
  void SetFirstPictureListener(std::function<void()> listener) { on_first_ = std::move(listener); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void PlaceCanvas();
  void UpdateTargetSize();
  void ShowNewest();
  void OnPainted();
  QWidget* MakeCanvas(VideoSurface* owner);

  const VideoPath path_;
  VideoSurfaces surfaces_;
  std::shared_ptr<VideoRenderer> renderer_;
  WindowHandle owner_ = 0;
  QRect rectangle_;
  bool shown_ = false;
  bool cursor_hidden_ = false;
  bool awaiting_first_ = false;
  std::atomic<bool> told_{false};  // of a picture, on its way from the renderer's thread
  long painted_ = 0;
  QPointer<QWidget> canvas_;
  std::function<void()> on_picture_;
  std::function<void()> on_first_;
};

}  // namespace kv
