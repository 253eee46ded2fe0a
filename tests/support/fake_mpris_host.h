// A player for the rules of media controllers: notes what is pressed, and is in the state it is
// told.
#pragma once

#include "desktop/mpris_player.h"

#include <string>

namespace kv {

class FakeMprisHost : public MprisHost {
 public:
  PlayerState state;
  std::string art;
  std::string log;

  PlayerState State() const override { return state; }
  std::string ArtUrl(const PlayerState& /*state*/) override { return art; }
  void PressPlay() override { log += "play"; }
  void PressPause() override {
    log += "pause";
    state.paused = !state.paused;
  }
  void PressStop() override { log += "stop"; }
  void PressPrevious() override { log += "previous"; }
  void PressNext() override { log += "next"; }
  void PlayEntry(int index) override { log += "entry " + std::to_string(index); }
  void MoveTo(double seconds) override {
    log += "move " + std::to_string(static_cast<int>(seconds));
    state.position = seconds;
  }
  void SetVolume(double volume) override { state.volume = volume; }
  void SetRate(double rate) override { state.rate = rate; }
  void SetRepeatMode(int mode) override { state.repeat_mode = mode; }
  void SetFullScreen(bool on) override { state.full_screen = on; }
  bool OpenUri(const std::string& uri) override { return uri.starts_with("file:"); }
  void RaiseWindow() override {}
  void CloseWindow() override {}
};

}  // namespace kv
