// A player around the opener: engine, sliders, time display and status strip over a fake graph.
// What the opener asks of the rest of the player is written down in `log`.
#pragma once

#include "shell/hand_over.h"
#include "shell/media_opener.h"
#include "shell/shell_test.h"
#include "support/slider_world.h"

#include <cmath>
#include <map>

namespace kv {

struct OpenerPlayer : SliderWorld,
                      OpenerHost,
                      OpenerView,
                      HandOverHost,
                      StatusView,
                      clsDShowControl::Events {
  OpenerPlayer() {
    factory.media["/m/a.avi"] = {.duration = 100, .width = 640, .height = 480};
    factory.media["/m/b.mp3"] = {.duration = 50};
    factory.media["/m/slow.avi"] = {
        .duration = 10, .width = 64, .height = 48, .render_milliseconds = 1000};
    factory.media["/m/broken.avi"] = {.renders = false, .render_milliseconds = 1000};
    session.SupportedExtensions = "*.avi;*.mp3;*.m3u;*.kvr;*.asx;*.asf;*.wax";
    session.OpenFilter = "All|*.*";
    slider2.SetValue(99);
    slider3.SetValue(20);
    slider4.SetValue(9);
    log.clear();
    movie.SetEvents(this);
  }

  void OpenPlaylist(const std::string& Path, bool ByHand) override {
    log.push_back("playlist " + Path + (ByHand ? "" : " unattended"));
  }
  void OpenResumeFile(const std::string& Path, bool& FromPlaylist, bool /*StartPlaying*/) override {
    log.push_back("resume " + Path);
    session.ResumePosition = 7;
    session.ResumeEndPosition = 9;
    if (!resume_target.empty()) {
      opener.OpenFile(resume_target, {.FromPlaylist = FromPlaylist, .IsResumeStart = true});
    }
  }
  kv::AsxInfo ReadAsxFile(const std::string& Path) override { return asx[Path]; }
  void UpdateFileDisp(const std::string& text) override { log.push_back("title " + text); }
  void UpdateFileDataDisplay() override { log.push_back("data"); }
  void ScaleMovie(bool ForcePanel) override {
    log.push_back(ForcePanel ? "scale panel" : "scale");
    pump.PumpOnce();
  }
  void ScaleWindow(float Factor) override { log.push_back("zoom " + std::to_string(Factor)); }
  void BuildMenu() override { log.push_back("menu"); }
  void SetVumeterVisible() override { log.push_back("meter"); }
  void ResetAB() override { log.push_back("marks"); }
  void BUtton_Click(int Index) override {
    log.push_back("button " + std::to_string(Index));
    movie.DS_Play();
  }
  void RestoreFromTray() override { log.push_back("restore"); }
  RenderTarget Render() const override { return {7, 320, 200}; }
  void ShowConnectionIcon(ConnectionIcon shown) override { icon = shown; }
  void ShowResumeMark(bool visible) override { resume_mark = visible; }
  void SetTitleToolTip(const std::string& text) override { tool_tip = text; }
  void SetSlidersEnabled(bool enabled) override {
    log.push_back(enabled ? "sliders on" : "sliders off");
  }
  void OpenCommandFile(const std::string& path) override {
    settings.CurrentFile = path;
    opener.OpenFile(path, {.StartPlaying = true, .KeepWindowSize = true});
  }
  void AbandonOpen() override { opener.AbandonOpen(); }
  void ShowStatusStrip(StatusPicture /*picture*/, const std::string& text) override {
    log.push_back("status " + text);
  }
  void HideStatusStrip() override { log.push_back("no status"); }
  void Movie_PlayStateChange(clsDShowControl::PlayState state) override {
    log.push_back("state " + std::to_string(state));
  }
  void Movie_PrepareMedia(const std::string& File) override {
    log.push_back("prepare " + File);
    pump.PumpOnce();
  }
  void Movie_PrepareMediaFinish(const std::string& File) override {
    log.push_back("prepared " + File);
    pump.PumpOnce();
  }

  void Play(const std::string& file) { opener.OpenFile(file, {.StartPlaying = true}); }
  void Close() {
    session.Unloading = true;
    opener.AbandonOpen();
    movie.DS_Remove();
    factory.calls.clear();
    log.clear();
  }
  // What the window shows of the medium that is current.
  std::string Shown() const {
    return settings.CurrentFile + "|" + movie.DS_CurFile() + "|" +
           std::to_string(std::lround(slider1.Max())) + " s|" + session.AsxInfo.entry + "|" +
           std::to_string(std::lround(session.ResumePosition)) + " to " +
           std::to_string(std::lround(session.ResumeEndPosition)) +
           (resume_mark ? "|marked " : "|") + tool_tip;
  }
  auto Logged(const std::string& what) const { return std::count(log.begin(), log.end(), what); }
  auto Rendered(const std::string& target) const {
    return std::count(factory.calls.begin(), factory.calls.end(), "RenderFile " + target);
  }

  std::vector<std::string> log;
  std::map<std::string, kv::AsxInfo> asx;
  std::string resume_target;
  std::string tool_tip;
  ConnectionIcon icon = ConnectionIcon::kNone;
  bool resume_mark = false;

  ScriptedDialogs dialogs;
  std::unique_ptr<Timer> check =
      time.MakeTimer(TimerKind::kOrdinary, 250, [this] { status.OnCheckBuffering(); });
  std::unique_ptr<Timer> timeout =
      time.MakeTimer(TimerKind::kOrdinary, 15000, [this] { status.OnCheckBufferingTimeout(); });
  StatusOverlay status{*this, movie, dialogs, pump, *check, *timeout};
  MediaOpener opener{
      *this,
      *this,
      {movie, settings, session, models, sliders, display, status, dialogs, pump, platform}};
};

}  // namespace kv
