#include "view/window_caption.h"

#include "system/utf8.h"

#include <string_view>
#include <utility>

namespace kv {
namespace {

constexpr int kTemporaryMilliseconds = 3000;
constexpr int kBlankTicks = 10;

int CharacterCount(std::string_view text) {
  int count = 0;
  for (std::size_t at = 0; at < text.size(); at += DecodeUtf8(text, at).size) ++count;
  return count;
}

std::string FirstCharacters(std::string_view text, int count) {
  std::size_t end = 0;
  for (; count > 0 && end < text.size(); --count) end += DecodeUtf8(text, end).size;
  return std::string(text.substr(0, end));
}

}  // namespace

WindowCaption::WindowCaption(SetCaption set_caption, const Settings& settings,
                             Timer& NormalizeCaption, Timer& SetCaptionDelay,
                             std::string WindowBaseCaption)
    : set_caption_(std::move(set_caption)),
      settings_(settings),
      NormalizeCaption_(NormalizeCaption),
      SetCaptionDelay_(SetCaptionDelay),
      WindowBaseCaption_(std::move(WindowBaseCaption)),
      base_length_(CharacterCount(WindowBaseCaption_)) {}

void WindowCaption::SetTempWindowCaption(const std::string& text) {
  if (IsOn(settings_.FullScreen)) return;
  set_caption_(text);
  SetCaptionDelay_.SetEnabled(false);
  CaptionTick_ = 0;
  NormalizeCaption_.Restart(kTemporaryMilliseconds);
}

void WindowCaption::OnNormalizeCaption() {
  NormalizeCaption_.SetEnabled(false);
  if (IsOn(settings_.FullScreen)) return;
  if (reduced_motion_) {
    set_caption_(WindowBaseCaption_);
    return;
  }
  set_caption_("");
  SetCaptionDelay_.SetEnabled(true);
}

void WindowCaption::OnSetCaptionDelay() {
  if (IsOn(settings_.FullScreen) || CaptionTick_ - kBlankTicks >= base_length_) {
    CaptionTick_ = 0;
    SetCaptionDelay_.SetEnabled(false);
    return;
  }
  ++CaptionTick_;
  if (CaptionTick_ > kBlankTicks) {
    set_caption_(FirstCharacters(WindowBaseCaption_, CaptionTick_ - kBlankTicks));
  }
}

}  // namespace kv
