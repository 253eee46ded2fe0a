#include "playlist/list_rows.h"

#include "playlist/list_room.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kv {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

TEST(ListRows, IconsTellAudioFromInternetFromTheRest) {
  const struct {
    const char* path;
    RowIcon icon;
  } rows[] = {
      {"c:\\media\\clip.MP3", RowIcon::kAudio},
      {"/m/a.midi", RowIcon::kAudio},
      {"/m/a.mp3.avi", RowIcon::kOtherMedia},
      {"/m.mp3/a", RowIcon::kOtherMedia},
      {"HTTP://h/a.mp3", RowIcon::kInternet},
      {"ftp://h/a", RowIcon::kInternet},
      {"https://h/a.ogg", RowIcon::kOtherMedia},
      {"mms://h/a", RowIcon::kOtherMedia},
      {"", RowIcon::kOtherMedia},
  };
  for (const auto& row : rows) EXPECT_EQ(GetIcon(row.path), row.icon) << row.path;
}

TEST(ListRows, AnAppendedUrlShowsItsLastPartARebuiltOneTheWhole) {
  ListRoom room;
  room.Load({"/m/\xff.avi"});
  room.list.add("http://h/live");
  room.rows.FillPlaylist("http://h/live");
  EXPECT_THAT(room.Cells(1), ElementsAre("\xff.avi", "live"));
  EXPECT_THAT(room.window.log, ElementsAre("in 2 2"));
  EXPECT_EQ(room.rows.NumberText(2), "0002");

  room.rows.FillPlaylist("");
  EXPECT_THAT(room.Cells(1), ElementsAre("\xff.avi", "http://h/live"));
  EXPECT_EQ(room.window.open, 0);

  for (const char* const secret : {"http://me:pw@h", "http://me:pw@h/live"}) {
    room.Load({secret});
    room.rows.FillPlaylist("");
    EXPECT_THAT(std::string(room.rows.SubItem(1, 1)), Not(HasSubstr("pw"))) << secret;
    EXPECT_TRUE(room.rows.ShowsItem(1));
  }
}

TEST(ListRows, NumbersOutsideTheRowsAreHarmless) {
  ListRoom room;
  room.Load({"/a"});
  for (const int row : {-1, 0, 2}) {
    EXPECT_EQ(room.rows.SubItem(row, 1), "");
    EXPECT_EQ(room.rows.NumberText(row), "");
    EXPECT_EQ(room.rows.Folded(row).Text(1), "");
    room.rows.Select(row, true);
    room.rows.SetDetailsOf(row, {});
    room.rows.Remove({row});
  }
  EXPECT_EQ(room.rows.SubItem(1, 12), "");
  EXPECT_EQ(room.rows.RowCount(), 1);
  EXPECT_TRUE(room.window.log.empty());
}

TEST(ListRows, TheMarkFollowsThePlayingRowAndTouchesNoOther) {
  ListRoom room;
  room.Load({"/a", "/b", "/c"});
  room.settings.FindPlaying = FromBool(true);
  room.settings.PlaylistIndex = 2;
  room.rows.MarkPlaying();
  room.rows.MarkPlaying();
  EXPECT_THAT(room.window.log, ElementsAre("changed 2 2"));
  EXPECT_THAT(room.window.seen, ElementsAre(2));

  room.window.log.clear();
  room.settings.PlaylistIndex = 3;
  room.settings.FindPlaying = 0;
  room.rows.MarkPlaying();
  EXPECT_THAT(room.window.log, ElementsAre("changed 2 2", "changed 3 3"));
  EXPECT_THAT(room.window.seen, ElementsAre(2));

  room.rows.Remove({1});  // the number it remembers goes along
  room.settings.PlaylistIndex = 1;
  room.rows.MarkPlaying();
  EXPECT_TRUE(room.rows.IsMarked(1));
  EXPECT_FALSE(room.rows.IsMarked(2));

  for (const int none : {0, 9}) {
    room.settings.PlaylistIndex = none;
    room.rows.MarkPlaying();
    EXPECT_FALSE(room.rows.IsMarked(1));
    EXPECT_EQ(room.form.MarkedRow, 0);
  }
}

TEST(ListRows, RemovalIsToldGapByGapOrAsANewSet) {
  ListRoom room;
  room.Load(std::vector<std::string>(300, "/a"));
  room.rows.Remove({2, 3, 4, 9, 300});
  EXPECT_THAT(room.window.log, ElementsAre("out 300 300", "out 9 9", "out 2 4"));
  EXPECT_EQ(room.window.count, room.rows.RowCount());

  room.window.log.clear();
  std::vector<int> even;
  for (int row = 2; row <= 200; row += 2) even.push_back(row);
  room.rows.Remove(even);
  EXPECT_THAT(room.window.log, ElementsAre("reset 0 0"));
  EXPECT_EQ(room.rows.RowCount(), 195);
  EXPECT_EQ(room.window.open, 0);
}

TEST(ListRows, OnlyWhatChangesIsToldOfTheSelection) {
  ListRoom room;
  room.Load({"/a", "/b", "/c", "/d"});
  room.rows.SelectAll();
  room.rows.SelectAll();
  room.rows.SelectOnly(3);
  EXPECT_THAT(room.window.log, ElementsAre("selection 1 4", "selection 1 2", "selection 4 4"));
  EXPECT_THAT(room.rows.SelectedRows(), ElementsAre(3));
  room.rows.SelectOnly(0);
  EXPECT_TRUE(room.rows.SelectedRows().empty());
}

TEST(ListRows, FoldedTextsFollowTheCells) {
  ListRoom room;
  room.Load({"/m/ÄB.mp3"});
  EXPECT_EQ(room.rows.Folded(1).Text(1), "äb.mp3");
  MediaDetails details;
  details.title = "Ünd";
  details.extension = "MP3";
  room.rows.SetDetailsOf(1, details);
  EXPECT_EQ(room.rows.SubItem(1, 6), "Ünd");
  EXPECT_EQ(room.rows.Folded(1).Text(6), "ünd");
  EXPECT_EQ(room.rows.Folded(1).Text(11), "mp3");
  room.rows.RemoveDetails();
  EXPECT_EQ(room.rows.Folded(1).Text(6), "");
  EXPECT_EQ(room.rows.SubItem(1, 1), "ÄB.mp3");
}

TEST(ListRows, AWindowThatClosesLeavesNoRowsAndComesBackWhole) {
  ListRoom room;
  room.Load({"/a", "/b"});
  room.rows.Form_Unload();
  room.rows.FillPlaylist("");  // late work of somebody else
  EXPECT_EQ(room.rows.RowCount(), 0);
  room.rows.Form_Load();
  EXPECT_EQ(room.rows.RowCount(), 2);
  EXPECT_EQ(room.rows.Status(), "2 items in list.");
}

}  // namespace
}  // namespace kv
