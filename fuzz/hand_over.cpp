// Requests of other starts: the bytes of the socket, and what is made of them.
#include "shell/hand_over.h"

#include "quiet_dialogs.h"
#include "shell/hand_over_channel.h"
#include "support.h"
#include "support/virtual_time.h"

namespace kv::fuzz {
namespace {

struct Host : HandOverHost {
  void OpenCommandFile(const std::string& path) override { opened = path; }
  void AbandonOpen() override {}
  std::string opened;
};

void Execute(const std::string& text) {
  VirtualTime time;
  Host host;
  QuietDialogs dialogs;
  HandOver* player = nullptr;
  const auto link = time.MakeTimer(TimerKind::kOrdinary, 20, [&] { player->OnLinkExeTimer(); });
  const auto delay =
      time.MakeTimer(TimerKind::kOrdinary, 3000, [&] { player->OnOpeningCMDDelay(); });
  HandOver hand_over(host, dialogs, *link, *delay);
  player = &hand_over;
  hand_over.ReadCommandLine({});
  hand_over.FinishLoading();
  Require(hand_over.Form_LinkExecute(text), "a player at rest takes a request");
  time.Advance(100);
  Require(host.opened.find('"') == std::string::npos, "quotes are no part of a path");
  Require(!link->Enabled(), "a request is served once");
}

}  // namespace

void Try(std::string_view input) {
  const DecodedHandOver request = DecodeHandOver(input);
  if (request.state == HandOverState::kComplete) {
    Require(EncodeHandOver(request.text) == input, "a request is its length and its text");
    Require(!request.text.empty() && request.text.size() <= kMaxHandOverText, "texts are bounded");
    Require(request.text.find('\0') == std::string::npos, "texts have no NUL");
    const DecodedHandOver part = DecodeHandOver(input.substr(0, input.size() - 1));
    Require(part.state == HandOverState::kIncomplete, "a part of a request is waited for");
    Execute(request.text);
  }
  const DecodedHandOver sent = DecodeHandOver(EncodeHandOver(input));
  const bool can_be_sent = !input.empty() && input.size() <= kMaxHandOverText &&
                           input.find('\0') == std::string_view::npos;
  Require((sent.state == HandOverState::kComplete) == can_be_sent, "what can be sent arrives");
  Require(!can_be_sent || sent.text == input, "what was sent arrives as it is");
}

}  // namespace kv::fuzz
