#include "playlist/list_search.h"

#include "playlist/list_room.h"
#include "playlist/quick_search.h"
#include "playlist/wildcard.h"

namespace kv {
namespace {

TEST(LikePattern, KnowsTheWildcardsAndNothingElse) {
  const struct {
    const char* pattern;
    std::vector<const char*> matches, others;
  } rows[] = {
      {"", {""}, {"a"}},
      {"abc", {"abc"}, {"xabc", "abcx", "ab", ""}},
      {"a*b*c", {"abc", "axbbxc", "abcbc"}, {"ab", "acb"}},
      {"???", {"aäb", "\xe4\xf6\xfc"}, {"ä"}},
      {"##", {"07"}, {"7", "a7", "٣٣"}},
      {"[a-cx]", {"b", "x"}, {"d", "-"}},
      {"[!a-c]", {"d", "ä"}, {"b", ""}},
      {"[-a]", {"-", "a"}, {"b"}},
      {"[*][?][#][[]", {"*?#["}, {"abc["}},
      {"a[]b", {"ab"}, {"a[]b"}},
      {"[", {}, {"[", ""}},
      {"[z-a]", {}, {"m", "z"}},
  };
  for (const auto& row : rows) {
    for (const char* text : row.matches)
      EXPECT_TRUE(LikePattern(row.pattern).Matches(text)) << row.pattern << " : " << text;
    for (const char* text : row.others)
      EXPECT_FALSE(LikePattern(row.pattern).Matches(text)) << row.pattern << " : " << text;
  }
}

TEST(LikePattern, ManyStarsDoNotBlowUp) {
  std::string pattern;
  for (int i = 0; i < 200; ++i) pattern += "*a?";
  EXPECT_FALSE(LikePattern(pattern + "b").Matches(std::string(20000, 'a')));
  EXPECT_TRUE(LikePattern(pattern + "*b").Matches(std::string(20000, 'a') + "b"));
}

struct Finding : ListRoom, FindHost {
  Finding() {
    Load({"/m/One.mp3", "/m/two.mp3", "/m/ONE", "/m/b"});
    MediaDetails details;
    details.artist = "Bär";
    rows.SetDetailsOf(4, details);
  }

  void ShowSearchDialog() override {
    ++shown;
    if (keyword.empty()) return search.Cancel();
    search.Search(keyword, fields);
  }
  void ShowSearchVis() override {}
  void UnloadSearchVis() override {}

  // Answers the row found, 0 none.
  int Find(bool continue_search) {
    rows.SelectOnly(0);
    search.Find(continue_search);
    const std::vector<int> selected = rows.SelectedRows();
    return selected.empty() ? 0 : selected[0];
  }

  std::string keyword;
  SearchColumns fields{true};
  int shown = 0;
  ListSearch search{rows, form, text, dialogs, pump, *this};
};

TEST(ListSearch, GoesOnFromMatchToMatchAndFromTheClickedRow) {
  Finding room;
  EXPECT_EQ(room.Find(true), 0);  // nothing searched before: the dialog, cancelled
  EXPECT_EQ(room.shown, 1);
  EXPECT_TRUE(room.dialogs.Boxes().empty());

  room.keyword = "one*";
  EXPECT_EQ(room.Find(false), 1);
  EXPECT_EQ(room.Find(true), 3);
  EXPECT_EQ(room.window.seen, (std::vector<int>{1, 3}));
  EXPECT_EQ(room.Find(true), 0);
  EXPECT_EQ(room.dialogs.LastText(),
            "Reached end of list.\nPress CTRL+F, To search from the beginning of the list.");
  EXPECT_EQ(room.form.SearchRow, 4);
  room.rows.ItemClick(1);
  EXPECT_EQ(room.Find(true), 3);
  EXPECT_EQ(room.shown, 2);

  room.keyword = "one";  // a whole cell
  EXPECT_EQ(room.Find(false), 3);
  room.keyword = "on[";
  EXPECT_EQ(room.Find(false), 0);
  EXPECT_EQ(room.dialogs.LastText(), "Not found!");
  EXPECT_EQ(room.form.SearchRow, 1);
}

TEST(ListSearch, LooksAtTheChosenColumnsOfTheRowsThatAreLeft) {
  Finding room;
  room.keyword = "BÄR";
  EXPECT_EQ(room.Find(false), 0);
  room.fields = {};
  room.fields[3] = true;  // the artist
  EXPECT_EQ(room.Find(false), 4);
  room.pump.Post([&] { room.order.ClearList(); });
  EXPECT_EQ(room.Find(false), 0);
}

struct QuickSearching : ListRoom, QuickSearchHost {
  void PlaylistSetNext(int /*index*/) override {}
  QuickSearch search{list, rows, settings, session, text, *this};
};

TEST(QuickSearch, SeesPathsOrAllCellsByTheWindow) {
  QuickSearching room;
  room.Load({"/Music/Äpfel.mp3", "http://h/b", "/Music/c"});
  room.search.Text1_Change("*MUSIC/ä*");
  EXPECT_THAT(room.search.Lines(), ElementsAre("001 : /Music/Äpfel.mp3"));
  room.list.Remove(1);  // what was folded belongs to another item now
  room.search.Text1_Change("*/[bc]");
  EXPECT_THAT(room.search.Lines(), ElementsAre("001 : http://h/b", "002 : /Music/c"));

  room.session.PlaylistWindowLoaded = true;
  room.rows.FillPlaylist("");
  MediaDetails details;
  details.title = "Song";
  details.time = "00:01:00";
  room.rows.SetDetailsOf(2, details);
  room.search.Text1_Change("s?NG");
  EXPECT_THAT(room.search.Lines(), ElementsAre("002 : c (Song:00:01:00)"));
  room.search.Text1_Change("");
  EXPECT_TRUE(room.search.Lines().empty());
}

}  // namespace
}  // namespace kv
