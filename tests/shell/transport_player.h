// The player around the buttons: engine, marks and wheel over fake media. What they ask of the rest
// is written down in `log`.
#pragma once

#include "shell/shell_test.h"
#include "shell/transport.h"
#include "shell/wheel_seek.h"
#include "support/slider_world.h"

#include <sstream>

namespace kv {

struct TransportPlayer : SliderWorld,
                         TransportNavigation,
                         TransportMenu,
                         TransportVisuals,
                         TransportDisplay,
                         MarksView,
                         clsDShowControl::Events {
  template <class... T>
  void Log(const T&... parts) {
    std::ostringstream line;
    const char* gap = "";
    ((line << gap << parts, gap = " "), ...);
    log.push_back(line.str());
  }

  std::string PlaylistItem(int index) const override {
    const auto at = static_cast<std::size_t>(index - 1);
    return at < list.size() ? list[at] : "";
  }
  void PlaylistSetPrevious(bool first, bool now) override { Log("previous", first, now); }
  void PlaylistSetNext(bool last, int index, bool now) override { Log("next", last, index, now); }
  void StartPlaylistTimer(bool immediate) override { Log("timer", immediate); }
  void RunMenuCommand(std::string_view key) override { Log("command", key); }
  void SetMenuEnabled(std::string_view /*key*/, bool /*enabled*/) override {}
  void PopUpMainMenu() override { Log("popup"); }
  void SetVumeterVisible() override { Log("meter"); }
  bool StopMeter() override {
    Log("stop meter");
    return meter_runs;
  }
  void StartMeter() override { Log("start meter"); }
  void CyclePlugins() override {}
  void ReleasePlugin() override { Log("release"); }
  void UpdateFileDisp(const std::string& text) override { Log("title", text); }
  void UpdateFileDataDisplay() override { Log("data"); }
  void ShowStatus(int kind) override { Log("status", kind); }
  void SetRepeatFace(int /*face*/) override {}
  PlaylistWindow StateOfPlaylistWindow() const override { return PlaylistWindow::kNotLoaded; }
  void ShowPlaylistWindow() override {}
  void RestorePlaylistWindow() override {}
  void FocusPlaylistWindow() override {}
  void SetAbFace(int face) override { ab_face = face; }
  void SetAbToolTip(const std::string& text) override { ab_tip = text; }
  void Movie_PlayStateChange(clsDShowControl::PlayState state) override { Log("state", state); }
  void Movie_PrepareMedia(const std::string& /*File*/) override {}
  void Movie_PrepareMediaFinish(const std::string& /*File*/) override {}

  TransportPlayer() {
    factory.media["/m/a.avi"] = {
        .duration = 100, .width = 64, .height = 48, .frames_per_second = 25};
    factory.media["/m/a.mp3"] = {.duration = 100};
    movie.SetEvents(this);
  }

  void Open(const std::string& file) {
    movie.DS_OpenFile(file, 0, 0, 0, 0, 0);
    settings.CurrentFile = file;
    slider1.SetMax(100);
    factory.calls.clear();
  }

  void OpenAt(const std::string& file, double seconds, bool play) {
    Open(file);
    movie.DS_SetPosition(seconds);
    movie.DS_Play();
    if (!play) movie.DS_Pause();
    factory.calls.clear();
    log.clear();
  }

  std::vector<std::string> log;
  std::vector<std::string> list;
  bool meter_runs = true;
  int ab_face = -1;
  std::string ab_tip;

  Marks marks{movie, session, slider1, *this};
  Transport transport{movie, settings, session, marks, pump, *this, *this, *this, *this};
  WheelSeek wheel{movie, transport, slider2};
};

}  // namespace kv
