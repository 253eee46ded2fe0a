// Renders frames into images on the processor: for machines without hardware OpenGL, where it costs
// a third of what OpenGL in software would.
#pragma once

#include "engine/video_renderer.h"

#include <QImage>
#include <mpv/client.h>
#include <mpv/render.h>

#include <array>
#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>
#include <thread>

namespace kv {

class SwRenderer : public VideoRenderer {
 public:
  // The core must outlive the call of `Stop`.
  explicit SwRenderer(mpv_handle* core);
  ~SwRenderer() override;
  SwRenderer(const SwRenderer&) = delete;
  SwRenderer& operator=(const SwRenderer&) = delete;

  void SetTargetSize(QSize pixels) override;
  void SetPictureListener(std::function<void()> listener) override;
  void Discard() override;
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

  static void OnUpdate(void* self);
  void Work();
  bool Render(QSize size);

  mpv_render_context* context_ = nullptr;

  // Three buffers: one being filled, one finished, one being shown. Their roles change hands under
  // the lock; the pixels are touched outside it.
  std::array<Buffer, 3> buffers_;
  std::size_t filling_ = 0;
  std::size_t finished_ = 1;
  std::size_t shown_ = 2;
  bool has_frame_ = false;    // a frame has come since `Discard`
  bool has_picture_ = false;  // and a picture of it is finished or shown
  bool fresh_ = false;        // `finished_` is newer than `shown_`

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
