// The clock between the reports of a decoder, told the time by the test.

#include "engine/playing_clock.h"

#include <gtest/gtest.h>
#include <vector>

namespace kv {
namespace {

constexpr double kTick = 0.03;  // how often the player reads the position, seconds

class PlayingClockTest : public ::testing::Test {
 protected:
  PlayingClock::TimePoint Now() const {
    return PlayingClock::TimePoint(std::chrono::duration_cast<PlayingClock::TimePoint::duration>(
        std::chrono::duration<double>(now_)));
  }
  double Position() const { return clock_.Position(Now()); }
  void Report(double position) { clock_.Report(position, Now()); }
  void SetEnded(bool ended) { clock_.SetEnded(ended, Now()); }

  // A clock as new.
  void Play(double duration, double from, double rate = 1.0, double picture = 0.0) {
    clock_.Reset();
    clock_.SetPictureSeconds(picture);
    clock_.SetRate(rate, Now());
    clock_.SetDuration(duration);
    clock_.BeginSeek(from, Now());
    clock_.EndSeek(from, Now());
    clock_.Run(Now());
  }

  // Lets time pass and reads on every tick: the position always moves, and forwards.
  void PassMoving(double seconds) {
    for (const double end = now_ + seconds; now_ < end;) {
      const double before = Position();
      now_ += kTick;
      ASSERT_GT(Position(), before) << "at " << now_ << " s";
    }
  }

  // Lets time pass in which the position moves on every tick and yet stays where it was.
  void PassCreeping(double seconds) {
    const double before = Position();
    PassMoving(seconds);
    EXPECT_NEAR(Position(), before, 0.005 * seconds);
  }

  void PassStandingAt(double position, double seconds) {
    for (const double end = now_ + seconds; now_ < end; now_ += kTick) {
      ASSERT_EQ(Position(), position) << "at " << now_ << " s";
    }
  }

  PlayingClock clock_;
  double now_ = 1000.0;
};

struct Pace {
  const char* name;
  double rate;
  double picture;                // as told to the clock, seconds; 0: unknown
  std::vector<double> pictures;  // how long each stays, seconds of the medium, over and over
  std::vector<double> jitter;    // what each report is off by, over and over
  double off;                    // how far the clock may be from the truth, seconds
};

class PacedClock : public PlayingClockTest, public ::testing::WithParamInterface<Pace> {};

TEST_P(PacedClock, FollowsTheDecoderWithoutStandingOrGoingBack) {
  const Pace& pace = GetParam();
  Play(1000.0, 100.0, pace.rate, pace.picture);
  const double begin = now_;
  double next = 100.0;  // the picture that is due
  double before = 0.0;
  std::size_t index = 0;
  for (int tick = 0; tick < 1500; ++tick) {
    const double truth = 100.0 + (now_ - begin) * pace.rate;
    while (next <= truth) {
      Report(next + pace.jitter[index % pace.jitter.size()]);
      next += pace.pictures[index % pace.pictures.size()];
      ++index;
    }
    ASSERT_GT(Position(), before) << "at " << truth;
    ASSERT_NEAR(Position(), truth, pace.off);
    before = Position();
    now_ += kTick;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Media, PacedClock,
    ::testing::Values(
        Pace{"FilmWithJitter", 1.0, 0.04, {0.04}, {0.0, 0.05, -0.06, 0.02, -0.1}, 0.15},
        Pace{"SoundInGulps", 1.0, 0.0, {0.02, 0.02, 0.4}, {0.15, -0.2, 0.0}, 0.25},
        Pace{"OnePictureASecondInSlowMotion", 0.1, 1.0, {1.0}, {0.0}, 0.05},
        Pace{"VariableRate", 1.0, 0.04, {0.033, 0.5, 0.017, 0.7, 0.3, 0.04}, {0.0}, 0.25},
        Pace{"FilmAtFourfold", 4.0, 0.04, {0.04}, {0.0, -0.08}, 0.25}),
    [](const auto& test) { return test.param.name; });

TEST_F(PlayingClockTest, AGapIsWorkedOffOrWaitedForOrJumped) {
  enum Answer { kWorkedOff, kWaitedFor, kJumped };
  const struct {
    double off;  // the report less the clock, seconds
    double rate;
    Answer answer;
  } gaps[] = {{0.29, 1.0, kWorkedOff},  {-0.29, 4.0, kWorkedOff}, {-0.29, 0.5, kWorkedOff},
              {-0.31, 1.0, kWaitedFor}, {-4.8, 2.0, kWaitedFor},  {-2.6, 1.0, kJumped},
              {-1.3, 0.5, kJumped},     {0.31, 1.0, kJumped},     {90.0, 1.0, kJumped}};
  for (const auto& gap : gaps) {
    SCOPED_TRACE(::testing::Message() << gap.off << " s at rate " << gap.rate);
    Play(1000.0, 500.0, gap.rate);
    PassMoving(0.3);
    const double before = Position();
    const double begin = now_;
    const double decoder = before + gap.off;
    double last = before;
    for (; now_ < begin + 6.0; now_ += kTick) {
      ASSERT_GE(Position(), last);
      Report(decoder + (now_ - begin) * gap.rate);
      if (now_ == begin) {
        ASSERT_NEAR(Position(), gap.answer == kJumped ? decoder : before, 1e-6);
      }
      last = Position();
      // While the decoder is still well behind, the clock stays; half a second lets it come.
      if (gap.answer == kWaitedFor && (now_ - begin) * gap.rate < -gap.off - 0.5) {
        ASSERT_NEAR(Position(), before, 0.05);
      }
    }
    EXPECT_NEAR(Position(), decoder + (now_ - begin) * gap.rate, 0.1);
  }
}

TEST_F(PlayingClockTest, CreepsThroughAStallAndASeek) {
  Play(100.0, 20.0);
  PassMoving(0.3);
  clock_.SetStalled(true, Now());
  PassCreeping(10.0);
  clock_.SetStalled(false, Now());
  PassMoving(0.3);
  EXPECT_NEAR(Position(), 20.6, 0.1);

  clock_.BeginSeek(50.0, Now());
  EXPECT_EQ(Position(), 50.0);
  Report(20.7);  // from before the seek
  PassCreeping(3.0);
  clock_.EndSeek(49.8, Now());  // the picture that is on the screen at 50
  EXPECT_NEAR(Position(), 50.0, 0.01);

  clock_.BeginSeek(70.0, Now());
  clock_.EndSeek(64.0, Now());  // a medium that can only be entered there
  EXPECT_EQ(Position(), 64.0);
  clock_.EndSeek(10.0, Now());  // nobody asked
  EXPECT_EQ(Position(), 64.0);
}

TEST_F(PlayingClockTest, ASilentDecoderLimitsHowFarTheClockRuns) {
  const struct {
    double picture, rate;
    double at_least, at_most;  // how far it runs, seconds of the medium
  } silences[] = {{0.04, 1.0, 0.4, 0.7}, {0.0, 2.0, 0.8, 1.2}, {5.0, 1.0, 5.0, 11.0}};
  for (const auto& silence : silences) {
    SCOPED_TRACE(silence.picture);
    Play(100.0, 10.0, silence.rate, silence.picture);
    PassMoving(20.0);
    EXPECT_GE(Position(), 10.0 + silence.at_least);
    EXPECT_LE(Position(), 10.0 + silence.at_most);
    PassCreeping(5.0);
  }
}

TEST_F(PlayingClockTest, TheEndIsRunOutUnlessTheMediumIsCutOff) {
  const struct {
    double at, picture;
    bool run_out;
  } ends[] = {{59.6, 0.04, true}, {59.4, 0.04, false}, {58.6, 1.0, true},
              {58.4, 1.0, false}, {10.0, 0.04, false}, {60.0, 0.04, true}};
  for (const auto& end : ends) {
    SCOPED_TRACE(end.at);
    Play(60.0, end.at, 1.0, end.picture);
    Report(end.at);
    SetEnded(true);
    EXPECT_EQ(Position(), end.run_out ? end.at : 60.0);
    if (end.run_out && end.at < 60.0) PassMoving(60.0 - end.at - kTick);
    now_ += 2 * kTick;
    PassStandingAt(60.0, 1.0);
  }
}

TEST_F(PlayingClockTest, AWaitingClockRunsOutAtTheEndAllTheSame) {
  Play(60.0, 59.7);
  Report(59.3);  // sound outputs are behind by as much
  SetEnded(true);
  PassMoving(0.24);
  now_ += 0.1;
  PassStandingAt(60.0, 1.0);
}

TEST_F(PlayingClockTest, TheDecoderIsBelievedAboutAHeaderThatIsTooShort) {
  Play(10.0, 9.4);
  double last = 0.0;
  for (int i = 0; i < 200; ++i) {
    // Reports go to and fro, and every other reading falls between two of them.
    if (i % 2 == 0) Report(9.4 + i * kTick + (i % 4 == 0 ? 0.1 : -0.1));
    ASSERT_GT(Position(), last);
    last = Position();
    now_ += kTick;
  }
  EXPECT_NEAR(last, 15.4, 0.1);
  EXPECT_EQ(clock_.Duration(), 10.0);
  SetEnded(true);
  EXPECT_NEAR(clock_.Duration(), last, 0.05);
  PassStandingAt(clock_.Duration(), 0.5);
}

TEST_F(PlayingClockTest, AHaltedClockStandsExactly) {
  Play(60.0, 10.0);
  now_ += 0.12;
  Report(10.2);
  now_ += 0.05;
  const double running = Position();
  clock_.Halt(Now());
  Report(30.0);
  clock_.SetStalled(true, Now());
  clock_.SetStalled(false, Now());
  PassStandingAt(running, 5.0);
  clock_.BeginSeek(20.0, Now());
  clock_.EndSeek(19.9, Now());
  PassStandingAt(20.0, 5.0);
  clock_.Run(Now());
  PassMoving(0.24);
}

}  // namespace
}  // namespace kv
