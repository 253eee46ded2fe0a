// Steps through a list whose files partly exist, on virtual time.
#include "playlist/navigation.h"

#include "support/fake_text_platform.h"
#include "support/scripted_dialogs.h"
#include "support/temp_folder.h"
#include "support/virtual_time.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace kv {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NavigationTest : public testing::Test, protected NavigationHost {
 protected:
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

  // What the boxes named, first to last.
  std::vector<std::string> Told() const {
    std::vector<std::string> names;
    const std::string intro = "Error! Unable to load file:\n\"";
    for (const MessageBoxRequest& box : dialogs.Boxes()) {
      EXPECT_EQ(box.icon, BoxIcon::kStop);
      EXPECT_EQ(box.text.substr(0, intro.size()), intro);
      EXPECT_EQ(box.text.back(), '"');
      names.push_back(ShortName(box.text.substr(0, box.text.size() - 1)));
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

struct Step {
  const char* what;
  const char* kinds;
  int index;
  bool from_list;
  enum { kNext, kLast, kPrevious, kFirst } move;
  int index_after;
  const char* current_after;  // "before": nothing was selected, and nothing opens
};

// None of these meets a missing file going forward.
constexpr Step kSteps[] = {
    {"next", "xxx", 1, true, Step::kNext, 2, "2"},
    {"next at the end does not wrap", "xxx", 3, true, Step::kNext, 3, "before"},
    {"next beyond the end", "xxx", 2147483647, true, Step::kNext, 2147483647, "before"},
    {"next from below 0 is next from 0", "xxx", -2147483648, false, Step::kNext, 1, "1"},
    {"last", "xxx", 1, true, Step::kLast, 3, "3"},
    {"previous", "xxx", 3, true, Step::kPrevious, 2, "2"},
    {"previous at the start does not wrap", "xxx", 1, true, Step::kPrevious, 1, "before"},
    {"previous from far beyond the end", "xxx", 2147483647, true, Step::kPrevious, 3, "3"},
    {"first", "xxx", 3, true, Step::kFirst, 1, "1"},
    {"after a foreign file next returns", "xxx", 2, false, Step::kNext, 2, "2"},
    {"after a foreign file previous returns", "xxx", 2, false, Step::kPrevious, 2, "2"},
    {"after a foreign file next from nothing", "xxx", 0, false, Step::kNext, 1, "1"},
    {"back past missing files", "ux--x", 5, true, Step::kPrevious, 2, "2"},
    {"back past missing files to none", "--x", 3, true, Step::kPrevious, 1, "before"},
    {"first is missing", "-x", 2, true, Step::kFirst, 1, "before"},
    {"a URL is taken to be there", "xu", 1, true, Step::kNext, 2, "2"},
};

TEST_F(NavigationTest, StepsShowTheirEntryAtOnceAndOpenItLater) {
  for (const Step& step : kSteps) {
    SCOPED_TRACE(step.what);
    Fill(step.kinds, step.index, step.from_list);
    switch (step.move) {
      case Step::kNext:
      case Step::kLast:
        navigation.PlaylistSetNext(step.move == Step::kLast, -1, true);
        break;
      default:
        navigation.PlaylistSetPrevious(step.move == Step::kFirst, true);
    }
    EXPECT_EQ(settings.PlaylistIndex, step.index_after);
    EXPECT_EQ(settings.PlayingFromPlaylist, -1);
    const std::string current = step.current_after;
    EXPECT_EQ(Current(), current);
    time.Advance(9);
    if (current == "before") {
      EXPECT_THAT(calls, IsEmpty());
      EXPECT_FALSE(timer->Enabled());
      continue;
    }
    EXPECT_THAT(calls, ElementsAre("name", "data " + current));
    time.Advance(1);
    EXPECT_EQ(calls.back(), "play " + current);
    EXPECT_FALSE(timer->Enabled());
  }
  EXPECT_THAT(dialogs.Boxes(), IsEmpty());
}

TEST_F(NavigationTest, AnEmptyListIsLeftAlone) {
  Fill("", 0, false);
  navigation.PlaylistSetNext(false, -1, true);
  navigation.PlaylistSetNext(true, -1, true);
  navigation.PlaylistSetPrevious(false, true);
  EXPECT_EQ(settings.PlayingFromPlaylist, 0);
  EXPECT_EQ(settings.PlaylistIndex, 0);
  EXPECT_THAT(calls, IsEmpty());
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

TEST_F(NavigationTest, QuickStepsOpenOnceAndTheStateCountsWhenItOpens) {
  Fill("xxx", 1, true);
  navigation.PlaylistSetNext(false, -1, false);
  time.Advance(100);
  navigation.PlaylistSetNext(false, -1, false);
  running = false;
  time.Advance(5000);
  EXPECT_THAT(calls, ElementsAre("name", "data 2", "name", "data 3", "load 3"));
}

TEST_F(NavigationTest, MissingFilesAheadAreToldBackwardsAndThePlayerStops) {
  const struct {
    const char* kinds;
    int index;
    bool from_list;
    std::vector<std::string> told;
    const char* current_after;
  } skips[] = {
      {"x-x", 1, true, {"3"}, "3"},
      {"x--x", 1, true, {"4", "gone2"}, "4"},
      {"x---", 1, true, {"gone4", "gone3", "gone2"}, "before"},
      {"x-x", 2, false, {"3"}, "3"},  // the entry returned to
      {"--x", 0, false, {"3", "gone1"}, "3"},
  };
  std::size_t before = 0;
  for (const auto& skip : skips) {
    SCOPED_TRACE(skip.kinds);
    Fill(skip.kinds, skip.index, skip.from_list);
    navigation.PlaylistSetNext(false, -1, false);
    std::vector<std::string> told = Told();
    told.erase(told.begin(), told.begin() + static_cast<std::ptrdiff_t>(before));
    before += told.size();
    EXPECT_EQ(told, skip.told);
    EXPECT_EQ(settings.PlaylistIndex, skip.index);
    EXPECT_EQ(Current(), skip.current_after);
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "stop"),
              static_cast<std::ptrdiff_t>(skip.told.size()));
    EXPECT_EQ(timer->Enabled(), Current() != "before");
    timer->SetEnabled(false);
  }
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
  EXPECT_EQ(settings.PlayingFromPlaylist, 0);
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

TEST_F(NavigationTest, AnEntryThatIsRemovedBeforeItOpensAsksNobody) {
  Fill("xx", 1, true);
  navigation.PlaylistSetNext(false, -1, true);
  list.Clear();
  time.Advance(1000);
  EXPECT_THAT(calls, ElementsAre("name", "data 2"));
  EXPECT_FALSE(timer->Enabled());
}

}  // namespace
}  // namespace kv
