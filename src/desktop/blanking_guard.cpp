#include "desktop/blanking_guard.h"

#include <utility>

namespace kv {

void BlankingGuard::SetPlaying(bool playing) {
  if (playing == wanted_) return;
  wanted_ = playing;
  refused_ = false;
  Settle();
}

void BlankingGuard::Settle() {
  if (asking_) return;  // the answer settles it
  const bool held = request_ || cookie_;
  if (wanted_ && !held && !refused_) {
    asking_ = true;
    services_.InhibitByPortal(
        [this](std::optional<std::string> request) { Asked(std::move(request)); });
  } else if (!wanted_ && held) {
    if (request_) services_.ReleasePortal(*std::exchange(request_, std::nullopt));
    if (cookie_) services_.ReleaseSaver(*std::exchange(cookie_, std::nullopt));
  }
}

void BlankingGuard::Asked(std::optional<std::string> request) {
  if (!request && wanted_) {
    services_.InhibitBySaver([this](std::optional<std::uint32_t> cookie) { AskedSaver(cookie); });
    return;
  }
  asking_ = false;
  request_ = std::move(request);
  Settle();
}

void BlankingGuard::AskedSaver(std::optional<std::uint32_t> cookie) {
  asking_ = false;
  cookie_ = cookie;
  refused_ = !cookie;
  Settle();
}

}  // namespace kv
