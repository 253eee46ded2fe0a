#include "controls/picture_pace.h"

#include <chrono>
#include <utility>

namespace kv {
namespace {

constexpr std::chrono::milliseconds kPatience{60};

}  // namespace

PicturePace::PicturePace(std::function<void()> paint) : paint_(std::move(paint)) {
  patience_.setSingleShot(true);
  patience_.setInterval(kPatience);
  patience_.callOnTimeout([this] {
    pictures_come_ = false;
    paint_();
  });
}

void PicturePace::Wanted() {
  if (!pictures_come_) {
    paint_();
  } else if (!patience_.isActive()) {
    patience_.start();
  }
}

void PicturePace::PictureComes() {
  pictures_come_ = true;
  if (!patience_.isActive()) return;
  patience_.stop();
  paint_();
}

}  // namespace kv
