// Everything that commands and keys lead to, as one list of calls.
#pragma once

#include "support/fake_text_platform.h"
#include "support/movie_world.h"
#include "support/scripted_dialogs.h"
#include "view/command_router.h"
#include "view/key_router.h"

#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kv {

struct CommandWorld : MovieWorld,
                      CommandTransport,
                      CommandMedium,
                      CommandWindow,
                      CommandForms,
                      CommandVisuals,
                      CommandTracks,
                      KeyHost,
                      MenuPlugins {
  CommandWorld() { menu.BuildMenu(); }

  // The calls since the last time, joined.
  std::string Calls() {
    std::string all;
    for (const std::string& call : std::exchange(calls, {})) all += (all.empty() ? "" : ",") + call;
    return all;
  }

  void BUtton_Click(int Index) override { Note("button " + std::to_string(Index)); }
  void PlaylistSetPrevious(bool to_first, bool immediate) override {
    Note(std::string("previous") + (to_first ? " first" : "") + (immediate ? " now" : ""));
  }
  void PlaylistSetNext(bool to_last, int index, bool immediate) override {
    Note("next" + std::to_string(index) + (to_last ? " last" : "") + (immediate ? " now" : ""));
  }
  void OpenFile(const std::string& path) override { Note("open '" + path + "'"); }
  void OpenAddress(const std::string& address) override { Note("address '" + address + "'"); }
  void SaveCurrentFile() override { Note("save"); }
  void SaveResumeFile(bool end_pos, bool clear_end) override {
    Note(std::string("resume") + (end_pos ? " end" : "") + (clear_end ? " clear" : ""));
  }
  void ReleaseResumeData() override { Note("release resume"); }
  bool FormVisible() const override { return visible; }
  void TrayClick(int code) override { Note("tray " + std::to_string(code)); }
  void SetCursor(bool show, bool force) override {
    Note(std::string("cursor") + (show ? " show" : "") + (force ? " force" : ""));
  }
  void ScaleWindow(float Factor) override { Note("scale " + std::to_string(Factor)); }
  void UpdateSettings() override { Note("settings"); }
  std::string AskForUrl() override { return Note("url"), url; }
  bool ShowOptions() override { return Note("options"), wants_colors; }
  void ShowColors() override { Note("colors"); }
  void ShowAbout() override { Note("about"); }
  void ShowPlugins() override { Note("plugins"); }
  void ShowHelp() override { Note("help"); }
  void ShowPlaylistWindow() override { Note("show list"); }
  void ClosePlaylistWindow() override { Note("close list"); }
  void StopVuMeter1() override { Note("stop meter"); }
  void ShowMeterWindow() override { Note("meter window"); }
  void ReleasePlugin() override { Note("release plugin"); }
  void SetExPlugIn(int Index) override { Note("plugin " + std::to_string(Index)); }

  void PickTrack(std::string_view key) override { Note("track " + std::string(key)); }
  void LoadSubtitles() override { Note("load subtitles"); }

  void PrepareMedia() override { Note("prepare"); }
  void DeleteCurFile() override { Note("delete"); }
  void ShowQuickSearch() override { Note("quick search"); }
  void ConfigPlugin() override { Note("configure"); }
  void SetVuMeterStyle() override { Note("meter style"); }
  void ToggleFullScreen() override { Note("full screen now"); }
  bool FlipDemoTimer() override { return demo = !demo; }
  void SetTempWindowCaption(const std::string& caption) override { Note(caption); }
  void PopUpMenuAtWindow() override { Note("menu"); }

  int Count() const override { return 12; }
  std::string Name(int index) const override { return "Plugin " + std::to_string(index); }
  // The last two have the same, which has letters beyond ASCII.
  std::string Key(int index) const override {
    EXPECT_LT(index, Count());
    return (index < 10 ? std::to_string(index) : "\u00C9") + ".so";
  }

  std::vector<std::string> calls;
  std::function<void()> inside;  // runs inside the next call, once
  bool visible = true, wants_colors = false, demo = false;
  std::string url;

  ScriptedDialogs dialogs;
  FakeTextPlatform text;
  MenuModel menu{settings, *this, text, [](std::string_view caption) {
                   return 5 * static_cast<int>(caption.size());  // pixels
                 }};
  std::unique_ptr<Timer> full_screen = time.MakeTimer(TimerKind::kOrdinary, 10, [this] {
    full_screen->SetEnabled(false);
    Note("full screen");
  });
  std::unique_ptr<Timer> unload = time.MakeTimer(TimerKind::kOrdinary, 50, [this] {
    unload->SetEnabled(false);
    Note("unload");
  });
  std::unique_ptr<Timer> mnuTimer =
      time.MakeTimer(TimerKind::kOrdinary, 25, [this] { router.OnmnuTimer(); });
  CommandRouter router{menu,
                       settings,
                       session,
                       dialogs,
                       pump,
                       time,
                       {*mnuTimer, *full_screen, *unload},
                       {*this, *this, *this, *this, *this, *this}};

  void Note(const std::string& call) {
    calls.push_back(call);
    if (const std::function<void()> action = std::exchange(inside, nullptr)) action();
  }
};

}  // namespace kv
