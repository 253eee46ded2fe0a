// What the menu shows of a medium's tracks, and what a click on them does.
#include "view/track_menu.h"

#include "command_world.h"
#include "support/fake_graph.h"

#include <gtest/gtest.h>

namespace kv {
namespace {

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

  FakeGraphFactory factory{time, pump};
  clsDShowControl movie{factory, pump};
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
  menu.SetChecked(menu.IdOfKey("mSub_4"), false);
  tracks.PickTrack("mSub_4");
  EXPECT_TRUE(menu.Checked(menu.IdOfKey("mSub_4")));
  tracks.PickTrack("mSub_0");
  EXPECT_TRUE(menu.Checked(menu.IdOfKey("mSub_0")));
  EXPECT_FALSE(menu.Checked(menu.IdOfKey("mSub_4")));
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
