#include "engine/render_thread.h"

#include "engine/mpv_library.h"

#include <utility>

namespace kv {

void RenderThread::Start(std::function<void()> work) {
  thread_ = std::thread(std::move(work));
}

void RenderThread::Stop() {
  {
    const std::lock_guard lock(mutex_);
    stop_ = true;
  }
  wake_.notify_one();
  if (thread_.joinable()) thread_.join();
}

void RenderThread::OnUpdate(void* self) {
  auto* renderer = static_cast<RenderThread*>(self);
  {
    const std::lock_guard lock(renderer->mutex_);
    renderer->update_ = true;
  }
  renderer->wake_.notify_one();
}

void RenderThread::SetTargetSize(QSize pixels) {
  {
    const std::lock_guard lock(mutex_);
    if (pixels == target_) return;
    target_ = pixels;
    redraw_ = true;
  }
  wake_.notify_one();
}

void RenderThread::SetPictureListener(std::function<void()> listener) {
  const std::lock_guard lock(mutex_);
  listener_ = std::move(listener);
}

void RenderThread::Discard() {
  const std::lock_guard lock(mutex_);
  has_frame_ = has_picture_ = fresh_ = false;
}

std::optional<std::size_t> RenderThread::TakeNewest() {
  const std::lock_guard lock(mutex_);
  if (!has_picture_) return std::nullopt;
  if (fresh_) {
    std::swap(finished_, shown_);
    fresh_ = false;
  }
  return shown_;
}

void RenderThread::Run(mpv_render_context* context) {
  Mpv().render_context_set_update_callback(context, &RenderThread::OnUpdate, this);
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
      // Of two free buffers the one that was shown last: the fewer are in turn, the less of the
      // processor's cache they take from the decoder.
      if (!fresh_) std::swap(filling_, finished_);
    }
    const bool frame = (Mpv().render_context_update(context) & MPV_RENDER_UPDATE_FRAME) != 0;
    if (!frame && !redraw) continue;
    if (frame) {
      const std::lock_guard lock(mutex_);
      has_frame_ = true;
    }
    if (!Render(size, filling_)) continue;
    // The listener is called under the lock, so that whoever takes it away knows it has ended.
    const std::lock_guard lock(mutex_);
    std::swap(filling_, finished_);
    fresh_ = has_picture_ = has_frame_;
    if (listener_ && fresh_) listener_();
  }
  Mpv().render_context_set_update_callback(context, nullptr, nullptr);
}

}  // namespace kv
