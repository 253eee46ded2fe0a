#include "playlist/list_order.h"

#include "playlist/list_room.h"
#include "support/temp_folder.h"

#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>

namespace kv {
namespace {

using testing::ElementsAre;
using Strings = std::vector<std::string>;

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
    Strings list;
    std::vector<double> draws;  // in order
    Strings shuffled;
    int index, index_after;
  } rows[] = {
      {{}, {}, {}, 0, 0},
      {{"a"}, {0.99}, {"a"}, 1, 1},
      {{"a", "b", "c", "d"}, {0.9999, 0.9999, 0.9999, 0}, {"d", "c", "b", "a"}, 4, 1},
      // 1 + 0.5 * 3 = 2.5 is 2; 1 + 0.25 * 2 = 1.5 is 2; 1 + 0.5 * 1 = 1.5 is 2
      {{"a", "b", "c", "d"}, {0.5, 0.25, 0.5, 0}, {"b", "c", "d", "a"}, 1, 4},
      {{"a", "a"}, {0.9, 0}, {"a", "a"}, 2, 1},
  };
  for (const auto& row : rows) {
    ListRoom room;
    room.Load(row.list);
    room.settings.PlaylistIndex = row.index;
    room.draws.assign(row.draws.rbegin(), row.draws.rend());
    room.order.RList();
    EXPECT_EQ(room.Items(), row.shuffled);
    EXPECT_EQ(room.settings.PlaylistIndex, row.index_after);
  }
}

TEST(ListOrder, AClosingWindowLosesNothingButWhatIsCleared) {
  ListRoom room;
  room.Load({"a", "b", "c"});
  room.form.Closing = true;
  room.order.RandomizePlaylist();
  room.order.SortPlaylist(-1);
  EXPECT_EQ(room.Items(), (Strings{"a", "b", "c"}));

  room.settings.PlaylistIndex = 2;
  room.order.ClearList();
  EXPECT_EQ(room.list.Count() + room.settings.PlaylistIndex, 0);
  EXPECT_TRUE(room.session.PlaylistDirty);
}

TEST(ListOrder, MovesBlocksByOneAndCarriesThePlayingEntry) {
  const struct {
    int step;
    std::vector<int> selected;
    int index;
    std::string items;
    std::vector<int> selected_after;
    int index_after;
    std::vector<int> seen;
  } rows[] = {
      {1, {3, 4}, 4, "abecdf", {4, 5}, 5, {3}},  {1, {3, 4}, 5, "abecdf", {4, 5}, 3, {3}},
      {1, {2, 6}, 2, "abcdef", {2, 6}, 2, {}},   {1, {1, 3}, 1, "badcef", {2, 4}, 2, {1}},
      {1, {}, 1, "abcdef", {}, 1, {}},           {-1, {3, 4}, 2, "acdbef", {2, 3}, 4, {4}},
      {-1, {2, 6}, 6, "bacdfe", {1, 5}, 5, {6}}, {-1, {1, 4}, 4, "abcdef", {1, 4}, 4, {}},
  };
  for (const auto& row : rows) {
    ListRoom room;
    room.Load({"a", "b", "c", "d", "e", "f"});
    room.Select(row.selected);
    room.settings.PlaylistIndex = row.index;
    if (row.step > 0) {
      room.order.MoveFilesDown();
    } else {
      room.order.MoveFilesUp();
    }
    std::string items;
    for (const std::string& item : room.Items()) items += item;
    EXPECT_EQ(items, row.items);
    EXPECT_EQ(room.Cells(1), room.Items());
    EXPECT_EQ(room.rows.SelectedRows(), row.selected_after);
    EXPECT_EQ(room.settings.PlaylistIndex, row.index_after);
    EXPECT_EQ(room.window.seen, row.seen);
  }
}

TEST(ListOrder, RemovingKeepsThePlayingEntryOrNone) {
  const struct {
    std::vector<int> selected;
    int index;
    std::string items;
    int index_after;
    std::vector<int> selected_after;
  } rows[] = {
      {{2}, 3, "acde", 2, {2}},  // the row that moved up is selected
      {{5}, 3, "abcd", 3, {}},   // none moved up
      {{1, 2, 5}, 4, "cd", 2, {}},     {{1, 3}, 3, "bde", 0, {}},
      {{1, 2, 3, 4, 5}, 2, "", 0, {}}, {{}, 2, "abcde", 2, {}},
  };
  for (const auto& row : rows) {
    ListRoom room;
    room.Load({"a", "b", "c", "d", "e"});
    room.settings.PlaylistIndex = row.index;
    room.rows.MarkPlaying();
    room.Select(row.selected);
    room.order.RemoveSel(false);
    std::string items;
    for (const std::string& item : room.Items()) items += item;
    EXPECT_EQ(items, row.items);
    EXPECT_EQ(room.Cells(1), room.Items());
    EXPECT_EQ(room.settings.PlaylistIndex, row.index_after);
    EXPECT_EQ(room.rows.IsMarked(row.index_after), row.index_after > 0);
    EXPECT_EQ(room.rows.SelectedRows(), row.selected_after);
    EXPECT_EQ(room.rows.Status(), std::to_string(row.items.size()) + " items in list.");
    EXPECT_EQ(room.locks, 0);
  }
}

class Disk : public ListRoom {
 public:
  Disk() {
    Strings paths;
    for (const char* name : {"a", "b", "c"}) {
      paths.push_back(folder.Path(name));
      std::ofstream(paths.back()) << name;
    }
    paths.push_back(folder.Path(""));  // a folder is no medium and stays
    paths.push_back("http://h/x");
    Load(paths);
    Select({1, 2, 3, 4, 5});
  }
  std::set<std::string> Trashed() const {
    std::set<std::string> names;
    for (const auto& entry : services.trashed)
      names.insert(entry.path.substr(entry.path.size() - 1));
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
  EXPECT_EQ(disk.Trashed(), (std::set<std::string>{"a", "b", "c"}));
  EXPECT_FALSE(disk.services.trashed[0].confirm);
  EXPECT_EQ(disk.list.Count(), 0);
  EXPECT_EQ(disk.rows.RowCount(), 0);
}

TEST(ListOrder, WhatTheUserDoesDuringALongDeletionChangesNothingOfIt) {
  const struct {
    std::function<void(Disk&)> meanwhile;  // behind the first file
    std::set<std::string> trashed;
    int left;
  } rows[] = {
      {[](Disk& disk) { disk.rows.SelectOnly(0); }, {"a", "b"}, 3},
      {[](Disk& disk) { disk.rows.SelectAll(); }, {"a", "b"}, 3},
      {[](Disk& disk) { disk.order.RList(); }, {"a", "b"}, 3},
      {[](Disk& disk) { disk.order.RemoveSel(true); }, {"a", "b"}, 3},
      {[](Disk& disk) { disk.form.Closing = true; }, {"a"}, 4},
      {[](Disk& disk) { disk.rows.FillPlaylist(""); }, {"a"}, 4},
      {[](Disk& disk) { disk.order.ClearList(); }, {"a"}, 0},
      {[](Disk& disk) { disk.list.Remove(1); }, {"a"}, 2},  // the rows do not know
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
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
