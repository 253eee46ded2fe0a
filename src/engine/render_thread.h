// The thread behind a renderer, and its mailbox of pictures.
//
// There are three buffers: one being filled, one finished, one being shown. Their roles change
// hands under the lock; what is in them is touched outside it. A renderer derives from this, keeps
// buffers of its kind and fills the one it is told to.
#pragma once

#include "engine/video_renderer.h"

#include <mpv/render.h>

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <optional>
#include <thread>

namespace kv {

class RenderThread : public VideoRenderer {
 public:
  static constexpr std::size_t kBuffers = 3;

  void SetTargetSize(QSize pixels) override;
  void SetPictureListener(std::function<void()> listener) override;
  void Discard() override;
  void Stop() override;

 protected:
  // Begins a thread that runs `work`, which ends soon after Run() has.
  void Start(std::function<void()> work);

  // Renders the frames of `context` until Stop(). On the thread itself.
  void Run(mpv_render_context* context);

  // The buffer of the newest picture, nothing before the first. It is left alone until the next
  // call. Interface thread.
  std::optional<std::size_t> TakeNewest();

 private:
  // Takes the frame that is due, into `buffer` if `size` is not empty. True when a picture has come
  // of it. On the thread itself.
  virtual bool Render(QSize size, std::size_t buffer) = 0;

  static void OnUpdate(void* self);

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
