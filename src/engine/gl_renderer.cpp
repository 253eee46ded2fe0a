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
  Start([&, core] {
    gl_->moveToThread(QThread::currentThread());
    const bool made = gl_->makeCurrent(surface_.get()) && MakeContext(core);
    {
      const std::lock_guard lock(ready_mutex);
      valid_ = made;
      started = true;
      ready.notify_one();
    }
    if (made) Run(context_);
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

bool GlRenderer::MakeContext(mpv_handle* core) {
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
}

void* GlRenderer::ProcAddress(void* self, const char* name) {
  return reinterpret_cast<void*>(static_cast<GlRenderer*>(self)->gl_->getProcAddress(name));
}

unsigned GlRenderer::TakeTexture() {
  const auto newest = TakeNewest();
  return newest && buffers_[*newest] ? buffers_[*newest]->texture() : 0;
}

bool GlRenderer::Render(QSize size, std::size_t index) {
  const bool visible = !size.isEmpty();
  if (!visible) size = {1, 1};  // the frame must be taken all the same, or the core waits for it
  auto& buffer = buffers_[index];
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
  return visible;
}

}  // namespace kv
