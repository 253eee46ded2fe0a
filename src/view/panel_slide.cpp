#include "view/panel_slide.h"

#include <algorithm>

namespace kv {
namespace {

constexpr int kHidden = 2;  // a strip of this height or less is out of the way

}  // namespace

PanelSlide::PanelSlide(PanelSlideHost& host, const FullScreen& full_screen, Timer& PanelShowTimer,
                       Timer& PanelDelayTimer)
    : host_(host),
      full_screen_(full_screen),
      PanelShowTimer_(PanelShowTimer),
      PanelDelayTimer_(PanelDelayTimer) {}

void PanelSlide::OnPanelDelayTimer() {
  PanelDelayTimer_.SetEnabled(false);
  PanelShowTimer_.SetEnabled(true);
}

void PanelSlide::OnPanelShowTimer() {
  if (full_screen_.NoPanel()) {
    // A slide that was under way when the strip was given up must not bring it back.
    PanelShowTimer_.SetEnabled(false);
    if (host_.PanelVisible()) host_.SetPanelVisible(false);
  } else if (full_screen_.PanelShown()) {
    StepIn();
  } else {
    StepOut();
  }
  host_.ScaleMovie(false);
}

void PanelSlide::StepIn() {
  if (!host_.PanelVisible()) host_.SetPanelVisible(true);
  const int full = full_screen_.PanelFullHeight();
  const int height = host_.PanelHeight();
  if (height < full) {
    host_.SetPanelHeight(std::min(height + Step(), full));
  } else {
    PanelShowTimer_.SetEnabled(false);
  }
}

void PanelSlide::StepOut() {
  const int height = host_.PanelHeight();
  if (height > kHidden) {
    host_.SetPanelHeight(height < Step() ? 1 : height - Step());
    return;
  }
  PanelShowTimer_.SetEnabled(false);
  if (host_.PanelVisible()) host_.SetPanelVisible(false);
}

}  // namespace kv
