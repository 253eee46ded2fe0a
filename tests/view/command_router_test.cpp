// Every command leads where it should, a moment after its click.
#include "view/command_router.h"

#include "view/command_world.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace kv {
namespace {

class CommandRouterTest : public testing::Test, protected CommandWorld {
 protected:
  void RunInside(const std::string& key) {
    router.RunMenuCommand(key);
    time.Advance(25);
  }
  std::string Run(const std::string& key) {
    router.RunMenuCommand(key);
    time.Advance(100);
    return Calls();
  }
};

TEST_F(CommandRouterTest, EveryEntryOfTheMenuDoesSomethingOfItsOwn) {
  settings.RecentFiles[0] = "/m/a";
  menu.BuildMenu();
  std::map<std::string, std::string> by_calls;
  for (const MenuItem& item : std::vector(menu.Items())) {
    const bool leads_on = std::any_of(menu.Items().begin(), menu.Items().end(),
                                      [&](const MenuItem& each) { return each.parent == item.id; });
    if (item.type == CommandType::kSeparator || leads_on) continue;
    if (item.key == kSoundTracksMenu || item.key == "mRecent_Clear") continue;
    const std::string told = Run(item.key);
    EXPECT_NE(told, "") << item.key;
    if (told == "settings") continue;  // their marks tell, below
    EXPECT_TRUE(by_calls.emplace(told, item.key).second) << item.key << " does " << told;
  }
}

TEST_F(CommandRouterTest, CommandsWithAnArgument) {
  settings.RecentFiles[7] = "/m/seven";
  menu.BuildMenu();
  MenuItem track;
  track.key = "mSub_2";
  menu.SetEntries(kSubtitlesMenu, {track});
  const std::pair<const char*, const char*> rows[] = {
      {"mSaveRFAs", "resume"},
      {"mSaveRFEnd", "resume end"},
      {"mSaveRFEndClear", "resume end clear"},
      {"mSaveAs", "save"},
      {"mExit", "unload"},
      {"mPause", "button 1"},
      {"mJumpToFirst", "previous first now"},
      {"mJumpToLast", "next-1 last now"},
      {"mZoom100", "scale 1.000000"},
      {"mPlug_-1", "release plugin"},
      {"mPlug_11", "plugin 11"},
      {"mRecent_f07", "open '/m/seven'"},
      {"mRecent_f08", ""},  // not in the menu
      {"mSub_2", "track mSub_2"},
      {"mSubtitles", ""},
      {"no such key", ""},
  };
  for (const auto& [key, expected] : rows) EXPECT_EQ(Run(key), expected) << key;
}

TEST_F(CommandRouterTest, RunsTheLastClickOfAMoment) {
  router.RunMenuCommand("mPlay");
  EXPECT_EQ(pump.Pumps(), 1);
  time.Advance(24);
  router.RunMenuCommand("mStop");
  EXPECT_EQ(Calls(), "") << "not inside the menu";
  time.Advance(1000);
  EXPECT_EQ(Calls(), "button 2");
}

TEST_F(CommandRouterTest, IgnoresWhatIsDisabled) {
  for (const char* key : {"mStop", "mKeepAspect"}) menu.SetEnabled(menu.IdOfKey(key), false);
  router.RunMenuCommand("mPlay");
  router.RunMenuCommand("mStop");
  router.FlipAndRun("mKeepAspect");
  time.Advance(25);
  EXPECT_EQ(Calls(), "button 0");
  EXPECT_FALSE(menu.Checked(menu.IdOfKey("mKeepAspect")));
}

TEST_F(CommandRouterTest, StoresTheMarkThatTheMenuShows) {
  const std::pair<const char*, SettingsBool Settings::*> rows[] = {
      {"mKeepAspect", &Settings::KeepAspect},
      {"mFitToWindow", &Settings::FitToWindow},
      {"mPlug_-2", &Settings::ShowVuMeter}};
  for (const auto& [key, setting] : rows) {
    for (const bool on : {true, false}) {
      router.FlipAndRun(key);
      time.Advance(25);
      EXPECT_EQ(settings.*setting, FromBool(on)) << key;
    }
  }
}

TEST_F(CommandRouterTest, OpensAndClosesThePlaylistWindow) {
  session.PlaylistWindowLoaded = true;
  EXPECT_EQ(Run("mPlaylist"), "close list");
  settings.FullScreen = FromBool(true);
  EXPECT_EQ(Run("mPlaylist"), "");
  session.PlaylistWindowLoaded = false;
  EXPECT_EQ(Run("mPlaylist"), "show list");
}

TEST_F(CommandRouterTest, FollowsUpOnWhatDialogsLeave) {
  url = "http://h/a";
  visible = false;
  EXPECT_EQ(Run("mOpenURL"), "tray 1,url,address 'http://h/a'");
  wants_colors = true;
  EXPECT_EQ(Run("mOptions"), "cursor show force,options,settings,colors");

  settings.RecentFiles = {"/m/a", "/m/b"};
  menu.BuildMenu();
  dialogs.WillAnswer(BoxAnswer::kCancel);
  Run("mRecent_Clear");
  EXPECT_EQ(settings.RecentFiles[1], "/m/b");
  dialogs.WillAnswer(BoxAnswer::kOk);
  Run("mRecent_Clear");
  EXPECT_EQ(dialogs.LastText(), "Clear list of recent files?");
  EXPECT_EQ(settings.RecentFiles, Settings().RecentFiles);
  EXPECT_EQ(menu.IdOfKey("mRecent_f00"), MenuModel::kNoItem);
}

TEST_F(CommandRouterTest, GoesBackToTheBuiltInMeter) {
  settings.UseExternalPlugin = FromBool(true);
  settings.PluginKey = "3.so";
  menu.UpdateMenuChecks();
  // The menu has turned the mark over already, also when it was set.
  menu.SetChecked(menu.IdOfKey("mPlug_3"), false);
  Run("mPlug_3");
  EXPECT_TRUE(menu.Checked(menu.IdOfKey("mPlug_3")));
  Run("mPlug_-1");
  EXPECT_FALSE(IsOn(settings.UseExternalPlugin));
  EXPECT_TRUE(menu.Checked(menu.IdOfKey("mPlug_-1")) && !menu.Checked(menu.IdOfKey("mPlug_3")));
}

// Opening a slow address pumps for a minute, and Stop must be heard meanwhile.
// Opening a slow address pumps for a minute, and Stop must be heard meanwhile.
TEST_F(CommandRouterTest, RunsACommandInsideALongOne) {
  inside = [this] {
    RunInside("mStop");
    EXPECT_EQ(calls.back(), "button 2");
    inside = [this] { RunInside("mNext"); };
    RunInside("mPause");
  };
  EXPECT_EQ(Run("mOpen"), "open '',button 2,button 1,button 4");
  EXPECT_EQ(Run("mPlay"), "button 0");
}

TEST_F(CommandRouterTest, ShowsOneModalWindowAtATime) {
  inside = [this] { inside = [this] { RunInside("mAbout"); }; };
  EXPECT_EQ(Run("mOptions"), "cursor show force,options,settings");
}

TEST_F(CommandRouterTest, DoesNothingMoreOnceTheFormCloses) {
  router.RunMenuCommand("mPlay");
  pump.Post([this] { session.Unloading = true; });
  time.Advance(25);
  EXPECT_EQ(Calls(), "");
  router.RunMenuCommand("mPlay");
  EXPECT_EQ(time.ActiveTimers(), 0);

  session.Unloading = false;
  wants_colors = true;
  inside = [this] { inside = [this] { session.Unloading = true; }; };
  EXPECT_EQ(Run("mOptions"), "cursor show force,options");
}

}  // namespace
}  // namespace kv
