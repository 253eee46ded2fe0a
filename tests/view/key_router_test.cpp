// Every key of every modifier, and the walk through a paused picture.
#include "view/key_router.h"

#include "view/command_world.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>

namespace kv {
namespace {

constexpr std::int16_t kNone = 0;
constexpr std::int16_t kShiftCtrl = kShiftKey | kCtrlKey;

class KeyRouterTest : public testing::Test, protected CommandWorld {
 protected:
  KeyRouterTest() {
    factory.media["/m/film"] = {
        .duration = 600, .width = 64, .height = 48, .frames_per_second = 25};
    factory.media["/m/sound"] = {.duration = 600};
    volume.SetMax(99);
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
    time.Advance(100);
    return Calls();
  }

  void BUtton_Click(int Index) override {
    CommandWorld::BUtton_Click(Index);
    Playing() ? movie.DS_Pause() : movie.DS_Play();
  }

  ScrollerSurface surface;
  ScrollerModel position{surface}, volume{surface}, rate{surface};
  KeyRouter keys{movie, session, {position, volume, rate}, router, *this};
};

TEST_F(KeyRouterTest, KeysOfEveryModifier) {
  const struct {
    std::int16_t shift, key;
    const char* calls;
  } rows[] = {
      {kNone, 'P', "show list"},         {kNone, 'V', "meter style"},
      {kNone, 107, "scale -1.000000"},   {kNone, 109, "scale -2.000000"},
      {kNone, 123, "prepare,menu"},      {kNone, 46, "delete"},
      {kShiftKey, 107, "rate 20"},       {kShiftKey, 'P', ""},
      {kCtrlKey, 'X', "release resume"}, {kCtrlKey, 'C', "colors"},
      {kCtrlKey, 107, "rate 21"},        {kCtrlKey, 'D', "Demo mode:ON"},
      {kCtrlKey, 'Q', "quick search"},   {kShiftCtrl, 'K', "configure"},
      {kAltKey, 13, "full screen now"},  {kAltKey, 'P', "plugins"},
      {kOtherModifier, 'P', ""},         {kShiftCtrl | kAltKey, 123, "prepare"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Press(row.key, row.shift), row.calls) << row.shift << "+" << row.key;
  }
}

TEST_F(KeyRouterTest, MovesSlidersWithinTheirEnds) {
  volume.SetValue(98.5);
  Press(kKeyRight);
  EXPECT_EQ(volume.Value(), 99.0);
  volume.SetValue(0.5);
  Press(kKeyLeft);
  EXPECT_EQ(volume.Value(), 0.0);
  rate.SetValue(40);
  EXPECT_EQ(Press(kKeypadAdd, kCtrlKey), "");
  rate.SetValue(0);
  EXPECT_EQ(Press(kKeypadSubtract, kCtrlKey), "");
  EXPECT_EQ(Press(kKeypadAdd, kShiftKey), "rate 20");
}

TEST_F(KeyRouterTest, GoesToMarksAndResumePoints) {
  const auto goes_to = [this](std::int16_t key) {
    movie.DS_SetPosition(100);
    Press(key);
    return movie.DS_GetPosition();
  };
  goes_to('1');  // nothing is open
  Open("/m/film");
  movie.DS_Pause();
  EXPECT_EQ(goes_to('1'), 100);
  session.ResumePosition = 30;
  session.ResumeEndPosition = 40;
  EXPECT_EQ(goes_to('1'), 30);
  EXPECT_EQ(goes_to('2'), 40);
  session.MarkA = 10;
  session.MarkB = 20;
  EXPECT_EQ(goes_to('1'), 10);
  EXPECT_EQ(goes_to('2'), 20);
  session.MarkA = session.ResumePosition = 0;
  EXPECT_EQ(goes_to('1'), 100);
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
    time.Advance(500);
    EXPECT_NEAR(movie.DS_GetPosition(), std::max(0.0, 100 + 2 * row.step), 1e-6);
    EXPECT_NEAR(position.Value(), movie.DS_GetPosition(), 1e-6);
    EXPECT_EQ(Calls(), "button 1");
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
  const auto walk = [this] {
    keys.Form_KeyDown(kKeyRight, kShiftKey);
    keys.Form_KeyUp(kKeyShift);
    return Playing();
  };
  movie.DS_Pause();
  EXPECT_FALSE(walk());
  EXPECT_EQ(movie.DS_GetPosition(), 160);
  movie.DS_Play();
  EXPECT_TRUE(walk());
  movie.DS_Pause();
  keys.Form_KeyUp(kKeyShift);
  EXPECT_FALSE(Playing()) << "what an earlier walk wanted is over and done with";
  EXPECT_FALSE(walk());
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
  session.Unloading = true;
  EXPECT_FALSE(keys.Form_KeyDown(kKeyDelete, kNone));
}

}  // namespace
}  // namespace kv
