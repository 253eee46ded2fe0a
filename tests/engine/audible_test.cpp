// What is heard: a sound server of the test's own plays into the void, and its monitor is measured.

#include "engine/audio_levels.h"
#include "engine_world_qt.h"
#include "support/sound_server_qt.h"
#include "system/wave_bytes.h"

#include <QProcess>
#include <QStandardPaths>

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace kv {
namespace {

constexpr int kSamplesPerSecond = 48000;
constexpr double kSilent = -80.0;  // decibels; what is below counts as nothing

// Decibels of a full-scale constant, left and right.
using Levels = std::array<double, 2>;

// Listens to the monitor of the server.
class Recorder {
 public:
  Recorder() {
    const QString words = QStringLiteral(
        "--device=void.monitor --format=float32le --rate=48000 --channels=2 --latency-msec=10 "
        "--raw");
    parec_.start(QStringLiteral("parec"), words.split(QLatin1Char(' ')));
  }
  ~Recorder() {
    parec_.terminate();
    parec_.waitForFinished(3000);
  }
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;

  // Of the last tenth of a second; silence before there is that much.
  Levels Heard() {
    using Frame = std::array<float, 2>;
    constexpr qsizetype kFrames = kSamplesPerSecond / 10;
    bytes_ += parec_.readAllStandardOutput();
    // Whole frames are dropped, so that the channels stay where they are.
    const qsizetype spare = bytes_.size() / qsizetype{sizeof(Frame)} - kFrames;
    if (spare < 0) return {-200.0, -200.0};
    bytes_.remove(0, spare * qsizetype{sizeof(Frame)});
    Levels levels{};
    const auto* const frames = reinterpret_cast<const Frame*>(bytes_.constData());
    for (std::size_t channel = 0; channel < 2; ++channel) {
      double power = 0.0;
      for (qsizetype i = 0; i < kFrames; ++i) {
        const double sample = static_cast<double>(frames[i][channel]);
        power += sample * sample;
      }
      levels[channel] = 10.0 * std::log10(power / kFrames + 1e-20);
    }
    return levels;
  }

 private:
  QProcess parec_;
  QByteArray bytes_;
};

// A stereo sine of half the full scale, 440 Hz on the left and 660 Hz on the right.
std::string LongTone() {
  std::string samples;
  for (int i = 0; i < 20 * kSamplesPerSecond; ++i) {
    for (const double frequency : {440.0, 660.0}) {
      const double angle = 2.0 * std::numbers::pi * frequency * i / kSamplesPerSecond;
      samples += Little(static_cast<std::uint32_t>(std::lround(16384.0 * std::sin(angle))), 2);
    }
  }
  return Wave(Format(1, 2, kSamplesPerSecond, 16) + Chunk("data", samples));
}

bool IsNear(const Levels& heard, const Levels& wanted) {
  for (std::size_t channel = 0; channel < 2; ++channel) {
    const bool silent = wanted[channel] <= kSilent;
    if (silent ? heard[channel] > kSilent : std::abs(heard[channel] - wanted[channel]) > 1.0) {
      return false;
    }
  }
  return true;
}

TEST(Audible, VolumeAndBalanceAreDecibelsOfEachChannel) {
  if (!SoundServerProcess::Installed() ||
      QStandardPaths::findExecutable(QStringLiteral("parec")).isEmpty()) {
    GTEST_SKIP() << "pulseaudio is not installed";
  }
  SoundServerProcess server(EngineWorld::SoundServer());
  server.Start();

  EngineWorld world;
  const std::string tone = world.Folder().Write("tone.wav", LongTone());
  auto graph = world.Graph();
  ASSERT_TRUE(graph->RenderFile(tone));
  Recorder recorder;
  world.Pass(200);
  EXPECT_LT(recorder.Heard()[0], kSilent) << "halted, nothing is heard";

  ASSERT_TRUE(graph->Run());
  // A sine of half the scale.
  const double full = 20.0 * std::log10(0.5 / std::numbers::sqrt2);
  const auto expect_heard = [&](int volume, int balance, const Levels& change) {
    SCOPED_TRACE(::testing::Message() << "volume " << volume << ", balance " << balance);
    EXPECT_TRUE(graph->put_Volume(volume));
    EXPECT_TRUE(graph->put_Balance(balance));
    const Levels wanted = {full + change[0], full + change[1]};
    world.Becomes([&] { return IsNear(recorder.Heard(), wanted); }, 3000);
    world.Pass(150);
    const Levels heard = recorder.Heard();
    EXPECT_TRUE(IsNear(heard, wanted))
        << "heard " << heard[0] - full << " and " << heard[1] - full << " dB";
  };
  // Each follows the one before without a pause, as when sliders are moved.
  expect_heard(0, 0, {0.0, 0.0});
  expect_heard(-3000, 0, {-30.0, -30.0});
  expect_heard(kSilence, 0, {-200.0, -200.0});
  expect_heard(0, 1000, {-10.0, 0.0});
  expect_heard(0, kBalanceLimit, {-200.0, 0.0});
  expect_heard(0, -kBalanceLimit, {0.0, -200.0});
  expect_heard(-1000, 500, {-15.0, -10.0});
  // What was set of one medium does not colour the next.
  graph = world.Graph();
  ASSERT_TRUE(graph->RenderFile(tone));
  ASSERT_TRUE(graph->Run());
  expect_heard(0, 0, {0.0, 0.0});

  ASSERT_TRUE(graph->Pause());
  EXPECT_TRUE(world.Becomes([&] { return recorder.Heard()[0] < kSilent; }, 2000));
}

}  // namespace
}  // namespace kv
