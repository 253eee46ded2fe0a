// Renders frames into images on the processor: for machines without hardware OpenGL, where it costs
// a third of what OpenGL in software would.
#pragma once

#include "engine/render_thread.h"

#include <QImage>
#include <mpv/client.h>
#include <mpv/render.h>

#include <array>
#include <cstddef>
#include <memory>

namespace kv {

class SwRenderer : public RenderThread {
 public:
  // The core must outlive the call of `Stop`.
  explicit SwRenderer(mpv_handle* core);
  ~SwRenderer() override;
  SwRenderer(const SwRenderer&) = delete;
  SwRenderer& operator=(const SwRenderer&) = delete;

  void Stop() override;

  // The newest picture, null before the first. It stays untouched until the next call. Interface
  // thread only.
  const QImage* TakePicture();

 private:
  static constexpr std::size_t kAlignment = 64;  // what the scaler's fast paths want

  // One image with memory of its own, aligned for the scaler.
  struct Buffer {
    std::unique_ptr<std::byte[]> memory;
    uchar* pixels = nullptr;
    QImage image;  // a view of `memory`
    void Resize(QSize size);
  };

  bool Render(QSize size, std::size_t buffer) override;
  void ChooseScalers(QSize size);

  mpv_handle* core_;
  mpv_render_context* context_ = nullptr;
  std::array<Buffer, kBuffers> buffers_;
  bool many_scalers_ = false;  // render thread only
};

}  // namespace kv
