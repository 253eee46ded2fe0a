// Opens inside opens: what comes in while one waits for the engine, a dialog or a pump.
#include "shell/opener_player.h"

#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <utility>

namespace kv {
namespace {

using testing::Contains;
using testing::IsEmpty;
using testing::Not;

// In each of its pumps in turn, whatever it opens, an open can be overtaken.
TEST(MediaOpenerOvertaken, GivesWayToAnotherOpenInEachOfItsPumps) {
  for (const char* older :
       {"/m/a.avi", "/m/slow.avi", "http://h/live", "/m/list.asx", "/m/r.kvr"}) {
    int number = 0;
    for (bool reached = true; reached; ++number) {
      OpenerPlayer player;
      player.factory.media["http://h/live"] = {.render_milliseconds = 100};
      player.factory.media["mms://h/s"] = {.render_milliseconds = 100};
      player.asx["/m/list.asx"] = {"The title", "", "", "", "mms://h/s"};
      player.resume_target = "/m/slow.avi";
      player.Play("/m/a.avi");
      bool overtaken = false;
      player.pump.InPump(number, [&] {
        overtaken = true;
        player.Play("/m/b.mp3");
      });
      player.Play(older);
      reached = !player.pump.Waiting();
      if (!overtaken) continue;
      const auto where = std::string(older) + " in pump " + std::to_string(number);
      EXPECT_EQ(player.settings.CurrentFile, "/m/b.mp3") << where;
      EXPECT_EQ(player.movie.DS_CurFile(), "/m/b.mp3") << where;
      EXPECT_EQ(player.slider1.Max(), 50) << where;
      EXPECT_EQ(player.session.AsxInfo.entry, "") << where;
      EXPECT_EQ(player.session.ResumePosition, kNoPosition) << where;
      EXPECT_EQ(player.icon, ConnectionIcon::kNone) << where;
      EXPECT_FALSE(player.resume_mark) << where;
      EXPECT_EQ(player.tool_tip, "") << where;
      EXPECT_THAT(player.dialogs.Boxes(), IsEmpty()) << where;
      EXPECT_EQ(player.settings.RecentFiles[0], "/m/b.mp3") << where;
      // Started once, and not set back by what the older one still had to do.
      EXPECT_EQ(player.factory.calls.back(), "Run") << where;
      EXPECT_TRUE(player.movie.DS_IsRunning()) << where;
    }
    EXPECT_GT(number, 10) << older;
  }
}

TEST(MediaOpenerOvertaken, EndsInEachOfItsPumpsWhenTheProgramIsClosed) {
  for (const char* file : {"/m/slow.avi", "/m/broken.avi", "http://h/x", "/m/r.kvr"}) {
    int number = 0;
    for (bool reached = true; reached; ++number) {
      OpenerPlayer player;
      player.resume_target = "/m/slow.avi";
      player.Play("/m/a.avi");
      std::size_t boxes = 0;
      bool closed = false;
      player.pump.InPump(number, [&] {
        boxes = player.dialogs.Boxes().size();
        closed = true;
        player.Close();
      });
      player.Play(file);
      reached = !player.pump.Waiting();
      if (!closed) continue;
      const auto where = std::string(file) + " in pump " + std::to_string(number);
      EXPECT_FALSE(player.movie.DS_IsOpen()) << where;
      EXPECT_THAT(player.factory.calls, IsEmpty()) << where;
      EXPECT_THAT(player.log, Not(Contains("button 0"))) << where;
      EXPECT_EQ(player.dialogs.Boxes().size(), boxes) << where;
    }
    EXPECT_GT(number, 10) << file;
  }
}

TEST(MediaOpenerOvertaken, LetsTheOlderOneChooseAfterANewerOneAndOpensNothingAfterTheClose) {
  OpenerPlayer player;
  player.dialogs.WillPickFile("/m/a.avi");
  player.dialogs.WhileOpen([&] { player.Play("/m/b.mp3"); });
  player.Play("");
  EXPECT_EQ(player.movie.DS_CurFile(), "/m/a.avi");  // the user's choice is the newer wish

  player.dialogs.WillPickFile("/m/b.mp3");
  player.dialogs.WhileOpen([&] { player.Close(); });
  player.Play("");
  player.Play("/m/b.mp3");
  EXPECT_THAT(player.factory.calls, IsEmpty());

  OpenerPlayer failing;
  failing.dialogs.WhileOpen([&] { failing.Play("/m/b.mp3"); });
  failing.Play("/m/broken.avi");
  EXPECT_EQ(failing.settings.CurrentFile, "/m/b.mp3");
  EXPECT_EQ(failing.settings.RecentFiles[1], "");
  EXPECT_EQ(failing.dialogs.Boxes().size(), 1U);
}

TEST(MediaOpenerOvertaken, ServesTheNewerPathOfASecondStartOnce) {
  for (const int when : {51, 70, 900, 59000}) {
    OpenerPlayer player;
    player.factory.media["/m/dead.avi"] = {.render_milliseconds = 100000};
    std::function<void()> on_link;
    const auto link =
        player.time.MakeTimer(TimerKind::kHighResolution, 50, [&on_link] { on_link(); });
    const auto delay = player.time.MakeTimer(TimerKind::kOrdinary, 3000, nullptr);
    HandOver hand_over(player, player.dialogs, *link, *delay);
    on_link = [&hand_over] { hand_over.OnLinkExeTimer(); };
    hand_over.FinishLoading();
    EXPECT_TRUE(hand_over.Form_LinkExecute("\"/m/dead.avi\""));
    bool sent = false;
    const auto second = player.time.MakeTimer(TimerKind::kOrdinary, when, [&] {
      if (!std::exchange(sent, true)) hand_over.Form_LinkExecute("\"/m/b.mp3\"");
    });
    second->SetEnabled(true);
    player.time.Advance(200000);
    EXPECT_EQ(player.Rendered("/m/dead.avi"), 1) << when;
    EXPECT_EQ(player.Rendered("/m/b.mp3"), 1) << when;
    EXPECT_THAT(player.dialogs.Boxes(), IsEmpty()) << when;
    EXPECT_EQ(player.movie.DS_CurFile(), "/m/b.mp3");
    EXPECT_EQ(player.settings.RecentFiles[1], "");
    EXPECT_FALSE(link->Enabled());
  }
}

}  // namespace
}  // namespace kv
