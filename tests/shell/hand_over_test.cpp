// The road from a command line or another start to the one path that is opened, on virtual time.
#include "shell/hand_over.h"

#include "shell/main_timers.h"
#include "support/scripted_dialogs.h"
#include "support/temp_folder.h"
#include "support/virtual_time.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kv {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class HandOverTest : public testing::Test, protected HandOverHost {
 protected:
  void OpenCommandFile(const std::string& path) override { opened.push_back(path); }
  void AbandonOpen() override { ++abandoned; }

  bool Running(MainTimer timer) const { return timers.Enabled(timer); }

  TempFolder temp;
  VirtualTime time;
  ScriptedDialogs dialogs;
  MainTimers timers{time, [this](MainTimer timer) {
                      if (timer == MainTimer::LinkExeTimer) hand_over.OnLinkExeTimer();
                      if (timer == MainTimer::OpeningCMDDelay) hand_over.OnOpeningCMDDelay();
                    }};
  HandOver hand_over{*this, dialogs, timers[MainTimer::LinkExeTimer],
                     timers[MainTimer::OpeningCMDDelay]};
  std::vector<std::string> opened;
  int abandoned = 0;
};

TEST_F(HandOverTest, ReadsTheCommandLine) {
  const std::string song = temp.Write("debug/my song.mp3", "x");
  const std::string good = temp.Write("good.KVR", "[RESUME_FILE]\nPath=" + song + "\n");
  const std::string gone = temp.Write("gone.kvr", "[RESUME_FILE]\nPath=/gone.mp3\n");
  const std::string empty = temp.Write("empty.kvr", "");
  const auto missing = [](const std::string& file) {
    return "File \"" + file + "\" does not exist!";
  };
  const auto target = [](const std::string& file) {
    return "The opened resume file points to \"" + file + "\" which doesn't exist!";
  };
  const struct {
    std::string command_line;
    std::string file;  // waiting to be opened
    bool have;
    std::string message;
  } rows[] = {
      {"", "", false, ""},
      {song, song, true, ""},
      {temp.Path(), temp.Path(), false, missing(temp.Path())},
      {"http://h/a.mp3", "http://h/a.mp3", false, missing("http://h/a.mp3")},
      {good, good, true, ""},
      {gone, "", false, target("/gone.mp3")},
      {empty, "", false, target("")},
  };
  for (const auto& row : rows) {
    ScriptedDialogs boxes;
    HandOver fresh(*this, boxes, timers[MainTimer::LinkExeTimer],
                   timers[MainTimer::OpeningCMDDelay]);
    fresh.ReadCommandLine(row.command_line);
    EXPECT_EQ(fresh.CommandFile(), row.file) << row.command_line;
    EXPECT_EQ(boxes.LastText(), row.message);
    EXPECT_EQ(fresh.FinishLoading(), row.have);
    EXPECT_EQ(Running(MainTimer::LinkExeTimer), row.have);
    timers.StopAllTimers();
  }
}

TEST_F(HandOverTest, RefusesForThreeSecondsAfterAStartWithAFile) {
  const std::string song = temp.Write("a.mp3", "x");
  hand_over.ReadCommandLine(song);
  ASSERT_TRUE(hand_over.FinishLoading());
  time.Advance(49);
  EXPECT_THAT(opened, IsEmpty());
  time.Advance(1);
  EXPECT_THAT(opened, ElementsAre(song));
  EXPECT_FALSE(hand_over.HaveCommandFile());
  time.Advance(2949);
  EXPECT_FALSE(hand_over.Form_LinkExecute("\"/m/b.mp3\""));
  time.Advance(1);
  EXPECT_EQ(time.ActiveTimers(), 0);
  EXPECT_TRUE(hand_over.Form_LinkExecute("\"/m/b.mp3\""));
  time.Advance(50);
  EXPECT_THAT(opened, ElementsAre(song, "/m/b.mp3"));
  EXPECT_THAT(dialogs.Boxes(), IsEmpty());
}

TEST_F(HandOverTest, KeepsARequestThatComesWhileTheFormLoads) {
  const std::string song = temp.Write("a.mp3", "x");
  hand_over.ReadCommandLine(song);
  EXPECT_TRUE(hand_over.Form_LinkExecute("\"" + song + "\""));  // the shell's own repetition
  time.Advance(500);
  EXPECT_THAT(opened, IsEmpty());
  EXPECT_TRUE(hand_over.FinishLoading());
  time.Advance(1000);
  EXPECT_THAT(opened, ElementsAre(song));

  // Without a command line it is a start with a medium all the same, not refused afterwards.
  HandOver other(*this, dialogs, timers[MainTimer::LinkExeTimer],
                 timers[MainTimer::OpeningCMDDelay]);
  timers.StopAllTimers();
  EXPECT_TRUE(other.Form_LinkExecute("/m/b.mp3"));
  EXPECT_TRUE(other.FinishLoading());
  EXPECT_FALSE(Running(MainTimer::OpeningCMDDelay));
  EXPECT_TRUE(other.Form_LinkExecute("/m/c.mp3"));
}

}  // namespace
}  // namespace kv
