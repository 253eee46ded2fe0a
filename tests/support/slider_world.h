// The engine's sliders and the time strip over fake media: their models are moved as by a user, and
// what they show is noted. Each slider is 111 pixels wide with a knob of 11, so that it travels
// 100.
#pragma once

#include "shell/sliders.h"
#include "support/fake_text_platform.h"
#include "support/movie_world.h"

#include <string>
#include <vector>

namespace kv {

struct SliderWorld : MovieWorld, PicTime, SliderLabels, SliderMeter {
  SliderWorld() {
    for (ScrollerModel* model : {&slider1, &slider2, &slider3, &slider4}) model->SetSize(111, 21);
    sliders.Configure();
    sliders.Connect();
  }

  void Cls() override {}
  void Print(int x, const std::string& text) override {
    if (x == 1) strip = text;
  }
  void SetSliderLabel(SliderLabel which, const std::string& text, bool settled) override {
    labels.push_back(std::to_string(static_cast<int>(which)) + (settled ? "=" : "~") + text);
  }
  void PrepareVUStop() override {}
  void PrepareVUStart() override {}

  std::string strip;                // the first text of the time strip
  std::vector<std::string> labels;  // "~" while a value changes, "=" when it is settled

  FakeTextPlatform platform;
  ScrollerSurface surface;
  ScrollerModel slider1{surface}, slider2{surface}, slider3{surface}, slider4{surface};
  SliderModels models{slider1, slider2, slider3, slider4};
  TimeDisplay display{movie, settings, platform, *this};
  Sliders sliders{models, movie, settings, session, display, platform, *this, *this};
};

}  // namespace kv
