// The rules of the slider: what each action does to value, knob, events and lines.
//
// The slider of these tables is 111 x 21 pixels with a knob of 11, so that it travels 100 pixels,
// and Max is 100 unless a table says otherwise: a value is then its knob position.
#include "controls/scroller_model.h"

#include "support/fake_pump.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace kv {
namespace {

struct FakeSurface : ScrollerSurface {
  void Resize(float /*width*/, float /*height*/) override {}
  std::optional<SetMenuItem> PopUpSetMenu(const SetMenuCaptions& /*captions*/) override {
    return pick;
  }
  std::optional<SetMenuItem> pick;
};

struct Bench {
  Bench() {
    model.SetMax(100);
    model.SetSize(111, 21);

    ScrollerEvents& events = model.Events();
    events.scroll = [this](double& v, std::int16_t& s, std::int16_t b) { Log("scroll", v, s, b); };
    events.after_scroll = [this](double& v, std::int16_t b) { Log("after", v, b); };
    events.mouse_down = [this](std::int16_t b, std::int16_t s, float x, float y) {
      Log("down", b, s, x, y);
    };
    events.mouse_up = [this](std::int16_t b, std::int16_t s, float x, float y) {
      Log("up", b, s, x, y);
    };
    events.menu_show = [this](bool& cancel) { Log("show"), cancel = cancel_menu; };
    events.menu_done = [this] { Log("done"); };
    log.clear();
  }

  // "; " parts commands, blanks part words. "later" puts a command into the message queue.
  void Run(const std::string& script) {
    std::istringstream commands(script);
    for (std::string command; std::getline(commands, command, ';');) Do(command);
  }

  void Do(const std::string& command) {
    std::istringstream words(command);
    std::string verb;
    words >> verb;
    if (verb == "later") {
      std::string rest;
      std::getline(words, rest);
      pump.Post([this, rest] { Do(rest); });
      return;
    }
    std::vector<float> n(4);
    for (float& number : n) words >> number;
    const auto first = static_cast<std::int16_t>(n[0]);
    const auto second = static_cast<std::int16_t>(n[1]);
    if (verb == "value") model.SetValue(static_cast<double>(n[0]));
    if (verb == "min") model.SetMin(static_cast<double>(n[0]));
    if (verb == "max") model.SetMax(static_cast<double>(n[0]));
    if (verb == "press") model.PointerDown(first, second, n[2], n[3]);
    if (verb == "move") model.PointerMove(first, n[1], n[2]);
    if (verb == "release") model.PointerUp(first, second, n[2], n[3]);
    if (verb == "lose") model.CancelDrag();
    if (verb == "pick") surface.pick = static_cast<SetMenuItem>(first);
    if (verb == "nomenu") model.SetMenuEnabled(false);
    if (verb == "cancelmenu") cancel_menu = true;
    if (verb == "forget") log.clear();
  }

  template <class... T>
  void Log(const T&... parts) {
    std::ostringstream line;
    const char* gap = log.empty() ? "" : ", ";
    ((line << gap << parts, gap = " "), ...);
    log += line.str();
  }

  std::string log;  // the events, each with its arguments
  bool cancel_menu = false;
  FakeSurface surface;
  FakePump pump;
  ScrollerModel model{surface, &pump};
};

struct Row {
  const char* what;
  const char* script;
  const char* events;
  double value;
  float knob;  // position along the travel
};

void RunTable(const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    Bench bench;
    bench.Run(row.script);
    EXPECT_EQ(bench.log, row.events);
    EXPECT_NEAR(bench.model.Value(), row.value, 1e-5);
    EXPECT_NEAR(bench.model.KnobLeft(), row.knob, 1e-4);
  }
}

TEST(ScrollerModel, ValueMinAndMax) {
  RunTable({
      {"above Max: one event", "value 900", "scroll 100 0 0", 100, 100},
      {"Max pulls the value down", "value 80; max 50", "scroll 80 0 0, scroll 50 0 0", 50, 100},
      {"Min pulls the value up", "min 20", "scroll 20 0 0, scroll 20 0 0", 20, 0},
      {"Max = Min leaves the knob", "value 30; max 0", "scroll 30 0 0, scroll 0 0 0", 0, 30},
      {"Max below Min: rest at Min", "max -5; value 7", "scroll 0 0 0, scroll 0 0 0", 0, 0},
  });

  Bench bench;
  bench.model.SetValue(std::nan(""));
  EXPECT_EQ(bench.log, "");
  bench.model.SetValue(std::numeric_limits<double>::infinity());
  EXPECT_EQ(bench.model.Value(), 100);
  bench.model.Events().scroll = [](double& value, std::int16_t&, std::int16_t) { value = 7; };
  bench.model.SetValue(40);
  EXPECT_EQ(bench.model.Value(), 7) << "what a handler writes stays";
}

TEST(ScrollerModel, MouseOnTheKnob) {
  RunTable({
      {"press", "value 50; forget; press 1 2 54 10", "down 1 2 4 10", 50, 50},
      {"drag", "press 1 0 4 10; move 1 64 0", "down 1 0 4 10, scroll 60 0 1", 60, 60},
      {"beyond both ends and back", "press 1 0 4 10; move 1 -90 0; move 1 400 0; move 1 30 0",
       "down 1 0 4 10, scroll 0 0 1, scroll 100 0 1, scroll 26 0 1", 26, 26},
      {"release", "press 1 0 4 10; move 1 64 0; forget; release 1 2 64 3",
       "scroll 60 0 0, scroll 60 0 0, after 60 1, up 1 2 4 3", 60, 60},
      {"the host's value moves no held knob", "press 1 0 4 10; value 10", "down 1 0 4 10", 10, 0},
      {"the mouse is lost", "press 1 0 4 9; value 9; lose; lose; move 1 90 0; release 1 0 90 0",
       "down 1 0 4 9, up 1 0 0 0", 9, 9},
      {"the release never came", "press 1 0 4 9; move 0 70 0", "down 1 0 4 9, up 1 0 0 0", 0, 0},
      {"middle button", "press 4 0 5 5; release 4 0 5 5", "up 4 0 5 5", 0, 0},
      {"right button and a pick", "pick 2; press 2 0 5 5; release 2 0 5 5",
       "show, scroll 100 0 0, scroll 100 0 0, scroll 100 0 0, after 100 0, done, up 2 0 5 5", 100,
       100},
  });
}

TEST(ScrollerModel, MouseOnTheTrack) {
  RunTable({
      {"centred on the pointer", "press 1 1 60.5 4", "scroll 55 0 0, down 1 0 0 0, down 1 1 60.5 4",
       55, 55},
      {"far end: flush", "press 1 0 109 4", "scroll 100 0 0, down 1 0 0 0, down 1 0 109 4", 100,
       100},
      {"the first move puts the knob's edge under the pointer; the knob gets the release",
       "press 1 0 60.5 4; forget; move 1 61 4; release 1 0 61 4",
       "scroll 61 0 1, scroll 61 0 0, scroll 61 0 0, after 61 1, up 1 0 0 4", 61, 61},
      {"right button without a menu", "nomenu; press 2 0 60 4; release 2 0 60 4",
       "down 2 0 60 4, up 2 0 60 4", 0, 0},
      {"the menu cancelled", "cancelmenu; press 2 0 60 4; release 2 0 60 4", "down 2 0 60 4, show",
       0, 0},
  });
}

TEST(ScrollerModel, WhatHappensInsideAPump) {
  RunTable({
      {"a release waits until the track press is done", "later release 1 0 60 4; press 1 0 60.5 4",
       "scroll 55 0 0, down 1 0 0 0, down 1 0 60.5 4, scroll 55 0 0, scroll 55 0 0, after 55 1, "
       "up 1 0 5 4",
       55, 55},
      {"the mouse is lost during a track press", "later lose; press 1 0 60.5 4; value 3",
       "scroll 55 0 0, scroll 3 0 0", 3, 3},
      {"a newer move overtakes", "press 1 0 0 0; later move 1 40 0; move 1 30 0",
       "down 1 0 0 0, scroll 40 0 1", 40, 40},
      {"the tick sets the value", "press 1 0 0 0; later value 90; move 1 30 0",
       "down 1 0 0 0, scroll 30 0 1", 30, 30},
  });

  FakeSurface surface;
  FakePump pump;
  auto model = std::make_unique<ScrollerModel>(surface, &pump);
  model->SetSize(111, 21);
  pump.Post([&model] { model.reset(); });
  model->PointerMove(0, 5, 5);
  EXPECT_EQ(model, nullptr);
}

}  // namespace
}  // namespace kv
