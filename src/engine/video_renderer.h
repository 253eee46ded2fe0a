// Turns the engine's frames into pictures, on a thread of its own.
//
// The interface thread never waits for a picture and the renderer never waits for the interface:
// finished pictures lie in a mailbox of which only the newest counts. `sw_renderer` fills images on
// the processor, `gl_renderer` textures on the graphics card. Shared by the core whose frames it
// renders and the video output that shows them.
#pragma once

#include <QSize>

#include <functional>

namespace kv {

class VideoRenderer {
 public:
  virtual ~VideoRenderer() = default;

  // The size in device pixels that pictures are made in from now on; empty when nobody can see
  // them, which makes them cost nothing. Any thread.
  virtual void SetTargetSize(QSize pixels) = 0;

  // Called on the render thread each time a picture is ready; must only post.
  virtual void SetPictureListener(std::function<void()> listener) = 0;

  // Forgets the picture: there is none until the next frame has come. Any thread.
  virtual void Discard() = 0;

  // Ends the thread. The last picture stays readable. Any thread but the renderer's own.
  virtual void Stop() = 0;
};

}  // namespace kv
