#include "desktop/mpris_player.h"

#include "support/fake_mpris_host.h"
#include "support/virtual_time.h"

#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace kv {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FakeBus : public MprisBus {
 public:
  std::vector<std::string> news;
  MprisProperties last;

  void PropertiesChanged(MprisInterface interface, const MprisProperties& changed) override {
    std::string line = interface == MprisInterface::kRoot ? "root" : "player";
    for (const auto& [name, value] : changed) line += " " + name;
    news.push_back(line);
    last = changed;
  }
  void Seeked(std::int64_t position) override {
    news.push_back("seeked " + std::to_string(position));
  }
};

PlayerState Open(bool running = true, bool paused = false) {
  PlayerState state;
  state.target = "/music/one.mp3";
  state.duration = 100;
  state.position = 10;
  state.running = running;
  state.paused = paused;
  state.list_count = 3;
  state.list_index = 2;
  state.from_list = true;
  return state;
}

class MprisPlayerTest : public testing::Test {
 protected:
  void Begin(const PlayerState& state) {
    host_.state = state;
    player_.Begin();
  }
  template <class T>
  T Value(const char* name) {
    return std::get<T>(player_.Properties(MprisInterface::kPlayer).at(name));
  }
  std::string TrackId() {
    return std::get<BusPath>(Value<MediaMetadata>("Metadata").at("mpris:trackid")).path;
  }

  VirtualTime time_;
  FakeMprisHost host_;
  FakeBus bus_;
  MprisPlayer player_{host_, bus_, time_, {"Kestrelview", "kestrelview", {"file"}, {"audio/mpeg"}}};
};

TEST_F(MprisPlayerTest, CommandsPressWhatTheyMean) {
  const PlayerState playing = Open();
  const PlayerState paused = Open(true, true);
  const PlayerState stopped = Open(false, true);
  const PlayerState empty;
  PlayerState last = Open();
  last.list_index = 3;
  PlayerState last_of_ring = last;
  last_of_ring.repeat_mode = 2;
  PlayerState first_of_ring = last_of_ring;
  first_of_ring.list_index = 1;
  const auto seek = [](std::int64_t offset) {
    return [offset](MprisPlayer& p) { p.Seek(offset); };
  };
  const auto go = [](const char* track, std::int64_t to) {
    return [track, to](MprisPlayer& p) { p.SetPosition(track, to); };
  };
  struct Case {
    const char* what;
    PlayerState state;
    std::function<void(MprisPlayer&)> press;
    std::string log;
  };
  const Case cases[] = {
      {"play does not begin anew", playing, &MprisPlayer::Play, ""},
      {"play goes on from where it is", paused, &MprisPlayer::Play, "pause"},
      {"play out of the stop", stopped, &MprisPlayer::Play, "play"},
      {"nothing to play opens no dialog", empty, &MprisPlayer::PlayPause, ""},
      {"next at the end", last, &MprisPlayer::Next, ""},
      {"next round the ring", last_of_ring, &MprisPlayer::Next, "entry 1"},
      {"previous round the ring", first_of_ring, &MprisPlayer::Previous, "entry 3"},
      {"any offset", playing, seek(std::numeric_limits<std::int64_t>::min()), "move 0"},
      {"another track", playing, go("/org/kestrelview/track/7", 5'000'000), ""},
      {"beyond the track", playing, go("/org/kestrelview/track/1", 100'000'001), ""},
      {"this track", playing, go("/org/kestrelview/track/1", 5'000'000), "move 5"},
  };
  for (const Case& c : cases) {
    FakeMprisHost host;
    host.state = c.state;
    MprisPlayer player(host, bus_, time_, {});
    player.Begin();
    c.press(player);
    EXPECT_EQ(host.log, c.log) << c.what;
  }
}

TEST_F(MprisPlayerTest, SeekedIsWhatAListenerCouldNotReckon) {
  struct Case {
    const char* what;
    void (*change)(PlayerState& state);
    std::vector<std::string> news;
  };
  const Case cases[] = {
      {"a jump", [](PlayerState& s) { s.position = 50; }, {"seeked 50250000"}},
      {"the clock waits a moment", [](PlayerState& s) { s.position -= 0.3; }, {}},
      {"another speed", [](PlayerState& s) { s.rate = 2; }, {"player Rate"}},
      {"a pause", [](PlayerState& s) { s.paused = true; }, {"player PlaybackStatus"}},
      {"another medium from its middle",
       [](PlayerState& s) {
         s.target = "/music/two.mp3";
         s.position = 30;
       },
       {"player Metadata", "seeked 30250000"}},
  };
  for (const Case& c : cases) {
    FakeMprisHost host;
    FakeBus bus;
    host.state = Open();
    MprisPlayer player(host, bus, time_, {});
    player.Begin();
    c.change(host.state);
    // A quarter of a second, until the comparison.
    if (host.state.Playing()) host.state.position += 0.25 * host.state.rate;
    time_.Advance(250);
    EXPECT_EQ(bus.news, c.news) << c.what;
  }
}

TEST_F(MprisPlayerTest, TheMomentBetweenTwoMediaIsNotTold) {
  Begin(Open());
  EXPECT_EQ(TrackId(), "/org/kestrelview/track/1");
  host_.state.target.clear();
  host_.state.running = false;
  time_.Advance(600);
  EXPECT_THAT(bus_.news, IsEmpty());
  EXPECT_EQ(Value<std::string>("PlaybackStatus"), "Playing");
  host_.state = Open();
  host_.state.target = "/music/two.mp3";
  host_.state.position = 0;
  time_.Advance(250);
  EXPECT_THAT(bus_.news, ElementsAre("player Metadata"));
  EXPECT_EQ(TrackId(), "/org/kestrelview/track/2");

  host_.state = PlayerState();
  time_.Advance(1500);
  EXPECT_EQ(TrackId(), "/org/mpris/MediaPlayer2/TrackList/NoTrack");
  EXPECT_EQ(Value<std::string>("PlaybackStatus"), "Stopped");
  EXPECT_EQ(Value<std::int64_t>("Position"), 0);
  EXPECT_FALSE(Value<bool>("CanSeek"));
}

TEST_F(MprisPlayerTest, WritesAreCheckedAndBounded) {
  using Result = MprisPlayer::SetResult;
  Begin(Open());
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  struct Case {
    const char* name;
    MprisValue value;
    Result result;
    std::optional<MprisValue> then;
  };
  const Case cases[] = {
      {"Volume", 0.25, Result::kDone, 0.25},
      {"Volume", 7.0, Result::kDone, 1.0},
      {"Volume", kNan, Result::kDone, 1.0},
      {"Rate", 99.0, Result::kDone, 2.0},
      {"LoopStatus", std::string("Track"), Result::kDone, std::string("Track")},
      {"LoopStatus", std::string("Round"), Result::kWrongType, std::string("Track")},
      {"CanSeek", false, Result::kReadOnly, true},
      {"Colour", true, Result::kUnknown, {}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(player_.Set(MprisInterface::kPlayer, c.name, c.value), c.result) << c.name;
    const MprisProperties now = player_.Properties(MprisInterface::kPlayer);
    if (c.then) {
      EXPECT_EQ(now.at(c.name), *c.then) << c.name;
    }
  }
  player_.Set(MprisInterface::kPlayer, "Rate", 0.0);
  EXPECT_EQ(host_.log, "pause");
  // A stream without a position has one speed.
  host_.state.seekable = false;
  host_.state.rate = 1;
  player_.Set(MprisInterface::kPlayer, "Rate", 2.0);
  EXPECT_EQ(Value<double>("Rate"), 1.0);
  EXPECT_EQ(Value<double>("MaximumRate"), 1.0);
}

}  // namespace
}  // namespace kv
