// Lets something that changes with the playing time be painted along with the pictures.
//
// Painting a window costs the same whether one thing in it has changed or two, so a repaint of its
// own for each tick of the time would be half of what the interface spends on a film. While
// pictures come, what is wanted waits for the next one; without them it is painted at once.
// Interface thread only.
#pragma once

#include <QTimer>

#include <functional>

namespace kv {

class PicturePace {
 public:
  explicit PicturePace(std::function<void()> paint);

  // Something has changed: paints now, or with the next picture if the last one was recent. When
  // none comes within 60 ms, which is that of the slowest films and a half, it is not waited for.
  void Wanted();

  // A picture is about to be painted.
  void PictureComes();

 private:
  std::function<void()> paint_;
  QTimer patience_;
  bool pictures_come_ = false;
};

}  // namespace kv
