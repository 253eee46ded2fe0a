// Renders frames into textures on the graphics card, hardware decoding included.
//
// The thread has an OpenGL context of its own that shares its textures with the context of every
// widget of the program (`Qt::AA_ShareOpenGLContexts` must be set), so a picture can move to
// another window without a reload and the interface thread only ever draws a finished texture.
#pragma once

#include "engine/video_renderer.h"

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <mpv/client.h>
#include <mpv/render_gl.h>

#include <array>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

namespace kv {

class GlRenderer : public VideoRenderer {
 public:
  // Interface thread only. The core must outlive the call of `Stop`.
  explicit GlRenderer(mpv_handle* core);
  ~GlRenderer() override;
  GlRenderer(const GlRenderer&) = delete;
  GlRenderer& operator=(const GlRenderer&) = delete;

  // False when no context could be made; nothing is rendered then.
  bool Valid() const { return valid_; }

  void SetTargetSize(QSize pixels) override;
  void SetPictureListener(std::function<void()> listener) override;
  void Discard() override;
  void Stop() override;

  // The texture of the newest picture, 0 before the first; its first row is the
  // picture's top. It
  // stays untouched until the next call. Interface thread, with a shared context current.
  unsigned TakeTexture();

 private:
  struct DeleteLater {
    void operator()(QObject* object) const { object->deleteLater(); }
  };

  static void OnUpdate(void* self);
  static void* ProcAddress(void* self, const char* name);
  void Work();
  void Render(QSize size, bool visible);

  bool valid_ = false;
  std::unique_ptr<QOffscreenSurface, DeleteLater> surface_;
  std::unique_ptr<QOpenGLContext> gl_;
  mpv_render_context* context_ = nullptr;

  // As in `SwRenderer`: one being filled, one finished, one being shown.
  std::array<std::unique_ptr<QOpenGLFramebufferObject>, 3> buffers_;
  std::size_t filling_ = 0;
  std::size_t finished_ = 1;
  std::size_t shown_ = 2;
  bool has_frame_ = false;    // a frame has come since `Discard`
  bool has_picture_ = false;  // and a picture of it is finished or shown
  bool fresh_ = false;

  std::mutex mutex_;
  std::condition_variable wake_;
  std::function<void()> listener_;
  QSize target_;
  bool update_ = false;
  bool redraw_ = false;
  bool stop_ = false;
  std::thread thread_;
};

}  // namespace kv
