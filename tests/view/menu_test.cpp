// What the menu holds and what is checked in it; the tracks of a medium in it, and what a click on
// them does.
#include "view/command_world.h"
#include "view/key_table.h"
#include "view/menu_model.h"
#include "view/track_menu.h"

#include <gtest/gtest.h>
#include <string>
#include <utility>

namespace kv {
namespace {

class MenuModelTest : public testing::Test, protected CommandWorld {
 protected:
  std::string Checked() {
    menu.UpdateMenuChecks();
    std::string keys;
    for (const MenuItem& item : menu.Items()) {
      if (item.checked) keys += item.key + " ";
    }
    return keys;
  }
};

TEST_F(MenuModelTest, ShowsThePresentRecentFiles) {
  EXPECT_EQ(menu.IdOfKey("mRecent_f00"), MenuModel::kNoItem);
  for (std::size_t i = 0; i < settings.RecentFiles.size(); ++i) {
    settings.RecentFiles[i] = "/films/a folder with a long name/number " + std::to_string(i);
  }
  settings.RecentFiles[1] = "HTTP://u:pa:s@s@h/x.mp3";
  const int open = menu.IdOfKey("mOpen");
  menu.BuildMenu();
  EXPECT_EQ(menu.IdOfKey("mOpen"), open);
  const std::string caption = menu.Find(menu.IdOfKey("mRecent_f09"))->caption;
  EXPECT_TRUE(caption.size() <= 40 && caption.ends_with("number 9")) << caption;
  EXPECT_EQ(menu.Find(menu.IdOfKey("mRecent_f01"))->caption, "HTTP://h/x.mp3");
}

TEST_F(MenuModelTest, ChecksTheVisualisationInUse) {
  settings.PluginKey = "5.so";
  EXPECT_EQ(Checked(), "mPlug_-1 ");
  settings.UseExternalPlugin = FromBool(true);
  for (const auto& [key, checked] : {std::pair{"5.SO", "mPlug_5 "},
                                     {"\xC3\xA9.so", "mPlug_10 "},
                                     {"gone.so", "mPlug_-1 "},
                                     {"", "mPlug_-1 "}}) {
    settings.PluginKey = key;
    EXPECT_EQ(Checked(), checked) << key;
  }
  settings.FullScreen = settings.FitToWindow = FromBool(true);
  EXPECT_EQ(Checked(), "mFitToWindow mFullScreen mPlug_-1 ");
}

// What the menu promises as accelerator, the keyboard keeps.
TEST(CommandTableTest, EveryAcceleratorIsAKey) {
  for (const Command& command : kCommands) {
    if (command.key_code == 0) continue;
    const KeyRow* const row = FindKey(command.key_code, command.shift);
    ASSERT_NE(row, nullptr) << command.key;
    if (!row->item.empty()) {
      EXPECT_EQ(row->item, command.key);
    }
  }
  for (const KeyRow& row : KeyTable()) {
    EXPECT_EQ(FindKey(row.key_code, row.shift), &row) << "two rows for one key";
  }
}

class TrackMenuTest : public testing::Test, protected CommandWorld {
 protected:
  TrackMenuTest() {
    factory.media["/m/film.mkv"] = {
        .width = 160,
        .height = 120,
        .tracks = {{TrackKind::kSound, 1, "eng", "English", "aac", true, false, false, true},
                   {TrackKind::kSound, 2, "", "", "aac"},
                   {TrackKind::kSubtitle, 1, "ger", "Alles\nhier", "ass"},
                   {TrackKind::kSubtitle, 4, "qqq", "", "ass", false, true}}};
    factory.media["/m/tone.ogg"] = {.tracks = {{TrackKind::kSound, 1}}};
  }

  void Open(const char* medium) { movie.DS_OpenFile(medium, 0, 0, 100, 100, 0); }

  // What the menu holds when it is shown: "(...)" is disabled, "x" checked.
  std::string Shown() {
    tracks.Update();
    std::string all;
    for (const MenuItem& item : menu.Items()) {
      const MenuItem* const parent = menu.Find(item.parent);
      const bool ours =
          parent != nullptr && (parent->key == kSubtitlesMenu || parent->key == kSoundTracksMenu);
      if (item.key == kSubtitlesMenu || item.key == kSoundTracksMenu) {
        all += item.enabled ? item.caption + "|" : "(" + item.caption + ")|";
      } else if (ours && item.type == CommandType::kCheck) {
        all += (item.checked ? "x" : "") + item.caption + "|";
      }
    }
    return all;
  }

  TrackMenu tracks{menu, movie, dialogs, session, [](std::string_view code) {
                     return std::string(code == "eng" ? "English" : code == "ger" ? "German" : "");
                   }};
};

TEST_F(TrackMenuTest, ShowsTheTracksOfTheMedium) {
  EXPECT_EQ(Shown(), "(Subtitles)|xNone|(Sound tracks)|");
  Open("/m/film.mkv");
  const std::string film =
      "Subtitles|xNone|1: German, Alles hier|2: qqq (forced)|"
      "Sound tracks|x1: English|2: Unknown language|";
  menu.SetEnabled(menu.IdOfKey("mSaveRFAs"), false);
  EXPECT_EQ(Shown(), film);
  EXPECT_FALSE(menu.Enabled(menu.IdOfKey("mSaveRFAs"))) << "nothing else changes";
  menu.BuildMenu();
  EXPECT_EQ(Shown(), film);
  Open("/m/tone.ogg");
  EXPECT_EQ(Shown(), "(Subtitles)|xNone|(Sound tracks)|1: Unknown language|");
}

TEST_F(TrackMenuTest, PlaysWhatIsPicked) {
  Open("/m/film.mkv");
  Shown();
  tracks.PickTrack("mSub_4");
  tracks.PickTrack("mSnd_2");
  EXPECT_EQ(Shown(),
            "Subtitles|None|1: German, Alles hier|x2: qqq (forced)|"
            "Sound tracks|1: English|x2: Unknown language|");
  // A click on what is checked has turned its mark over.
  const int id = menu.IdOfKey("mSub_4");
  menu.SetChecked(id, false);
  tracks.PickTrack("mSub_4");
  EXPECT_TRUE(menu.Checked(id));
  tracks.PickTrack("mSub_0");
  EXPECT_TRUE(menu.Checked(menu.IdOfKey("mSub_0")) && !menu.Checked(id));
  // The menu still shows the tracks of the medium before.
  Open("/m/tone.ogg");
  factory.calls.clear();
  tracks.PickTrack("mSnd_1");
  EXPECT_TRUE(factory.calls.empty());
}

TEST_F(TrackMenuTest, LoadsAFile) {
  Open("/m/film.mkv");
  dialogs.WillPickFile("/m/words.srt");
  tracks.LoadSubtitles();
  EXPECT_NE(Shown().find("x3: words.srt"), std::string::npos) << Shown();
  dialogs.WillPickFile("/m/letter.txt");
  tracks.LoadSubtitles();
  EXPECT_EQ(dialogs.LastText(), "\"letter.txt\" holds no subtitles that can be shown.");
}

}  // namespace
}  // namespace kv
