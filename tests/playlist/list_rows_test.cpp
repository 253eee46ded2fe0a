#include "playlist/list_rows.h"

#include "playlist/list_room.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kv {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

TEST(ListRows, AnAppendedUrlShowsItsLastPartARebuiltOneTheWhole) {
  ListRoom room;
  room.Load({"/m/\xff.avi"});
  room.list.add("http://h/live");
  room.rows.FillPlaylist("http://h/live");
  EXPECT_THAT(room.Cells(1), ElementsAre("\xff.avi", "live"));
  EXPECT_EQ(room.rows.Icon(1), RowIcon::kOtherMedia);
  EXPECT_EQ(room.rows.Icon(2), RowIcon::kInternet);

  room.rows.FillPlaylist("");
  EXPECT_THAT(room.Cells(1), ElementsAre("\xff.avi", "http://h/live"));

  for (const char* const secret : {"http://me:pw@h", "http://me:pw@h/live"}) {
    room.Load({secret});
    room.rows.FillPlaylist("");
    EXPECT_THAT(std::string(room.rows.SubItem(1, 1)), Not(HasSubstr("pw"))) << secret;
  }
}

TEST(ListRows, NumbersOutsideTheRowsAndTheListAreHarmless) {
  ListRoom room;
  room.Load({"/a"});
  for (const int row : {-1, 0, 2}) {
    EXPECT_EQ(room.rows.SubItem(row, 1), "");
    EXPECT_EQ(room.rows.Folded(row).Text(1), "");
    room.rows.Select(row, true);
    room.rows.SetDetailsOf(row, {});
    room.rows.Remove({row});
    EXPECT_EQ(room.list.Item(row) + room.list.ItemData1(row), "");
    room.list.SetItem(row, "x");
    room.list.MoveItemDown(row);
    room.list.MoveItemUp(row);
    room.list.Remove(row);
  }
  EXPECT_EQ(room.Items(), std::vector<std::string>{"/a"});
  EXPECT_EQ(room.rows.SubItem(1, 12), "");
  EXPECT_EQ(room.rows.RowCount(), 1);
}

TEST(ListRows, TheMarkFollowsThePlayingRowAndTouchesNoOther) {
  ListRoom room;
  room.Load({"/a", "/b", "/c"});
  room.settings.FindPlaying = FromBool(true);
  room.settings.PlaylistIndex = 2;
  room.rows.MarkPlaying();
  room.rows.MarkPlaying();
  EXPECT_THAT(room.window.changed, ElementsAre(2));
  EXPECT_THAT(room.window.seen, ElementsAre(2));
  room.rows.Remove({1});  // the number it remembers goes along
  for (const int playing : {2, 0, 9}) {
    room.settings.PlaylistIndex = playing;
    room.rows.MarkPlaying();
    EXPECT_FALSE(room.rows.IsMarked(1));
    EXPECT_EQ(room.rows.IsMarked(2), playing == 2);
  }
}

}  // namespace
}  // namespace kv
