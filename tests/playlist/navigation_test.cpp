// Steps through a list whose files partly exist, on virtual time.
#include "playlist/navigation.h"

#include "playlist/playlist_test.h"

#include <cstddef>
#include <memory>

namespace kv {
namespace {

struct NavigationTest : testing::Test, NavigationHost {
  bool EngineRunning() override { return running; }
  void OpenFile(const std::string& path, bool start_playing) override {
    calls.push_back((start_playing ? "play " : "load ") + ShortName(path));
    if (while_opening) while_opening();
  }
  void PressStop() override { calls.emplace_back("stop"); }
  void UpdateFileDisp(const std::string& name) override { calls.push_back("name" + name); }
  void UpdateFileDataDisplay() override { calls.push_back("data " + Current()); }

  // A list of one letter each: 'x' a file, 'u' a URL, '-' a file that is gone.
  void Fill(const std::string& kinds, int index, bool playing_from_playlist) {
    list.Clear();
    for (std::size_t i = 0; i < kinds.size(); ++i) {
      const std::string name = std::to_string(i + 1);
      if (kinds[i] == 'u') {
        list.add("http://host/" + name);
      } else {
        list.add(kinds[i] == 'x' ? temp.Write(name, "") : temp.Path("gone" + name));
      }
    }
    settings.PlaylistIndex = index;
    settings.PlayingFromPlaylist = FromBool(playing_from_playlist);
    settings.CurrentFile = "before";
    calls.clear();
  }

  static std::string ShortName(const std::string& path) { return path.substr(path.rfind('/') + 1); }
  std::string Current() const { return ShortName(settings.CurrentFile); }

  // What the boxes from that number on named, first to last.
  std::vector<std::string> Told(std::size_t from = 0) const {
    std::vector<std::string> names;
    const std::string intro = "Error! Unable to load file:\n\"";
    for (; from < dialogs.Boxes().size(); ++from) {
      const std::string& box = dialogs.Boxes()[from].text;
      EXPECT_TRUE(box.starts_with(intro) && box.ends_with('"')) << box;
      names.push_back(ShortName(box.substr(0, box.size() - 1)));
    }
    return names;
  }

  TempFolder temp;
  FakeTextPlatform text;
  OSTList list{text};
  Settings settings;
  Session session;
  ScriptedDialogs dialogs;
  VirtualTime time;
  bool running = true;
  std::function<void()> while_opening;
  std::vector<std::string> calls;
  std::unique_ptr<Timer> timer =
      time.MakeTimer(TimerKind::kHighResolution, 500, [this] { navigation.OnPlayFromPlaylist(); });
  Navigation navigation{list, settings, session, dialogs, *timer, *this};
};

enum class Move { kNext, kLast, kPrevious, kFirst };

struct Step {
  const char *what, *kinds;
  int index;
  bool from_list;
  Move move;
  int index_after;
  const char* current_after;  // "before": nothing was selected, and nothing opens
  std::vector<std::string> told = {};
};

TEST_F(NavigationTest, StepsShowTheirEntryAtOnceAndOpenItLater) {
  using enum Move;
  const Step steps[] = {
      {"next in an empty list", "", 0, false, kNext, 0, "before"},
      {"previous in an empty list", "", 2, false, kPrevious, 2, "before"},
      {"next", "xxx", 1, true, kNext, 2, "2"},
      {"next at the end does not wrap", "xxx", 3, true, kNext, 3, "before"},
      {"next beyond the end", "xxx", 2147483647, true, kNext, 2147483647, "before"},
      {"next from below 0 is next from 0", "xxx", -2147483648, false, kNext, 1, "1"},
      {"last", "xxx", 1, true, kLast, 3, "3"},
      {"previous", "xxx", 3, true, kPrevious, 2, "2"},
      {"previous at the start does not wrap", "xxx", 1, true, kPrevious, 1, "before"},
      {"previous from far beyond the end", "xxx", 2147483647, true, kPrevious, 3, "3"},
      {"first", "xxx", 3, true, kFirst, 1, "1"},
      {"after a foreign file next returns", "xxx", 2, false, kNext, 2, "2"},
      {"after a foreign file previous returns", "xxx", 2, false, kPrevious, 2, "2"},
      {"back past missing files", "ux--x", 5, true, kPrevious, 2, "2"},
      {"back past missing files to none", "--x", 3, true, kPrevious, 1, "before"},
      {"a URL is taken to be there", "xu", 1, true, kNext, 2, "2"},
      // What is missing ahead is told backwards, and the player stops.
      {"one is missing", "x-x", 1, true, kNext, 1, "3", {"3"}},
      {"two are missing", "x--x", 1, true, kNext, 1, "4", {"4", "gone2"}},
      {"all are missing", "x---", 1, true, kNext, 1, "before", {"gone4", "gone3", "gone2"}},
      {"the entry returned to is missing", "x-x", 2, false, kNext, 2, "3", {"3"}},
      {"missing from the start", "--x", 0, false, kNext, 0, "3", {"3", "gone1"}},
  };
  for (const Step& step : steps) {
    SCOPED_TRACE(step.what);
    const std::size_t boxes = dialogs.Boxes().size();
    Fill(step.kinds, step.index, step.from_list);
    if (step.move == kNext || step.move == kLast) {
      navigation.PlaylistSetNext(step.move == kLast, -1, true);
    } else {
      navigation.PlaylistSetPrevious(step.move == kFirst, true);
    }
    EXPECT_EQ(Told(boxes), step.told);
    EXPECT_EQ(settings.PlaylistIndex, step.index_after);
    EXPECT_EQ(IsOn(settings.PlayingFromPlaylist), !std::string(step.kinds).empty());
    EXPECT_EQ(Current(), step.current_after);
    std::vector<std::string> expected(step.told.size(), "stop");
    const bool opens = Current() != "before";
    if (opens) expected.insert(expected.begin(), {"name", "data " + Current()});
    time.Advance(9);
    EXPECT_EQ(calls, expected);
    EXPECT_EQ(timer->Enabled(), opens);
    time.Advance(1);
    const std::string stands = list.Item(step.index_after);
    if (opens && !stands.empty()) expected.push_back("play " + ShortName(stands));
    EXPECT_EQ(calls, expected);
    EXPECT_FALSE(timer->Enabled());
  }
}

TEST_F(NavigationTest, AJumpTakesWhatIsInTheListUnseen) {
  Fill("xx-", 1, false);
  navigation.PlaylistSetNext(true, 4, true);
  EXPECT_THAT(calls, IsEmpty());
  EXPECT_EQ(settings.PlaylistIndex, 1);
  navigation.PlaylistSetNext(true, 3, false);
  EXPECT_EQ(settings.PlaylistIndex, 3);
  EXPECT_THAT(calls, ElementsAre("name", "data gone3"));
  time.Advance(499);
  EXPECT_EQ(calls.size(), 2U);
  running = false;
  time.Advance(1);
  EXPECT_EQ(calls.back(), "load gone3");
}

TEST_F(NavigationTest, QuickStepsOpenOnceAndWhatWasRemovedMeanwhileNever) {
  Fill("xxx", 1, true);
  navigation.PlaylistSetNext(false, -1, false);
  time.Advance(100);
  navigation.PlaylistSetNext(false, -1, false);
  running = false;  // the state counts when it opens
  time.Advance(5000);
  EXPECT_THAT(calls, ElementsAre("name", "data 2", "name", "data 3", "load 3"));

  Fill("xx", 1, true);
  navigation.PlaylistSetNext(false, -1, true);
  list.Clear();
  time.Advance(1000);
  EXPECT_THAT(calls, ElementsAre("name", "data 2"));
  EXPECT_FALSE(timer->Enabled());
}

TEST_F(NavigationTest, WhatWasFoundMayOpenWhileTheBoxIsUpAndIsStoppedAfterIt) {
  Fill("x-x", 1, true);
  dialogs.WhileOpen([this] { time.Advance(10); });
  navigation.PlaylistSetNext(false, -1, false);
  EXPECT_THAT(calls, ElementsAre("name", "data 3", "play 3", "stop"));
  EXPECT_EQ(settings.PlaylistIndex, 1);
}

TEST_F(NavigationTest, NothingMoreIsToldOnceTheProgramEnds) {
  Fill("x---x", 1, true);
  dialogs.WhileOpen([this] {
    session.Unloading = true;
    list.Clear();
  });
  navigation.PlaylistSetNext(false, -1, true);
  EXPECT_EQ(dialogs.Boxes().size(), 1U);
  EXPECT_THAT(calls, ElementsAre("name", "data 5"));
  time.Advance(1000);
  EXPECT_EQ(calls.size(), 2U);
}

TEST_F(NavigationTest, AListOfMissingFilesNeedsNoStack) {
  const int count = kPlaylistLimit;
  Fill("x" + std::string(static_cast<std::size_t>(count - 1), '-'), 1, true);
  navigation.PlaylistSetNext(false, -1, true);
  EXPECT_EQ(dialogs.Boxes().size(), static_cast<std::size_t>(count - 1));
  EXPECT_EQ(Told().back(), "gone2");
  EXPECT_EQ(settings.PlaylistIndex, 1);
  settings.PlaylistIndex = count;
  navigation.PlaylistSetPrevious(false, true);
  EXPECT_EQ(settings.PlaylistIndex, 1);
  EXPECT_EQ(Current(), "1");
}

TEST_F(NavigationTest, ADoubleClickPlaysAtOnce) {
  Fill("xx-", 1, false);
  running = false;
  navigation.PlayPlaylistFile(4);
  EXPECT_THAT(dialogs.Boxes(), IsEmpty());
  navigation.PlayPlaylistFile(3);
  EXPECT_THAT(Told(), ElementsAre("gone3"));
  EXPECT_EQ(settings.PlaylistIndex, 1);
  EXPECT_THAT(calls, IsEmpty());

  // Neither a step that waits nor a change of the list meanwhile comes between.
  navigation.PlaylistSetNext(false, -1, true);
  calls.clear();
  while_opening = [this] {
    list.Clear();
    time.Advance(1000);
  };
  navigation.PlayPlaylistFile(2);
  EXPECT_THAT(calls, ElementsAre("name", "data 2", "play 2"));
  EXPECT_EQ(settings.PlaylistIndex, 2);
  EXPECT_EQ(settings.PlayingFromPlaylist, -1);
}

}  // namespace
}  // namespace kv
