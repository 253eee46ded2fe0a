// The level meter's rules: the ballistics against the figures of their standards, the frames, and
// what a host may do inside one.

#include "visual/vu_meter.h"

#include "support/virtual_time.h"
#include "visual/sample_ring.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <utility>

namespace kv {
namespace {

using Sound = std::vector<std::uint8_t>;

constexpr int kRate = 44100;

Sound Sine(double hertz, double decibels, double seconds, int rate = kRate) {
  Sound sound(static_cast<std::size_t>(std::lround(seconds * rate)));
  const double amplitude = 128.0 * std::pow(10.0, decibels / 20.0);
  for (std::size_t i = 0; i < sound.size(); ++i) {
    const double angle = 2.0 * std::numbers::pi * hertz * static_cast<double>(i) / rate;
    const long sample = std::lround(128.0 + amplitude * std::sin(angle));
    sound[i] = static_cast<std::uint8_t>(std::min(sample, 255L));
  }
  return sound;
}

Sound Silence(double seconds, int rate = kRate) {
  return Sound(static_cast<std::size_t>(std::lround(seconds * rate)), kSilentSample);
}

TEST(VuNeedle, MovesAsAStandardVolumeIndicator) {
  VuNeedle needle;
  needle.Reset(kRate);
  const Sound tone = Sine(1000, kReferenceLevel, 2.0);
  double reached = 0.0;
  double highest = 0.0;
  for (std::size_t i = 0; i < tone.size(); ++i) {
    needle.Feed(std::span(tone).subspan(i, 1));
    if (reached == 0.0 && needle.Deflection() >= 0.99) reached = static_cast<double>(i) / kRate;
    highest = std::max(highest, needle.Deflection());
  }
  EXPECT_NEAR(reached, 0.300, 0.030) << "seconds to 99 %";
  EXPECT_GE(highest, 1.010);
  EXPECT_LE(highest, 1.015);
  EXPECT_NEAR(needle.Deflection(), 1.0, 0.01) << "0 VU";
  EXPECT_FALSE(needle.PeakLamp());

  needle.Feed(Silence(0.300));
  EXPECT_NEAR(needle.Deflection(), 0.01, 0.01) << "falls as it rises";
  needle.Feed(Sine(1000, kReferenceLevel - 20.0, 2.0));
  EXPECT_NEAR(needle.Deflection(), DeflectionOfVu(-20.0), 0.01);
  needle.Feed(Sine(1000, 0.0, 2.0));
  EXPECT_LT(needle.Deflection(), 1.5) << "the stop";
  EXPECT_TRUE(needle.PeakLamp());
  needle.Feed(Silence(1.0));
  EXPECT_FALSE(needle.PeakLamp());
}

TEST(VuBars, ReadTonesAndBurstsAsTheStandardSays) {
  const struct {
    double seconds, level, tolerance;
  } bursts[] = {{2.0, 0.0, 0.3}, {0.010, -1.0, 0.5}, {0.003, -4.0, 1.0}, {0.0004, -15.0, 4.0}};
  for (const auto& burst : bursts) {
    SCOPED_TRACE(burst.seconds);
    VuBars bars;
    bars.Reset(kRate);
    bars.Feed(Sine(5000, 0.0, burst.seconds));
    EXPECT_NEAR(bars.Levels()[0].peak, burst.level, burst.tolerance);
  }
}

TEST(VuBars, FallBackAndPeaksFollowTheProperty) {
  for (const int times : {1, 3}) {
    SCOPED_TRACE(times);
    VuBars bars;
    bars.Reset(kRate);
    bars.SetFallBack(times);
    bars.Feed(Sine(1000, 0.0, 1.0));
    const double level = bars.Levels()[0].level;
    bars.Feed(Silence(0.9));
    EXPECT_NEAR(bars.Levels()[0].peak, level, 0.3) << "stands";
    bars.Feed(Silence(0.8));
    EXPECT_NEAR(bars.Levels()[0].level, level - 20.0 * times, 0.5) << "20 dB in 1.7 s";
    bars.Feed(Silence(1.0));
    EXPECT_NEAR(bars.Levels()[0].peak, level - 20.0 * times, 1.0) << "a second later";
  }
}

TEST(VuBars, ThirdsOfAnOctaveStandApart) {
  for (const int rate : {8000, 44100}) {
    SCOPED_TRACE(rate);
    VuBars bars;
    bars.Reset(rate);
    ASSERT_LT(bars.Levels().back().hertz, rate / 2.0);
    bars.Feed(Sine(1000, -6.0, 1.0, rate));
    for (const BarLevel& bar : bars.Levels()) {
      if (bar.hertz == 1000.0) {
        EXPECT_NEAR(bar.level, -6.0, 1.0);
      }
      if (bar.hertz > 0.0 && (bar.hertz <= 500.0 || bar.hertz >= 2000.0)) {
        EXPECT_LT(bar.level, -28.0) << bar.hertz;
      }
    }
    bars.Feed(Silence(9.0, rate));
    for (const BarLevel& bar : bars.Levels()) EXPECT_EQ(bar.level, kLowestLevel) << bar.hertz;
  }
}

TEST(VuTrace, HoldsAToneStillWhereverItIsCut) {
  for (const double hertz : {100.0, 1234.0}) {
    SCOPED_TRACE(hertz);
    VuTrace trace;
    trace.Reset(11025);
    Sound tone = Sine(hertz, -6.0, 1.0, 11025);
    std::span<const std::uint8_t> rest(tone);
    while (rest.size() > 280) {
      trace.Feed(rest.first(277));
      rest = rest.subspan(277);
      if (rest.size() > 10000) continue;  // until it is full
      const auto points = trace.Points();
      ASSERT_EQ(points.size(), trace.Length() + 2);
      const double begin = points[0] + (points[1] - points[0]) * trace.Shift();
      EXPECT_NEAR(begin, 0.0, 0.02);
      EXPECT_LT(points[0], points[1]);
    }
    EXPECT_NEAR(trace.Highest(), 0.5, 0.02);
    EXPECT_NEAR(trace.Lowest(), -0.5, 0.02);
  }
}

// What the meter is given is what the test put in.
struct FakeCapture : AudioCapture {
  std::string Start(const CaptureFormat& wanted) override {
    format = wanted;
    if (refusal.empty()) ++running;
    return refusal;
  }
  void Stop() override { --running; }
  void Take(Sound& sound) override { sound = std::exchange(waiting, {}); }
  CaptureFormat format;
  std::string refusal;
  int running = 0;
  Sound waiting;
};

struct FakeView : VuMeterView {
  void ShowFrame(bool Cancel) override { ++(Cancel ? cancelled : shown); }
  void PropertiesChanged() override {}
  int shown = 0, cancelled = 0;
};

class VuMeterTest : public ::testing::Test {
 protected:
  VuMeterTest() { meter->SetStyle(static_cast<int>(VuStyle::kNeedle)); }

  VirtualTime time;
  FakeCapture capture;
  FakeView view;
  std::unique_ptr<VuMeter> meter =
      std::make_unique<VuMeter>(time, capture, view, WindowMeterProperties());
};

TEST_F(VuMeterTest, TellsWhyItCannotStart) {
  capture.refusal = "no threads";
  EXPECT_EQ(meter->Start(), "no threads");
  EXPECT_FALSE(meter->Running());
  EXPECT_EQ(time.ActiveTimers(), 0);
  capture.refusal.clear();
  EXPECT_EQ(meter->Start(), "");
  EXPECT_EQ(meter->Start(), "") << "it runs already";
  EXPECT_EQ(capture.running, 1);
  meter->Stop();
  meter->Stop();
  EXPECT_EQ(capture.running, 0);
  EXPECT_EQ(time.ActiveTimers(), 0);
}

TEST_F(VuMeterTest, KeepsWhatIsOutOfRange) {
  VuMeterProperties absent;  // as an empty configuration gives it
  absent.buffersizebytes = absent.samplespersec = absent.numberofbuffers = absent.RefreshRate = 0;
  absent.vustyle = 3;
  meter->SetProperties(absent);
  EXPECT_EQ(meter->Style(), 2);
  meter->Start();
  EXPECT_EQ(capture.format.samplespersec, 11025);
  EXPECT_EQ(capture.format.numberofbuffers, 8);
  time.Advance(1000);
  EXPECT_EQ(view.shown, 40);
}

TEST_F(VuMeterTest, FramesHoldAllSoundSinceTheOneBefore) {
  Sound samples;
  std::int32_t level = 0;
  meter->Frame = [&](Sound& Samples, std::int32_t& Count, std::int32_t Level, bool&) {
    EXPECT_EQ(Count, static_cast<std::int32_t>(Samples.size()));
    samples = Samples;
    level = Level;
    Samples.clear();  // the host's to spoil
  };
  meter->Start();
  const Sound tone = Sine(1000, kReferenceLevel, 2.0, 11025);
  capture.waiting = tone;  // two seconds at once: the painter slept
  time.Advance(25);
  EXPECT_EQ(samples, tone);
  EXPECT_EQ(level, 45);
  time.Advance(100);
  EXPECT_EQ(samples, Sound()) << "pieces may come late";
  EXPECT_NEAR(meter->Needle().Deflection(), 1.0, 0.02);
  time.Advance(600);
  ASSERT_FALSE(samples.empty()) << "it is over";
  EXPECT_EQ(samples, Sound(samples.size(), kSilentSample));
  EXPECT_LT(meter->Needle().Deflection(), 0.02);
}

TEST_F(VuMeterTest, AHostMayDoAnythingInAFrame) {
  meter->Frame = [](Sound&, std::int32_t&, std::int32_t, bool& Cancel) { Cancel = true; };
  meter->Start();
  capture.waiting = Sine(1000, 0.0, 1.0, 11025);
  time.Advance(25);
  EXPECT_EQ(view.cancelled, 1);
  EXPECT_EQ(meter->Needle().Deflection(), 0.0);

  meter->Frame = [&](Sound&, std::int32_t&, std::int32_t, bool&) { meter->Stop(); };
  time.Advance(100);
  EXPECT_EQ(view.shown, 0);
  EXPECT_FALSE(meter->Running());

  meter->Frame = [&](Sound&, std::int32_t&, std::int32_t, bool&) { meter.reset(); };
  meter->Start();
  time.Advance(100);
  EXPECT_EQ(capture.running, 0);
  EXPECT_EQ(view.shown, 0);
}

TEST(SampleRing, LetsTheOldestGo) {
  // 16 bytes x 2, but a quarter of a second is 250 samples.
  SampleRing ring({.samplespersec = 1000, .buffersizebytes = 16, .numberofbuffers = 2});
  Sound sound;
  ring.Write(Sound(200, 1));
  ring.WriteSilence(20);
  ring.Write(Sound(100, 2));
  ring.Take(sound);
  Sound wanted(130, 1);
  wanted.insert(wanted.end(), 20, kSilentSample);
  wanted.insert(wanted.end(), 100, 2);
  EXPECT_EQ(sound, wanted);
  ring.Take(sound);
  EXPECT_TRUE(sound.empty());
  ring.Write(Sound(1000, 3));
  ring.Take(sound);
  EXPECT_EQ(sound, Sound(250, 3));
}

}  // namespace
}  // namespace kv
