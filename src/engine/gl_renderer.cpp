#include "engine/gl_renderer.h"

#include "engine/mpv_library.h"

#include <QGuiApplication>
#include <QOpenGLFunctions>
#include <QThread>

#if QT_CONFIG(xcb)
#include <qguiapplication_platform.h>
#endif

namespace kv {

GlRenderer::GlRenderer(mpv_handle* core) {
  surface_.reset(new QOffscreenSurface);
  surface_->create();
  gl_ = std::make_unique<QOpenGLContext>();
  gl_->setShareContext(QOpenGLContext::globalShareContext());
  if (!surface_->isValid() || !gl_->create()) return;
  // A context can only be current on the thread that it belongs to; the render thread takes it from
  // here before it does anything else.
  gl_->moveToThread(nullptr);
  std::mutex ready_mutex;
  std::condition_variable ready;
  bool started = false;
  thread_ = std::thread([&, core] {
    gl_->moveToThread(QThread::currentThread());
    const bool made = gl_->makeCurrent(surface_.get()) && [&] {
      char api[] = MPV_RENDER_API_TYPE_OPENGL;
      mpv_opengl_init_params init{&GlRenderer::ProcAddress, this};
      mpv_render_param parameters[] = {{MPV_RENDER_PARAM_API_TYPE, api},
                                       {MPV_RENDER_PARAM_OPENGL_INIT_PARAMS, &init},
                                       {MPV_RENDER_PARAM_INVALID, nullptr},
                                       {MPV_RENDER_PARAM_INVALID, nullptr}};
#if QT_CONFIG(xcb)
      // Hardware decoders share their pictures with OpenGL through the display connection.
      if (auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()) {
        parameters[2] = {MPV_RENDER_PARAM_X11_DISPLAY, x11->display()};
      }
#endif
      return Mpv().render_context_create(&context_, core, parameters) >= 0;
    }();
    {
      const std::lock_guard lock(ready_mutex);
      valid_ = made;
      started = true;
      ready.notify_one();
    }
    if (made) Work();
    for (auto& buffer : buffers_) buffer.reset();
    if (context_ != nullptr) Mpv().render_context_free(context_);
    context_ = nullptr;
    gl_.reset();
  });
  std::unique_lock lock(ready_mutex);
  ready.wait(lock, [&] { return started; });
}

GlRenderer::~GlRenderer() {
  GlRenderer::Stop();
}

void GlRenderer::Stop() {
  {
    const std::lock_guard lock(mutex_);
    stop_ = true;
  }
  wake_.notify_one();
  if (thread_.joinable()) thread_.join();
}

void* GlRenderer::ProcAddress(void* self, const char* name) {
  return reinterpret_cast<void*>(static_cast<GlRenderer*>(self)->gl_->getProcAddress(name));
}

void GlRenderer::OnUpdate(void* self) {
  auto* renderer = static_cast<GlRenderer*>(self);
  {
    const std::lock_guard lock(renderer->mutex_);
    renderer->update_ = true;
  }
  renderer->wake_.notify_one();
}

void GlRenderer::SetTargetSize(QSize pixels) {
  {
    const std::lock_guard lock(mutex_);
    if (pixels == target_) return;
    target_ = pixels;
    redraw_ = true;
  }
  wake_.notify_one();
}

void GlRenderer::Discard() {
  const std::lock_guard lock(mutex_);
  has_frame_ = has_picture_ = fresh_ = false;
}

void GlRenderer::SetPictureListener(std::function<void()> listener) {
  const std::lock_guard lock(mutex_);
  listener_ = std::move(listener);
}

unsigned GlRenderer::TakeTexture() {
  const std::lock_guard lock(mutex_);
  if (!has_picture_) return 0;
  if (fresh_) {
    std::swap(finished_, shown_);
    fresh_ = false;
  }
  return buffers_[shown_] ? buffers_[shown_]->texture() : 0;
}

void GlRenderer::Work() {
  Mpv().render_context_set_update_callback(context_, &GlRenderer::OnUpdate, this);
  while (true) {
    QSize size;
    bool redraw = false;
    {
      std::unique_lock lock(mutex_);
      wake_.wait(lock, [this] { return stop_ || update_ || redraw_; });
      if (stop_) break;
      redraw = redraw_;
      update_ = redraw_ = false;
      size = target_;
    }
    const bool frame = (Mpv().render_context_update(context_) & MPV_RENDER_UPDATE_FRAME) != 0;
    if (!frame && !redraw) continue;
    if (frame) {
      const std::lock_guard lock(mutex_);
      has_frame_ = true;
    }
    const bool visible = !size.isEmpty();
    Render(visible ? size : QSize(1, 1), visible);
    if (!visible) continue;
    // The listener is called under the lock, so that whoever takes it away knows it has ended.
    const std::lock_guard lock(mutex_);
    std::swap(filling_, finished_);
    fresh_ = has_picture_ = has_frame_;
    if (listener_ && fresh_) listener_();
  }
  Mpv().render_context_set_update_callback(context_, nullptr, nullptr);
}

void GlRenderer::Render(QSize size, bool visible) {
  auto& buffer = buffers_[filling_];
  if (!buffer || buffer->size() != size) {
    buffer = std::make_unique<QOpenGLFramebufferObject>(size);
  }
  mpv_opengl_fbo target{static_cast<int>(buffer->handle()), size.width(), size.height(), 0};
  int skip = visible ? 0 : 1;
  mpv_render_param parameters[] = {{MPV_RENDER_PARAM_OPENGL_FBO, &target},
                                   {MPV_RENDER_PARAM_SKIP_RENDERING, &skip},
                                   {MPV_RENDER_PARAM_INVALID, nullptr}};
  Mpv().render_context_render(context_, parameters);
  // Another context reads the texture next: the picture must be complete, not only queued.
  if (visible) gl_->functions()->glFinish();
}

}  // namespace kv
