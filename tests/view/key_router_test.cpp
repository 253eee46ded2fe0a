// Every key of every modifier, and the walk through a paused picture.
#include "view/key_router.h"

#include "support/fake_graph.h"
#include "view/command_world.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>

namespace kv {
namespace {

constexpr std::int16_t kNone = 0;
constexpr std::int16_t kShiftCtrl = kShiftKey | kCtrlKey;

class KeyRouterTest : public testing::Test, protected KeyHost {
 protected:
  KeyRouterTest() {
    factory.media["/m/film"] = {
        .duration = 600, .width = 64, .height = 48, .frames_per_second = 25};
    factory.media["/m/sound"] = {.duration = 600};
    volume.SetMax(99);
    volume.SetValue(50);
    rate.SetMax(40);
    rate.SetValue(20);
    rate.Events().after_scroll = [this](double& value, std::int16_t) {
      Note("rate " + std::to_string(static_cast<int>(value)));
    };
    position.SetMax(600);
  }

  void Open(const std::string& file) {
    movie.DS_OpenFile(file, 0, 0, 64, 48, 0);
    movie.DS_Play();
    movie.DS_SetPosition(100);
  }

  // What a key does at once and as a command.
  std::string Press(std::int16_t key, std::int16_t shift = kNone) {
    keys.Form_KeyDown(key, shift);
    world.time.Advance(100);
    return world.Calls();
  }

  bool Playing() const { return movie.DS_IsRunning() && !movie.DS_IsPaused(); }

  void BUtton_Click(int Index) override {
    Note("button " + std::to_string(Index));
    if (Playing()) {
      movie.DS_Pause();
    } else {
      movie.DS_Play();
    }
  }
  void PrepareMedia() override { Note("prepare"); }
  void ScaleWindow(float Factor) override { Note("scale " + std::to_string(Factor)); }
  void DeleteCurFile() override { Note("delete"); }
  void ReleaseResumeData() override { Note("release"); }
  void ShowColors() override { Note("colors"); }
  void ShowQuickSearch() override { Note("quick search"); }
  void ShowPlugins() override { Note("plugins"); }
  void ConfigPlugin() override { Note("configure"); }
  void SetVuMeterStyle() override { Note("meter style"); }
  void ToggleFullScreen() override { Note("full screen now"); }
  bool FlipDemoTimer() override { return demo = !demo; }
  void SetTempWindowCaption(const std::string& text) override { Note(text); }
  void PopUpMenuAtWindow() override { Note("menu"); }

  void Note(const std::string& call) { world.calls.push_back(call); }

  CommandWorld world;
  FakeGraphFactory factory{world.time, world.pump};
  clsDShowControl movie{factory, world.pump};
  ScrollerSurface surface;
  ScrollerModel position{surface};
  ScrollerModel volume{surface};
  ScrollerModel rate{surface};
  KeyRouter keys{movie, world.session, {position, volume, rate}, world.router, *this};
  bool demo = false;
};

TEST_F(KeyRouterTest, KeysOfEveryModifier) {
  const struct {
    std::int16_t shift;
    std::int16_t key;
    const char* calls;
  } rows[] = {
      {kNone, 'P', "show list"},        {kNone, 'V', "meter style"},
      {kNone, 107, "scale -1.000000"},  {kNone, 109, "scale -2.000000"},
      {kNone, 123, "prepare,menu"},     {kNone, 46, "delete"},
      {kShiftKey, 107, "rate 20"},      {kShiftKey, 'P', ""},
      {kCtrlKey, 'X', "release"},       {kCtrlKey, 'C', "colors"},
      {kCtrlKey, 107, "rate 21"},       {kCtrlKey, 'D', "Demo mode:ON"},
      {kCtrlKey, 'Q', "quick search"},  {kShiftCtrl, 'K', "configure"},
      {kAltKey, 13, "full screen now"}, {kAltKey, 'P', "plugins"},
      {kOtherModifier, 'P', ""},        {kShiftCtrl | kAltKey, 123, "prepare"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Press(row.key, row.shift), row.calls) << row.shift << "+" << row.key;
  }
}

TEST_F(KeyRouterTest, MovesSlidersWithinTheirEnds) {
  volume.SetValue(98.5);
  Press(kKeyRight);
  EXPECT_EQ(volume.Value(), 99.0);
  for (int i = 0; i < 120; ++i) Press(kKeyLeft);
  EXPECT_EQ(volume.Value(), 0.0);
  rate.SetValue(40);
  EXPECT_EQ(Press(kKeypadAdd, kCtrlKey), "");
  rate.SetValue(0);
  EXPECT_EQ(Press(kKeypadSubtract, kCtrlKey), "");
  EXPECT_EQ(Press(kKeypadAdd, kShiftKey), "rate 20");
}

TEST_F(KeyRouterTest, GoesToMarksAndResumePoints) {
  const struct {
    double a, b, resume, end;
    double at_1, at_2;  // 100: stays
  } rows[] = {{kNoPosition, kNoPosition, kNoPosition, kNoPosition, 100, 100},
              {10, kNoPosition, 30, 40, 10, 40},
              {0, 0, 0, 0, 100, 100}};
  for (const auto& row : rows) {
    Session& session = world.session;
    session.MarkA = row.a;
    session.MarkB = row.b;
    session.ResumePosition = row.resume;
    session.ResumeEndPosition = row.end;
    movie.DS_Remove();
    Press('1');
    Open("/m/film");
    movie.DS_Pause();
    Press('1');
    EXPECT_NEAR(movie.DS_GetPosition(), row.at_1, 1e-9);
    movie.DS_SetPosition(100);
    Press('2');
    EXPECT_NEAR(movie.DS_GetPosition(), row.at_2, 1e-9);
  }
}

TEST_F(KeyRouterTest, WalksAndPlaysOnWhenTheModifierIsLetGo) {
  const struct {
    const char* file;
    std::int16_t shift, key;
    double step;
  } rows[] = {
      {"/m/film", kShiftKey, kKeyRight, 60},
      {"/m/film", kCtrlKey, kKeyLeft, -0.04},
      {"/m/sound", kCtrlKey, kKeyRight, 0.01},
      {"/m/sound", kShiftCtrl, kKeyLeft, -1},
  };
  for (const auto& row : rows) {
    Open(row.file);
    keys.Form_KeyDown((row.shift & kShiftKey) != 0 ? kKeyShift : kKeyCtrl, kNone);
    keys.Form_KeyDown(row.key, row.shift);
    EXPECT_FALSE(Playing());
    EXPECT_NEAR(movie.DS_GetPosition(), 100 + row.step, 1e-6);
    // The key repeats while it is held, and the picture stands between the steps.
    keys.Form_KeyDown(row.key, row.shift);
    world.time.Advance(500);
    EXPECT_NEAR(movie.DS_GetPosition(), std::max(0.0, 100 + 2 * row.step), 1e-6);
    EXPECT_NEAR(position.Value(), movie.DS_GetPosition(), 1e-6);
    EXPECT_EQ(world.Calls(), "button 1");
    keys.Form_KeyUp(row.key);
    EXPECT_FALSE(Playing());
    if ((row.shift & kCtrlKey) != 0) keys.Form_KeyUp(kKeyCtrl);
    EXPECT_EQ(Playing(), row.shift == kCtrlKey);  // Shift may be held still
    if ((row.shift & kShiftKey) != 0) keys.Form_KeyUp(kKeyShift);
    EXPECT_TRUE(Playing());
  }
}

TEST_F(KeyRouterTest, LeavesAPausedPicturePaused) {
  Open("/m/film");
  movie.DS_Pause();
  keys.Form_KeyDown(kKeyRight, kShiftKey);
  keys.Form_KeyUp(kKeyShift);
  EXPECT_FALSE(Playing());
  EXPECT_EQ(movie.DS_GetPosition(), 160);

  // What an earlier walk wanted is over and done with.
  movie.DS_Play();
  keys.Form_KeyDown(kKeyRight, kShiftKey);
  keys.Form_KeyUp(kKeyShift);
  EXPECT_TRUE(Playing());
  movie.DS_Pause();
  keys.Form_KeyUp(kKeyShift);
  EXPECT_FALSE(Playing());
  keys.Form_KeyDown(kKeyRight, kCtrlKey);
  keys.Form_KeyUp(kKeyCtrl);
  EXPECT_FALSE(Playing());
}

TEST_F(KeyRouterTest, PlaysOnWhenTheKeyboardIsLost) {
  Open("/m/film");
  keys.Form_KeyDown(kKeyShift, kNone);
  keys.Form_KeyDown(kKeyRight, kShiftCtrl);
  keys.ReleaseAll();
  EXPECT_TRUE(Playing());
  movie.DS_Pause();
  keys.ReleaseAll();
  EXPECT_FALSE(Playing());
  // Neither modifier counts as held any more.
  movie.DS_Play();
  keys.Form_KeyDown(kKeyRight, kCtrlKey);
  keys.Form_KeyUp(kKeyCtrl);
  EXPECT_TRUE(Playing());
}

TEST_F(KeyRouterTest, EndsAtTheEndsOfTheMedium) {
  Open("/m/film");
  movie.DS_SetPosition(590);
  keys.Form_KeyDown(kKeyRight, kShiftKey);
  EXPECT_EQ(movie.DS_GetPosition(), 600);
  EXPECT_FALSE(keys.Form_KeyDown('Y', kNone));
  world.session.Unloading = true;
  EXPECT_FALSE(keys.Form_KeyDown(kKeyDelete, kNone));
}

}  // namespace
}  // namespace kv
