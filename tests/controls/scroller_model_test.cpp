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

class FakeSurface : public ScrollerSurface {
 public:
  void Resize(float width, float height) override { size = {width, height}; }
  std::optional<SetMenuItem> PopUpSetMenu(const SetMenuCaptions& /*captions*/) override {
    return pick;
  }

  KnobSize size;
  std::optional<SetMenuItem> pick;
};

struct Bench {
  explicit Bench(ScrollerDirection direction = ScrollerDirection::kHorizontal, double min = 0,
                 double max = 100) {
    ScrollerProperties properties;
    properties.direction = direction;
    properties.min = min;
    properties.max = max;
    properties.value = min;
    model.LoadProperties(properties);
    const bool vertical = direction == ScrollerDirection::kVertical;
    model.SetSize(vertical ? 21 : 111, vertical ? 111 : 21);

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
    events.design_message = [this](const std::string& text) { Log(text); };
    log.clear();
  }

  // "; " parts commands, blanks part words. "later" puts a command into the message queue.
  void Run(const std::string& script) {
    std::istringstream commands(script + ";");
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
    if (verb == "finish") model.SetAndFinish(static_cast<double>(n[0]));
    if (verb == "press") model.PointerDown(first, second, n[2], n[3]);
    if (verb == "move") model.PointerMove(first, n[1], n[2]);
    if (verb == "release") model.PointerUp(first, second, n[2], n[3]);
    if (verb == "lose") model.CancelDrag();
    if (verb == "key") model.KeyDown(first, second);
    if (verb == "keyup") model.KeyUp(first, second);
    if (verb == "menu") model.ShowSetMenu();
    if (verb == "pick") surface.pick = static_cast<SetMenuItem>(first);
    if (verb == "nomenu") model.SetMenuEnabled(false);
    if (verb == "cancelmenu") cancel_menu = true;
    if (verb == "width") model.SetSize(n[0], 21);
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

constexpr auto kH = ScrollerDirection::kHorizontal;
constexpr auto kV = ScrollerDirection::kVertical;

void RunTable(const std::vector<Row>& rows, ScrollerDirection direction = kH, double min = 0,
              double max = 100) {
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    Bench bench(direction, min, max);
    bench.Run(row.script);
    EXPECT_EQ(bench.log, row.events);
    EXPECT_NEAR(bench.model.Value(), row.value, 1e-5);
    EXPECT_NEAR(direction == kV ? bench.model.KnobTop() : bench.model.KnobLeft(), row.knob, 1e-4);
  }
}

TEST(ScrollerModel, ValueMinAndMax) {
  RunTable({
      {"in range", "value 40", "scroll 40 0 0", 40, 40},
      {"above Max: one event", "value 900", "scroll 100 0 0", 100, 100},
      {"below Min: one event", "value -3", "scroll 0 0 0", 0, 0},
      {"Max pulls the value down", "value 80; max 50", "scroll 80 0 0, scroll 50 0 0", 50, 100},
      {"Max raised leaves the knob", "value 80; max 200", "scroll 80 0 0", 80, 80},
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

TEST(ScrollerModel, NegativeMin) {
  Bench bench;
  const auto error = bench.model.SetMin(-1);
  ASSERT_TRUE(error.has_value());
  EXPECT_EQ(error->number, 2);
  EXPECT_EQ(error->text, "ERROR! Cannot set min value to negative ! (below 0 )");
  EXPECT_EQ(bench.model.Min(), -1);
  EXPECT_EQ(bench.log, "");

  bench.model.SetDesignHost(true);
  EXPECT_FALSE(bench.model.SetMin(-4).has_value());
  EXPECT_EQ(bench.model.Min(), 0);
  EXPECT_FALSE(bench.model.SetMin(500).has_value());
  EXPECT_EQ(bench.model.Min(), 99);
  EXPECT_EQ(bench.log,
            "ERROR! Cannot set min value to negative ! (below 0 ), scroll 0 0 0, scroll 99 0 0, "
            "scroll 99 0 0");
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
      {"hovering", "move 0 5 5", "", 0, 0},
      {"middle button", "press 4 0 5 5; release 4 0 5 5", "up 4 0 5 5", 0, 0},
      {"right button without a menu", "nomenu; press 2 0 5 5; release 2 0 5 5", "up 2 0 5 5", 0, 0},
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
      {"near end: flush", "value 50; forget; press 1 0 2 4",
       "scroll 0 0 0, down 1 0 0 0, down 1 0 2 4", 0, 0},
      {"the first move puts the knob's edge under the pointer; the knob gets the release",
       "press 1 0 60.5 4; forget; move 1 61 4; release 1 0 61 4",
       "scroll 61 0 1, scroll 61 0 0, scroll 61 0 0, after 61 1, up 1 0 0 4", 61, 61},
      {"middle button", "press 4 0 60 4; release 4 0 60 4", "down 4 0 60 4", 0, 0},
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

TEST(ScrollerModel, Keyboard) {
  RunTable({
      {"add: half a knob and one", "key 107 1", "scroll 6.5 1 0, scroll 6.5 1 0, scroll 6.5 1 0",
       6.5, 6.5},
      {"subtract", "value 50; forget; key 109 0",
       "scroll 43.5 0 0, scroll 43.5 0 0, scroll 43.5 0 0", 43.5, 43.5},
      {"held at the end", "value 98; key 107 0; key 107 0; forget", "", 100, 100},
      {"the shift mask is the last key's", "key 17 2; value 1; keyup 17 0; value 2",
       "scroll 1 2 0, scroll 2 0 0", 2, 2},
  });
}

TEST(ScrollerModel, VerticalAndMinAboveZero) {
  RunTable(
      {
          {"Min stands at the top", "value 12", "scroll 12 0 0", 12, 20},
          {"drag", "press 1 0 3 0; move 1 3 30", "down 1 0 3 0, scroll 16 0 1", 16, 30},
          {"Max before the end", "press 1 0 3 0; move 1 3 50", "down 1 0 3 0, scroll 20 0 1", 20,
           50},
          {"and no more", "press 1 0 3 0; move 1 3 80", "down 1 0 3 0, scroll 20 0 1", 20, 80},
      },
      kV, 10, 20);
  RunTable(
      {
          {"drag to Min", "press 1 0 3 0; move 1 -9 0", "down 1 0 3 0, scroll 10 0 1", 10, 0},
          {"middle is half of Max", "pick 1; menu",
           "show, scroll 10 0 0, scroll 10 0 0, scroll 10 0 0, after 10 0, done", 10, 0},
          {"a knob as large as the track stands for Min", "width 11; finish 17",
           "scroll 17 0 0, scroll 10 0 0, scroll 10 0 0, after 10 0", 10, 0},
      },
      kH, 10, 20);
  RunTable({{"a drag starts from the even pixel", "value 2.5; forget; press 1 0 3 5; move 1 3 15",
             "down 1 0 3 2.5, scroll 12 0 1", 12, 12}},
           kV);
}

TEST(ScrollerModel, Lines) {
  const struct {
    const char* what;
    double max, start, end, value;
    bool range, on_knob;
  } rows[] = {
      {"none at -1", 97, -1, 50, 0, false, false},
      {"0 is a range", 97, 0, 48.5, 0, true, true},
      {"Max 0 has none", 0, 5, 5, 0, false, false},
      {"behind the knob", 97, 0, 20, 90, true, false},
      {"under the knob", 97, 20, 90, 40, true, true},
      {"before the knob", 97, 60, 90, 10, true, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    Bench bench(kH, 0, row.max);
    bench.model.SetRangeStart(row.start);
    bench.model.SetRangeEnd(row.end);
    bench.model.SetValue(row.value);
    const ScrollerLines lines = bench.model.Lines();
    ASSERT_TRUE(lines.center.has_value());
    EXPECT_EQ(lines.center->y1, 10.5);
    EXPECT_EQ(lines.center->x2, 111);
    EXPECT_FALSE(lines.axis.has_value());
    ASSERT_EQ(lines.range.has_value(), row.range);
    ASSERT_EQ(lines.knob_range.has_value(), row.on_knob);
    if (row.range) {
      EXPECT_DOUBLE_EQ(lines.range->x1, 111.0 / 100 * row.start);
      EXPECT_DOUBLE_EQ(lines.range->x2, 111.0 / 97 * row.end + 5.5);
    }
    if (row.on_knob) {
      const double left = static_cast<double>(bench.model.KnobLeft());
      EXPECT_DOUBLE_EQ(lines.knob_range->x1, lines.range->x1 - left - 1);
      EXPECT_DOUBLE_EQ(lines.knob_range->x2, lines.range->x2 - left);
    }
  }
  Bench vertical(kV);
  EXPECT_EQ(vertical.model.Lines().axis->y2, 111);
  EXPECT_EQ(vertical.model.Lines().center->y1, 55.5);
  vertical.model.SetCenterLine(false);
  EXPECT_FALSE(vertical.model.Lines().axis || vertical.model.Lines().center);
}

TEST(ScrollerModel, SizesAndKnobs) {
  Bench bench;
  bench.model.SetSize(200, 40);
  EXPECT_EQ(bench.surface.size.height, 21);
  EXPECT_EQ(bench.model.ScaleWidth(), 200);

  bench.model.SetDirection(kV);
  EXPECT_EQ(bench.surface.size.width, 21);
  EXPECT_EQ(bench.surface.size.height, 200);
  EXPECT_EQ(bench.model.Knob().height, 11);
  bench.model.SetScrollKnobPicture(KnobSize{30, 8});
  EXPECT_EQ(bench.surface.size.width, 30);
  bench.model.SetDirection(kH);
  EXPECT_EQ(bench.model.Knob().width, 30) << "a custom knob is not turned";
  bench.model.SetScrollKnobPicture(std::nullopt);
  EXPECT_EQ(bench.model.Knob().height, 21);

  EXPECT_EQ(bench.log, "") << "no resize step raises an event";
}

}  // namespace
}  // namespace kv
