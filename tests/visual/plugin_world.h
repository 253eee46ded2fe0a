// Plug-ins, meters and forms that only record, and a catalogue of them, for the rules of hosting.
#pragma once

#include "support/fake_pump.h"
#include "support/virtual_time.h"
#include "visual/plugin_catalogue.h"
#include "visual/plugin_hosting.h"

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kv {

struct FakePlugin {
  std::string Name;
  bool HasConfig = false;
  bool NoAutoRedraw = false;
  bool broken = false;              // cannot be created
  std::function<void()> in_dialog;  // while OpenConfigDialog runs
};

struct FakePluginObjects : PluginObjects {
  std::shared_ptr<PluginObject> CreateObject(const std::string& ProgId) override;

  std::map<std::string, FakePlugin> plugins;  // by ProgId
  std::vector<std::string> calls;             // "ProgId operation", over all objects
  int alive = 0;
};

class FakePluginObject : public PluginObject {
 public:
  FakePluginObject(FakePluginObjects& world, std::string id) : world_(world), id_(std::move(id)) {
    ++world_.alive;
  }
  ~FakePluginObject() override { --world_.alive; }

  std::optional<std::string> ReadText(std::string_view member) override {
    if (member == "p_pluginname") return It().Name;
    if (member == "p_version") return std::nullopt;
    return std::string(member);
  }
  std::optional<bool> ReadFlag(std::string_view member) override {
    return member == "p_hasconfig" ? It().HasConfig : It().NoAutoRedraw;
  }
  std::optional<std::int16_t> ReadNumber(std::string_view /*member*/) override {
    return std::int16_t{7};
  }
  std::shared_ptr<const PluginPicture> ReadPicture(std::string_view /*member*/) override {
    return nullptr;
  }
  void Call(std::string_view member) override {
    Note(member);
    const auto action = It().in_dialog;
    if (member == "OpenConfigDialog" && action) action();
  }
  void CallMouse(std::string_view member, PluginMouse& /*mouse*/) override { Note(member); }
  void GetVuMeter(const PluginFrame& frame) override {
    Note("GetVuMeter");
    frame.Count = 0;
    frame.Peak = frame.Foreground;
  }

 private:
  FakePlugin& It() { return world_.plugins[id_]; }
  void Note(std::string_view member) { world_.calls.push_back(id_ + " " + std::string(member)); }

  FakePluginObjects& world_;
  std::string id_;
};

inline std::shared_ptr<PluginObject> FakePluginObjects::CreateObject(const std::string& ProgId) {
  const auto found = plugins.find(ProgId);
  if (found == plugins.end() || found->second.broken) return nullptr;
  return std::make_shared<FakePluginObject>(*this, ProgId);
}

struct FakeMeter : HostedMeter {
  bool Running() const override { return running; }
  std::string Start() override {
    running = failure.empty();
    return failure;
  }
  void Stop() override { running = false; }
  int Style() const override { return style; }
  void SetStyle(int value) override { style = value; }
  bool AutoRedraw() const override { return auto_redraw; }
  void SetAutoRedraw(bool on) override { auto_redraw = on; }
  bool Visible() const override { return visible; }
  void SetVisible(bool on) override { visible = on; }
  void SetCapture(const Settings& /*settings*/) override {}
  void SetSampleRate(int /*hertz*/) override {}
  void SetRefreshRate(int /*value*/) override {}
  void SetColors(const Settings& /*settings*/) override {}
  std::int32_t SurfaceHandle1() override { return 11; }
  std::int32_t SurfaceHandle2() override { return 22; }
  float SurfaceWidth() const override { return 300.0F; }
  float SurfaceHeight() const override { return 200.0F; }
  bool running = false, visible = false, auto_redraw = true;
  int style = 0;
  std::string failure;
};

struct FakeHostingForm : HostingForm {
  bool FormMinimised() const override { return minimised; }
  bool DS_IsPaused() const override { return paused; }
  bool DS_IsRunning() const override { return running; }
  bool HasPicture() const override { return picture; }
  void UpdateMenuChecks() override {}
  void SetTempWindowCaption(const std::string& text) override { caption = text; }
  void SetCursor(bool show, bool force) override { cursor_shown = show && force; }
  bool minimised = false, paused = false, running = true, picture = false, cursor_shown = false;
  std::string caption;
};

// Two plug-ins, "A.One" and "B.Two", in one.so and two.so; sound without a picture plays.
struct PluginWorld {
  PluginWorld() {
    settings.ShowVuMeter = FromBool(true);
    objects.plugins["A.One"].Name = "One";
    objects.plugins["B.Two"].Name = "Two";
  }
  void Scan() { catalogue.ScanPlugins({{"/", "one.so", "A.One"}, {"/", "two.so", "B.Two"}}); }
  int CallsOf(const std::string& call) const {
    return static_cast<int>(std::count(objects.calls.begin(), objects.calls.end(), call));
  }

  VirtualTime time;
  FakePump pump;
  Settings settings;
  VisualState state;
  FakePluginObjects objects;
  PluginCatalogue catalogue{objects, settings, state, pump};
  FakeMeter meter;
  FakeHostingForm form;
  PluginHosting hosting{form, {catalogue, meter, settings, state, pump, time}};
};

}  // namespace kv
