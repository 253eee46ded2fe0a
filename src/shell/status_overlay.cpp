#include "shell/status_overlay.h"

#include "system/translation.h"

namespace kv {
namespace {

constexpr int kCheckMilliseconds = 250;
constexpr int kTimeoutMilliseconds = 15000;

}  // namespace

StatusOverlay::StatusOverlay(StatusView& view, clsDShowControl& movie, Dialogs& dialogs,
                             MessagePump& pump, Timer& check_buffering,
                             Timer& check_buffering_timeout)
    : view_(view),
      movie_(movie),
      dialogs_(dialogs),
      pump_(pump),
      tmrCheckBuffering_(check_buffering),
      tmrCheckBufferingTimeout_(check_buffering_timeout) {}

void StatusOverlay::ShowStatus(int Kind) {
  if (Kind == kBuffering) {
    view_.ShowStatusStrip(StatusPicture::kBuffering, Tr("Buffering, please wait..."));
    tmrCheckBuffering_.Restart(kCheckMilliseconds);
    tmrCheckBufferingTimeout_.Restart(kTimeoutMilliseconds);
  } else if (Kind == kConnecting) {
    view_.ShowStatusStrip(StatusPicture::kConnecting,
                          Tr("Connecting to remote media, please wait..."));
  }
  pump_.PumpOnce();
}

void StatusOverlay::RemoveStatus() {
  StopWatch();
  view_.HideStatusStrip();
  pump_.PumpOnce();
}

void StatusOverlay::OnCheckBuffering() {
  if (!(movie_.DS_GetPosition() > 0.0)) return;
  tmrCheckBuffering_.SetEnabled(false);
  RemoveStatus();
}

void StatusOverlay::OnCheckBufferingTimeout() {
  StopWatch();
  dialogs_.ShowMessageBox({Tr("Buffering timed out!"), BoxIcon::kStop, BoxButtons::kOk, ""});
  RemoveStatus();
}

void StatusOverlay::StopWatch() {
  tmrCheckBuffering_.SetEnabled(false);
  tmrCheckBufferingTimeout_.SetEnabled(false);
}

}  // namespace kv
