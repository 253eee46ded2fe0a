// What the messages of a moved and sized window do, in each state that matters to them.
#include "shell/window_sizing_watch.h"

#include "shell/shell_test.h"

namespace kv {
namespace {

struct Form : SizingView {
  bool RenderVisible() const override { return render; }
  WindowHandle RenderHandle() const override { return 7; }
  void SetRenderVisible(bool visible) override {
    render = visible;
    log.push_back(visible ? "render" : "no render");
  }
  void SetPanelVisible(bool visible) override { log.push_back(visible ? "panel" : "no panel"); }
  void PutAwayVuMeter1() override { log.push_back("no meter"); }
  void PrintCurScale() override { log.push_back("scale"); }
  void LockWindowRedraw(bool lock) override { log.push_back(lock ? "lock" : "unlock"); }
  void Form_Resize() override { log.push_back("resize"); }
  void SetVumeterVisible() override { log.push_back("meter"); }

  bool render = true;
  std::vector<std::string> log;
};

struct WindowSizingWatchTest : testing::Test, MovieWorld {
  void Open(int window_milliseconds) {
    factory.media["/m/a.avi"] = {
        .duration = 100, .width = 64, .height = 48, .window_milliseconds = window_milliseconds};
    movie.DS_OpenFile("/m/a.avi", 0, 0, 0, 0, 0);
    movie.DS_Play();
    factory.calls.clear();
  }

  std::vector<std::string> TakeLog() { return std::exchange(form.log, {}); }

  Form form;
  WindowSizingWatch watch{movie, settings, session,
                          time,  form,     [] { return PictureRectangle{1, 2, 30, 40}; }};
};

TEST_F(WindowSizingWatchTest, HidesThePictureWhileTheFrameIsDraggedIfWantedAndOpen) {
  settings.SilentSizing = FromBool(true);
  watch.NewMessage(WindowMessage::kSizing);
  Open(0);
  settings.SilentSizing = FromBool(false);
  watch.NewMessage(WindowMessage::kSizing);
  EXPECT_FALSE(watch.NewMessage(WindowMessage::kSize));
  EXPECT_THAT(TakeLog(), IsEmpty());
  settings.SilentSizing = FromBool(true);
  watch.NewMessage(WindowMessage::kSizing);
  EXPECT_THAT(TakeLog(), ElementsAre("no panel", "no render", "no meter"));
  EXPECT_TRUE(watch.NewMessage(WindowMessage::kSize));
  watch.NewMessage(WindowMessage::kWindowPosChanging);
  EXPECT_THAT(factory.calls, IsEmpty());
  EXPECT_THAT(TakeLog(), ElementsAre("scale"));
  watch.NewMessage(WindowMessage::kExitSizeMove);
  EXPECT_THAT(TakeLog(), ElementsAre("lock", "resize", "panel", "render", "meter", "unlock"));
  EXPECT_FALSE(watch.NewMessage(WindowMessage::kSize));
  watch.NewMessage(WindowMessage::kExitSizeMove);  // the end of a mere move
  EXPECT_THAT(TakeLog(), IsEmpty());
}

TEST_F(WindowSizingWatchTest, FollowsAMoveUntilThatTakesTooLong) {
  for (const int milliseconds : {24, 25}) {
    Open(milliseconds);
    watch.NewMessage(WindowMessage::kWindowPosChanging);
    EXPECT_EQ(factory.calls.back(), "SetWindowPosition 2 1 30 40");
    EXPECT_EQ(factory.Current()->Owner(), 7U);
    EXPECT_EQ(session.SlowMoveDetected, milliseconds == 25);
  }
  factory.calls.clear();
  watch.NewMessage(WindowMessage::kWindowPosChanging);
  EXPECT_THAT(factory.calls, IsEmpty());
}

}  // namespace
}  // namespace kv
