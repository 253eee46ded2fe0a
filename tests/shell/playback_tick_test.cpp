// The playback tick on the true road: `PosTimer` every 30 ms of virtual time over sliders, marks
// and transport, on fake media.
#include "shell/playback_tick.h"

#include "shell/transport_player.h"

namespace kv {
namespace {

constexpr const char* kMedium = "/m/a.avi";

// A player with sliders, and a list that notes what is asked of it.
struct Player : TransportPlayer, TickNavigation {
  int PlaylistCount() const override { return count; }
  void PlaylistSetNext(bool /*last*/, int /*index*/, bool /*now*/) override {
    steps.emplace_back("next");
    if (in_next) in_next();
  }
  void StartPlaylistTimer(bool immediate) override {
    steps.emplace_back(immediate ? "timer" : "slow timer");
  }
  bool PlayFromPlaylistEnabled() const override { return open_pending; }
  void ReleasePlugin() override { steps.emplace_back("stop"); }

  Player() { timer->SetEnabled(true); }

  // Opens as the player does: the slider follows only when the engine is ready.
  void Play(const FakeMedium& medium) {
    factory.media[kMedium] = medium;
    Open(kMedium);
    slider1.SetMax(movie.DS_GetDuration());
    movie.DS_GetMovieSize(session.MovieWidth, session.MovieHeight);
    movie.DS_Play();
  }

  // In a list of three whose entries follow each other.
  void PlayEntry(int index, const FakeMedium& medium) {
    count = 3;
    settings.PlayingFromPlaylist = FromBool(true);
    settings.AutoNext = FromBool(true);
    settings.PlaylistIndex = index;
    Play(medium);
  }

  // Until something is done about it, at most `milliseconds`.
  void AdvanceUntilLogged(std::int64_t milliseconds) {
    const std::int64_t begin = time.Milliseconds();
    while (steps.empty() && time.Milliseconds() - begin < milliseconds) time.Advance(1);
  }

  std::vector<std::string> steps;
  int count = 0;
  bool open_pending = false;
  std::function<void()> in_next;

  PlaybackTick tick{movie, settings, session, slider1, sliders, transport, *this};
  std::unique_ptr<Timer> timer =
      time.MakeTimer(TimerKind::kHighResolution, 30, [this] { tick.PosTimer(); });
};

TEST(PlaybackTick, WhatFollowsTheEnd) {
  const std::vector<std::string> next = {"next"}, wrap = {"timer"}, stop = {"stop"}, again = {};
  const struct {
    int repeat, index, count;
    bool from_list, auto_next;
    std::vector<std::string> log;
  } rows[] = {
      {1, 0, 0, false, false, again}, {1, 3, 3, true, true, again}, {0, 0, 0, false, true, stop},
      {2, 0, 0, true, true, stop},    {2, 2, 3, true, true, next},  {0, 2, 3, true, false, stop},
      {2, 3, 3, true, true, wrap},    {2, 0, 3, true, true, wrap},  {2, 9, 3, true, false, wrap},
      {0, 3, 3, true, true, stop},    {2, 3, 3, false, true, stop},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << "repeat " << row.repeat << " list " << row.from_list << " "
                                    << row.index << "/" << row.count << " auto " << row.auto_next);
    Player player;
    player.settings.RepeatMode = row.repeat;
    player.settings.PlayingFromPlaylist = FromBool(row.from_list);
    player.settings.PlaylistIndex = row.index;
    player.settings.AutoNext = FromBool(row.auto_next);
    player.count = row.count;
    player.Play({.duration = 2});
    player.AdvanceUntilLogged(2400);
    EXPECT_EQ(player.steps, row.log);
    EXPECT_EQ(player.settings.PlaylistIndex, row.log == wrap ? 1 : row.index);
    if (row.log == again) {
      EXPECT_TRUE(player.Playing() && player.movie.DS_GetPosition() < 0.5);
    }
    if (row.log != stop) continue;
    player.time.Advance(3000);  // held at the start, and quiet
    EXPECT_EQ(player.movie.State(), 2);
    EXPECT_EQ(player.steps, stop);
    EXPECT_EQ(player.slider1.Value(), 0);
  }
}

TEST(PlaybackTick, AStallIsTheEndOnlyInTheLastSecond) {
  const struct {
    double duration, from, to;
    bool taken_for_the_end;
  } rows[] = {
      {10, 3, 5, false},     {10, 8.95, 9.5, false}, {10, 9.0, 9.4, true},
      {10, 9.5, 9.9, true},  {10, 9.5, 9.65, false},  // too short for six samples
      {0.8, 0.1, 0.5, true},                          // all of it is its last second
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.duration << " s, stall from " << row.from);
    Player player;
    player.Play({.duration = row.duration, .stalls = {{row.from, row.to}}});
    player.time.Advance(static_cast<std::int64_t>(row.to * 1000));
    EXPECT_EQ(!player.steps.empty(), row.taken_for_the_end);
    player.AdvanceUntilLogged(10000);
    EXPECT_THAT(player.steps, ElementsAre("stop"));
  }
}

TEST(PlaybackTick, PausedOrSlowNearTheEndIsNoEnd) {
  Player player;
  player.Play({.duration = 2});
  player.time.Advance(1900);
  player.movie.DS_Pause();
  player.time.Advance(5000);
  EXPECT_THAT(player.steps, IsEmpty());
  player.movie.DS_SetPosition(1.0);
  player.movie.DS_Play();
  player.movie.DS_SetRate(0.1);
  player.time.Advance(9900);
  EXPECT_THAT(player.steps, IsEmpty());
  player.time.Advance(400);
  EXPECT_THAT(player.steps, ElementsAre("stop"));
}

TEST(PlaybackTick, MarksLoopAndTurnOffTheEnd) {
  const struct {
    double first, second;  // where the button is pressed
    double lowest, highest;
  } rows[] = {
      {0.0, 0.5, 0.0, 0.53}, {1.5, 1.0, 1.0, 1.53}, {1.2, 1.2, 1.2, 1.23}, {1.8, 2, 1.8, 2}};
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.first << " > " << row.second);
    Player player;
    player.Play({.duration = 2});
    player.time.Advance(30);
    for (const double press : {row.first, row.second}) {
      player.movie.DS_SetPosition(press);
      player.transport.BUtton_Click(Transport::kMarks);
    }
    player.movie.DS_SetPosition(row.lowest);
    int loops = 0;
    for (int i = 0; i < 10000; ++i) {
      const double before = player.movie.DS_GetPosition();
      player.time.Advance(1);
      loops += player.movie.DS_GetPosition() < before ? 1 : 0;
      ASSERT_GE(player.movie.DS_GetPosition(), row.lowest);
      ASSERT_LE(player.movie.DS_GetPosition(), row.highest + 1e-9);
    }
    EXPECT_GE(loops, 18);
    EXPECT_THAT(player.steps, IsEmpty());
    EXPECT_TRUE(player.Playing());
    player.transport.BUtton_Click(Transport::kMarks);  // off: the medium ends
    player.time.Advance(2000);
    EXPECT_THAT(player.steps, ElementsAre("stop"));
  }
}

TEST(PlaybackTick, TheEndOfAResumeSection) {
  const struct {
    int repeat, index, index_after;
    bool from_list, loops;
    std::vector<std::string> log;  // until well behind the section's end, at 3 s
    std::vector<std::string> end;  // what follows until the medium has ended, at 6 s
  } rows[] = {
      {2, 3, 3, false, true, {}, {}},
      {1, 3, 3, true, true, {}, {}},
      {0, 1, 1, true, false, {"next"}, {"next", "stop"}},
      {0, 3, 0, true, false, {}, {"stop"}},  // plays on past the mark
      {2, 3, 1, true, false, {}, {"timer"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << "list " << row.from_list << " repeat " << row.repeat << " "
                                    << row.index << "/3");
    Player player;
    player.settings.RepeatMode = row.repeat;
    player.PlayEntry(row.index, {.duration = 6});
    player.settings.AutoNext = FromBool(false);
    player.settings.PlayingFromPlaylist = FromBool(row.from_list);
    player.session.ResumePosition = 1;
    player.session.ResumeEndPosition = 3;
    player.movie.DS_SetPosition(2.5);
    player.time.Advance(1500);
    EXPECT_EQ(player.steps, row.log);
    EXPECT_EQ(player.movie.DS_GetPosition() < 3, row.loops);
    player.movie.DS_Pause();  // behind the mark nothing is done about it, nor by going on
    player.movie.DS_SetPosition(4);
    player.time.Advance(100);
    EXPECT_EQ(player.movie.DS_GetPosition(), 4);
    player.movie.DS_Play();
    player.time.Advance(2320);
    EXPECT_EQ(player.steps, row.end);
    EXPECT_EQ(player.settings.PlaylistIndex, row.index_after);
  }
}

TEST(PlaybackTick, DoesNothingWithAnOpenPendingNorInsideATick) {
  Player player;
  player.open_pending = true;
  player.PlayEntry(1, {.duration = 2});
  player.session.ResumeEndPosition = 1;
  player.session.MarkA = 0;
  player.session.MarkB = 1.5;
  player.time.Advance(4000);
  EXPECT_THAT(player.steps, IsEmpty());
  EXPECT_EQ(player.slider1.Value(), 2);

  Player nested;
  nested.in_next = [&] {  // as a message box that pumps would
    for (int i = 0; i < 20 && nested.steps.size() < 5; ++i) nested.tick.PosTimer();
  };
  nested.PlayEntry(1, {.duration = 2});
  nested.AdvanceUntilLogged(5000);
  EXPECT_THAT(nested.steps, ElementsAre("next"));
}

TEST(PlaybackTick, KeepsOffWhileTheUserScrubs) {
  Player player;
  player.Play({.duration = 100, .width = 64, .height = 48});
  player.slider1.PointerDown(kLeftButton, kCtrlKey, 5, 10);
  player.slider1.PointerMove(kLeftButton, 104, 10);
  ASSERT_TRUE(player.sliders.CtrlScrubbing());
  ASSERT_NEAR(player.movie.DS_GetPosition(), 99, 1e-9);
  player.movie.DS_Play();  // even when it runs to its end under the knob
  player.time.Advance(3000);
  EXPECT_THAT(player.steps, IsEmpty());
  EXPECT_NEAR(player.slider1.Value(), 99, 1e-9);
  player.slider1.PointerUp(kLeftButton, kCtrlKey, 104, 10);  // starts over
  player.time.Advance(1000);
  EXPECT_NEAR(player.slider1.Value(), 1, 0.03);
}

TEST(PlaybackTick, StreamsWithoutPositionOrLengthAreLeftAlone) {
  const struct {
    const char* entry;
    double duration;
    bool followed;
  } rows[] = {{"http://host/a", 2, false}, {"MMS://host/a", 2, true}, {"mms://host/a", 0, false}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.entry);
    Player player;
    player.session.AsxInfo.entry = row.entry;
    player.Play({.duration = row.duration, .stalls = {{1.5, 1e9}}});
    player.time.Advance(3000);
    EXPECT_EQ(player.steps.empty(), !row.followed);
  }
}

struct Window : MovieView {
  void Note(const char* what, bool visible) { log += (visible ? " +" : " -") + std::string(what); }
  void SetRenderVisible(bool visible) override { Note("render", visible); }
  void SetVuMeter1Visible(bool visible) override { Note("meter", visible); }
  void SetLogoVisible(bool visible) override { Note("logo", visible); }
  void SetVumeterVisible() override { log += " decide"; }
  void ExtPluginMediaChanged() override { log += " plugin"; }

  std::string log;
};

TEST(MovieEvents, TheLogoCoversAnOpenAlsoWhenItFails) {
  MovieWorld world;
  Window window;
  MovieEvents events(window, world.pump);
  world.movie.SetEvents(&events);
  EXPECT_FALSE(world.movie.DS_OpenFile("/m/none", 0, 0, 0, 0, 0));
  EXPECT_EQ(window.log, " -render -meter +logo plugin +render +meter -logo");
  world.movie.DS_Play();
  EXPECT_TRUE(window.log.ends_with("-logo decide"));
}

}  // namespace
}  // namespace kv
