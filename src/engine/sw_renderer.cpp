#include "engine/sw_renderer.h"

#include "engine/mpv_library.h"

namespace kv {

void SwRenderer::Buffer::Resize(QSize size) {
  if (image.size() == size) return;
  const std::size_t row = static_cast<std::size_t>(size.width()) * 4;
  const std::size_t stride = (row + kAlignment - 1) / kAlignment * kAlignment;
  const std::size_t bytes = stride * static_cast<std::size_t>(size.height());
  image = QImage();
  memory = std::make_unique<std::byte[]>(bytes + kAlignment);
  void* start = memory.get();
  std::size_t space = bytes + kAlignment;
  std::align(kAlignment, bytes, start, space);
  pixels = static_cast<uchar*>(start);
  image = QImage(pixels, size.width(), size.height(), static_cast<qsizetype>(stride),
                 QImage::Format_RGB32);
}

SwRenderer::SwRenderer(mpv_handle* core) {
  char api[] = MPV_RENDER_API_TYPE_SW;
  mpv_render_param parameters[] = {{MPV_RENDER_PARAM_API_TYPE, api},
                                   {MPV_RENDER_PARAM_INVALID, nullptr}};
  if (Mpv().render_context_create(&context_, core, parameters) < 0) {
    context_ = nullptr;
    return;
  }
  Mpv().render_context_set_update_callback(context_, &SwRenderer::OnUpdate, this);
  thread_ = std::thread([this] { Work(); });
}

SwRenderer::~SwRenderer() {
  SwRenderer::Stop();
}

void SwRenderer::Stop() {
  {
    const std::lock_guard lock(mutex_);
    stop_ = true;
  }
  wake_.notify_one();
  if (thread_.joinable()) thread_.join();
  if (context_ != nullptr) {
    Mpv().render_context_set_update_callback(context_, nullptr, nullptr);
    Mpv().render_context_free(context_);
    context_ = nullptr;
  }
}

void SwRenderer::OnUpdate(void* self) {
  auto* renderer = static_cast<SwRenderer*>(self);
  {
    const std::lock_guard lock(renderer->mutex_);
    renderer->update_ = true;
  }
  renderer->wake_.notify_one();
}

void SwRenderer::SetTargetSize(QSize pixels) {
  {
    const std::lock_guard lock(mutex_);
    if (pixels == target_) return;
    target_ = pixels;
    redraw_ = true;
  }
  wake_.notify_one();
}

void SwRenderer::Discard() {
  const std::lock_guard lock(mutex_);
  has_frame_ = has_picture_ = fresh_ = false;
}

void SwRenderer::SetPictureListener(std::function<void()> listener) {
  const std::lock_guard lock(mutex_);
  listener_ = std::move(listener);
}

const QImage* SwRenderer::TakePicture() {
  const std::lock_guard lock(mutex_);
  if (!has_picture_) return nullptr;
  if (fresh_) {
    std::swap(finished_, shown_);
    fresh_ = false;
  }
  return &buffers_[shown_].image;
}

void SwRenderer::Work() {
  while (true) {
    QSize size;
    bool redraw = false;
    {
      std::unique_lock lock(mutex_);
      wake_.wait(lock, [this] { return stop_ || update_ || redraw_; });
      if (stop_) return;
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
    if (Render(size)) {
      // The listener is called under the lock, so that whoever takes it away knows it has ended.
      const std::lock_guard lock(mutex_);
      std::swap(filling_, finished_);
      fresh_ = has_picture_ = has_frame_;
      if (listener_ && fresh_) listener_();
    }
  }
}

bool SwRenderer::Render(QSize size) {
  if (size.isEmpty()) {
    // The frame must be taken all the same, or the core waits for it.
    int skip = 1;
    int one[2] = {1, 1};
    std::size_t stride = 4;
    char format[] = "bgr0";
    alignas(kAlignment) std::array<std::byte, kAlignment> pixel{};
    mpv_render_param parameters[] = {
        {MPV_RENDER_PARAM_SW_SIZE, one},          {MPV_RENDER_PARAM_SW_FORMAT, format},
        {MPV_RENDER_PARAM_SW_STRIDE, &stride},    {MPV_RENDER_PARAM_SW_POINTER, pixel.data()},
        {MPV_RENDER_PARAM_SKIP_RENDERING, &skip}, {MPV_RENDER_PARAM_INVALID, nullptr}};
    Mpv().render_context_render(context_, parameters);
    return false;
  }
  Buffer& buffer = buffers_[filling_];
  buffer.Resize(size);
  int extent[2] = {size.width(), size.height()};
  auto stride = static_cast<std::size_t>(buffer.image.bytesPerLine());
  // The toolkit copies the fourth byte as it is, and some windows take it for opacity.
  char format[] = "bgra";
  mpv_render_param parameters[] = {{MPV_RENDER_PARAM_SW_SIZE, extent},
                                   {MPV_RENDER_PARAM_SW_FORMAT, format},
                                   {MPV_RENDER_PARAM_SW_STRIDE, &stride},
                                   {MPV_RENDER_PARAM_SW_POINTER, buffer.pixels},
                                   {MPV_RENDER_PARAM_INVALID, nullptr}};
  return Mpv().render_context_render(context_, parameters) >= 0;
}

}  // namespace kv
