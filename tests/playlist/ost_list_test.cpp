// The list behind the playlist: bounds, removal by number and by text, the odd rule of the marks.
#include "playlist/ost_list.h"

#include "support/fake_text_platform.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace kv {
namespace {

using testing::ElementsAre;

class OSTListTest : public testing::Test {
 protected:
  std::vector<std::string> Items() const {
    std::vector<std::string> items;
    for (int i = 1; i <= list.Count(); ++i) {
      items.push_back(list.Item(i) + list.ItemData1(i) + list.ItemData2(i) + list.ItemData3(i) +
                      (list.ItemPicture(i) != nullptr ? "+" : "") +
                      (list.ItemMarkDelete(i) ? "!" : ""));
    }
    return items;
  }

  FakeTextPlatform text;
  OSTList list{text};
};

TEST_F(OSTListTest, IndexesOutsideReadEmptyAndWriteNothing) {
  list.add("a", "1", "2", "3", std::make_shared<int>(1));
  for (const int index : {-1, 0, 2}) {
    EXPECT_EQ(list.Item(index) + list.ItemData1(index) + list.ItemData3(index), "");
    EXPECT_EQ(list.ItemPicture(index), nullptr);
    list.SetItem(index, "x");
    list.SetItemData2(index, "x");
    list.SetItemPicture(index, nullptr);
    list.SetItemMarkDelete(index, true);
    EXPECT_FALSE(list.ItemMarkDelete(index));
    list.Remove(index);
  }
  EXPECT_THAT(Items(), ElementsAre("a123+"));
  list.SetItemData2(1, "two");
  EXPECT_THAT(Items(), ElementsAre("a1two3+"));
  list.Clear();
  EXPECT_EQ(list.Count(), 0);
}

TEST_F(OSTListTest, RemovesByNumberOrText) {
  const struct {
    OSTList::Key key;
    std::string removed;  // what is missing afterwards
    OSTList::Key key_after;
  } cases[] = {
      {2, "B.mp3", 2},
      {0, "", 0},
      {9, "", 9},
      {std::string("3"), "3", std::string("3")},
      {std::string(" +1.0 "), "A.mp3", std::string(" +1.0 ")},
      {std::string("2.5"), "B.mp3", std::string("2.5")},
      {std::string("3.5"), "\xC3\x84.ogg", std::string("3.5")},
      {std::string("-1"), "", std::string("-1")},
      {std::string("1e999"), "", std::string("1e999")},
      {std::string("99999999999"), "", std::string("99999999999")},
      {std::string("b.MP3"), "B.mp3", 2},
      {std::string("\xC3\xA4.OGG"), "\xC3\x84.ogg", 4},
      {std::string("nowhere"), "", std::string("nowhere")},
      {std::string("inf"), "", std::string("inf")},
      {std::string(), "", std::string()},
  };
  for (const auto& c : cases) {
    list.Clear();
    std::vector<std::string> expected = {"A.mp3", "B.mp3", "3", "\xC3\x84.ogg", "b.mp3"};
    for (const std::string& item : expected) list.add(item);
    if (const auto at = std::find(expected.begin(), expected.end(), c.removed);
        at != expected.end()) {
      expected.erase(at);
    }
    OSTList::Key key = c.key;
    list.Remove(key);
    EXPECT_EQ(Items(), expected) << testing::PrintToString(c.key);
    EXPECT_EQ(key, c.key_after);
  }
}

TEST_F(OSTListTest, MovesTakeTheMarkAlongAndLoseTheNeighbours) {
  const auto fill = [this](bool first, bool second) {
    list.Clear();
    list.add("a", "1");
    list.add("b");
    list.SetItemMarkDelete(1, first);
    list.SetItemMarkDelete(2, second);
  };
  fill(false, true);
  list.MoveItemDown(1);
  EXPECT_THAT(Items(), ElementsAre("b", "a1"));
  fill(true, true);
  list.MoveItemDown(1);
  EXPECT_THAT(Items(), ElementsAre("b", "a1!"));
  fill(true, false);
  list.MoveItemUp(2);
  EXPECT_THAT(Items(), ElementsAre("b", "a1"));
  fill(false, true);
  for (const int index : {-1, 0, 2, 3}) list.MoveItemDown(index);
  for (const int index : {-1, 0, 1, 3}) list.MoveItemUp(index);
  EXPECT_THAT(Items(), ElementsAre("a1", "b!"));
}

}  // namespace
}  // namespace kv
