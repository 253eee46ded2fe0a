// Opens inside opens: what comes in while one waits for the engine, a dialog or a pump.
#include "shell/opener_player.h"

namespace kv {
namespace {

using Action = std::function<void(OpenerPlayer&)>;

// Opens `file` anew for each of the pumps that this takes, and lets something come in there.
void InEachPumpOf(const std::string& file, const Action& meanwhile, const Action& check) {
  int number = 0;
  for (bool reached = true; reached; ++number) {
    SCOPED_TRACE(file + " in pump " + std::to_string(number));
    OpenerPlayer player;
    player.factory.media["http://h/live"] = {.render_milliseconds = 100};
    player.factory.media["mms://h/s"] = {.render_milliseconds = 100};
    player.asx["/m/list.asx"] = {"The title", "", "", "", "mms://h/s"};
    player.resume_target = "/m/slow.avi";
    player.Play("/m/a.avi");
    bool came = false;
    player.pump.InPump(number, [&] {
      came = true;
      meanwhile(player);
    });
    player.Play(file);
    reached = !player.pump.Waiting();
    if (came) check(player);
  }
  EXPECT_GT(number, 10) << file;
}

TEST(MediaOpenerOvertaken, GivesWayToAnotherOpenInEachOfItsPumps) {
  for (const char* older :
       {"/m/a.avi", "/m/slow.avi", "http://h/live", "/m/list.asx", "/m/r.kvr"}) {
    const Action newer = [](OpenerPlayer& player) { player.Play("/m/b.mp3"); };
    InEachPumpOf(older, newer, [](const OpenerPlayer& player) {
      EXPECT_EQ(player.Shown(), "/m/b.mp3|/m/b.mp3|50 s||-1 to -1|");
      EXPECT_EQ(player.icon, ConnectionIcon::kNone);
      EXPECT_THAT(player.dialogs.Boxes(), IsEmpty());
      EXPECT_EQ(player.settings.RecentFiles[0], "/m/b.mp3");
      // Started once, and not set back by what the older one still had to do.
      EXPECT_EQ(player.factory.calls.back(), "Run");
      EXPECT_TRUE(player.movie.DS_IsRunning());
    });
  }
}

TEST(MediaOpenerOvertaken, EndsInEachOfItsPumpsWhenTheProgramIsClosed) {
  for (const char* file : {"/m/slow.avi", "/m/broken.avi", "http://h/x", "/m/r.kvr"}) {
    std::size_t boxes = 0;
    const Action close = [&boxes](OpenerPlayer& player) {
      boxes = player.dialogs.Boxes().size();
      player.Close();
    };
    InEachPumpOf(file, close, [&boxes](const OpenerPlayer& player) {
      EXPECT_FALSE(player.movie.DS_IsOpen());
      EXPECT_THAT(player.factory.calls, IsEmpty());
      EXPECT_EQ(player.Logged("button 0"), 0);
      EXPECT_EQ(player.dialogs.Boxes().size(), boxes);
    });
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
  EXPECT_EQ(failing.settings.RecentFiles[0] + failing.settings.RecentFiles[1], "/m/b.mp3");
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
