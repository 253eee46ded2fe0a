#include "engine/sw_renderer.h"

#include "engine/mpv_library.h"

#include <utility>

namespace kv {
namespace {

constexpr int kMostPixelsAlone = 1920 * 1200;

}  // namespace

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

SwRenderer::SwRenderer(mpv_handle* core) : core_(core) {
  char api[] = MPV_RENDER_API_TYPE_SW;
  mpv_render_param parameters[] = {{MPV_RENDER_PARAM_API_TYPE, api},
                                   {MPV_RENDER_PARAM_INVALID, nullptr}};
  if (Mpv().render_context_create(&context_, core, parameters) < 0) {
    context_ = nullptr;
    return;
  }
  Start([this] { Run(context_); });
}

SwRenderer::~SwRenderer() {
  SwRenderer::Stop();
}

void SwRenderer::Stop() {
  RenderThread::Stop();
  if (context_ != nullptr) Mpv().render_context_free(context_);
  context_ = nullptr;
}

const QImage* SwRenderer::TakePicture() {
  const auto newest = TakeNewest();
  return newest ? &buffers_[*newest].image : nullptr;
}

// A picture cut into parts for several threads costs a third more, but on a large screen it would
// come late from one.
void SwRenderer::ChooseScalers(QSize size) {
  const bool many = size.width() * size.height() > kMostPixelsAlone;
  if (many == std::exchange(many_scalers_, many)) return;
  const char* threads = many ? "auto" : "1";
  Mpv().set_property_async(core_, 0, "zimg-threads", MPV_FORMAT_STRING, &threads);
}

bool SwRenderer::Render(QSize size, std::size_t index) {
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
  ChooseScalers(size);
  Buffer& buffer = buffers_[index];
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
