// The rows of the list, and what orders, moves and removes them.
#include "playlist/list_rows.h"

#include "playlist/list_order.h"
#include "playlist/list_room.h"

namespace kv {
namespace {

using Strings = std::vector<std::string>;

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
  room.Arrange("a");
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
  EXPECT_EQ(room.Arranged(), "a");
  EXPECT_EQ(room.rows.SubItem(1, 12), "");
  EXPECT_EQ(room.rows.RowCount(), 1);
}

TEST(ListRows, TheMarkFollowsThePlayingRowAndTouchesNoOther) {
  ListRoom room;
  room.Arrange("ab!c");
  room.settings.FindPlaying = FromBool(true);
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

TEST(ListOrder, SortsByNameInAnyCaseAndKeepsThePlayingCopy) {
  ListRoom room;
  room.Load({"/x/b", "/z/Ä", "/x/B", "/a/ä", "/y/a"});
  room.settings.PlaylistIndex = 3;
  room.settings.PlaylistShowDetails = FromBool(true);
  room.order.SList();
  EXPECT_TRUE(room.loader.Running());  // the new rows are empty and load again
  EXPECT_EQ(room.Items(), (Strings{"/y/a", "/x/b", "/x/B", "/z/Ä", "/a/ä"}));
  EXPECT_EQ(room.Cells(1), (Strings{"a", "b", "B", "Ä", "ä"}));
  EXPECT_EQ(room.settings.PlaylistIndex, 3);
  EXPECT_TRUE(room.session.PlaylistDirty);
  EXPECT_THAT(room.window.status, ElementsAre("Sorting list...", "Sorting...", "5 items in list."));
  EXPECT_EQ(room.busy, 0);
}

TEST(ListOrder, PicksRoundHalvesToTheEvenNumber) {
  const struct {
    const char* list;
    std::vector<double> draws;  // in order
    const char* shuffled;
  } rows[] = {
      {"", {}, ""},
      {"a!", {0.99}, "a!"},
      {"abcd!", {0.9999, 0.9999, 0.9999, 0}, "d!cba"},
      // 1 + 0.5 * 3 = 2.5 is 2; 1 + 0.25 * 2 = 1.5 is 2; 1 + 0.5 * 1 = 1.5 is 2
      {"a!bcd", {0.5, 0.25, 0.5, 0}, "bcda!"},
      {"aa!", {0.9, 0}, "a!a"},
  };
  for (const auto& row : rows) {
    ListRoom room;
    room.Arrange(row.list);
    room.draws.assign(row.draws.rbegin(), row.draws.rend());
    room.order.RList();
    EXPECT_EQ(room.Arranged(), row.shuffled) << row.list;
  }
}

TEST(ListOrder, AClosingWindowLosesNothingButWhatIsCleared) {
  ListRoom room;
  room.Arrange("ab!c");
  room.form.Closing = true;
  room.order.RandomizePlaylist();
  room.order.SortPlaylist(-1);
  EXPECT_EQ(room.Arranged(), "ab!c");
  room.order.ClearList();
  EXPECT_EQ(room.list.Count() + room.settings.PlaylistIndex, 0);
  EXPECT_TRUE(room.session.PlaylistDirty);
}

TEST(ListOrder, MovesBlocksByOneAndCarriesThePlayingEntry) {
  const auto down = &ListOrder::MoveFilesDown, up = &ListOrder::MoveFilesUp;
  const struct {
    void (ListOrder::*move)();
    const char *before, *after;
    std::vector<int> seen;
  } rows[] = {{down, "abc*d*!ef", "abec*d*!f", {3}}, {down, "abc*d*e!f", "abe!c*d*f", {3}},
              {down, "ab*!cdef*", "ab*!cdef*", {}},  {down, "a*!bc*def", "ba*!dc*ef", {1}},
              {down, "a!bcdef", "a!bcdef", {}},      {up, "ab!c*d*ef", "ac*d*b!ef", {4}},
              {up, "ab*cdef*!", "b*acdf*!e", {6}},   {up, "a*bcd*!ef", "a*bcd*!ef", {}}};
  for (const auto& row : rows) {
    ListRoom room;
    room.Arrange(row.before);
    (room.order.*row.move)();
    EXPECT_EQ(room.Arranged(), row.after) << row.before;
    EXPECT_EQ(room.Cells(1), room.Items());
    EXPECT_EQ(room.window.seen, row.seen) << row.before;
  }
}

TEST(ListOrder, RemovingKeepsThePlayingEntryOrNone) {
  const std::pair<const char*, const char*> rows[] = {
      {"ab*c!de", "ac*!de"},  // the row that moved up is selected
      {"abc!de*", "abc!d"},   // none moved up
      {"a*b*cd!e*", "cd!"},  {"a*bc*!de", "bde"}, {"a*b*!c*d*e*", ""}, {"ab!cde", "ab!cde"}};
  for (const auto& [before, after] : rows) {
    ListRoom room;
    room.Arrange(before);
    room.rows.MarkPlaying();
    room.order.RemoveSel(false);
    EXPECT_EQ(room.Arranged(), after) << before;
    EXPECT_EQ(room.Cells(1), room.Items());
    const int playing = room.settings.PlaylistIndex;
    EXPECT_EQ(room.rows.IsMarked(playing), playing > 0) << before;
    EXPECT_EQ(room.rows.Status(), std::to_string(room.list.Count()) + " items in list.");
    EXPECT_EQ(room.locks, 0);
  }
}

struct Disk : ListRoom {
  Disk() {
    Strings paths = {"http://h/x", folder.Path()};  // a folder is no medium and stays
    for (const char* name : {"c", "b", "a"}) paths.insert(paths.begin(), folder.Write(name, ""));
    Load(paths);
    Select({1, 2, 3, 4, 5});
  }
  std::string Trashed() const {
    std::string names;
    for (const auto& entry : services.trashed) names += entry.path.back();
    return names;
  }

  TempFolder folder;
};

TEST(ListOrder, DeletingFromDiskAsksOnceAndTrashesFilesAlone) {
  Disk disk;
  disk.dialogs.WillAnswer(BoxAnswer::kCancel);
  disk.order.DelSel();
  EXPECT_EQ(disk.list.Count(), 5);
  disk.services.trash_result = 1;  // refused, and yet the rows go
  disk.dialogs.WillAnswer(BoxAnswer::kOk);
  disk.order.DelSel();
  EXPECT_EQ(disk.dialogs.Boxes()[0].title, "DELETE FROM DISK?");
  EXPECT_EQ(disk.Trashed(), "abc");
  EXPECT_FALSE(disk.services.trashed[0].confirm);
  EXPECT_EQ(disk.list.Count() + disk.rows.RowCount(), 0);
}

TEST(ListOrder, WhatTheUserDoesDuringALongDeletionChangesNothingOfIt) {
  const struct {
    const char* what;
    std::function<void(Disk&)> meanwhile;  // behind the first file
    const char* trashed;
    int left;
  } rows[] = {
      {"selects", [](Disk& disk) { disk.rows.SelectAll(); }, "ab", 3},
      {"shuffles", [](Disk& disk) { disk.order.RList(); }, "ab", 3},
      {"deletes", [](Disk& disk) { disk.order.RemoveSel(true); }, "ab", 3},
      {"closes", [](Disk& disk) { disk.form.Closing = true; }, "a", 4},
      {"has the rows made anew", [](Disk& disk) { disk.rows.FillPlaylist(""); }, "a", 4},
      {"clears", [](Disk& disk) { disk.order.ClearList(); }, "a", 0},
      {"an item the rows keep", [](Disk& disk) { disk.list.Remove(1); }, "a", 2},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    Disk disk;
    disk.Select({1, 2});
    disk.pump.Post([&] { row.meanwhile(disk); });
    disk.order.RemoveSel(true);
    EXPECT_EQ(disk.Trashed(), row.trashed);
    EXPECT_EQ(disk.list.Count(), row.left);
    EXPECT_FALSE(disk.order.Working());
    EXPECT_EQ(disk.busy, 0);
  }
}

}  // namespace
}  // namespace kv
