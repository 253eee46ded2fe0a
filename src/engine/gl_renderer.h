// Renders frames into textures on the graphics card, hardware decoding included.
//
// The thread has an OpenGL context of its own that shares its textures with the context of every
// widget of the program (`Qt::AA_ShareOpenGLContexts` must be set), so a picture can move to
// another window without a reload and the interface thread only ever draws a finished texture.
#pragma once

#include "engine/render_thread.h"

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <mpv/client.h>
#include <mpv/render_gl.h>

#include <array>
#include <memory>

namespace kv {

class GlRenderer : public RenderThread {
 public:
  // Interface thread only. The core must outlive the call of `Stop`.
  explicit GlRenderer(mpv_handle* core);
  ~GlRenderer() override;
  GlRenderer(const GlRenderer&) = delete;
  GlRenderer& operator=(const GlRenderer&) = delete;

  // False when no context could be made; nothing is rendered then.
  bool Valid() const { return valid_; }

  // The texture of the newest picture, 0 before the first; its first row is the picture's top. It
  // stays untouched until the next call. Interface thread, with a shared context current.
  unsigned TakeTexture();

 private:
  struct DeleteLater {
    void operator()(QObject* object) const { object->deleteLater(); }
  };

  static void* ProcAddress(void* self, const char* name);
  bool MakeContext(mpv_handle* core);
  bool Render(QSize size, std::size_t buffer) override;

  bool valid_ = false;
  std::unique_ptr<QOffscreenSurface, DeleteLater> surface_;
  std::unique_ptr<QOpenGLContext> gl_;
  mpv_render_context* context_ = nullptr;

  std::array<std::unique_ptr<QOpenGLFramebufferObject>, kBuffers> buffers_;
};

}  // namespace kv
