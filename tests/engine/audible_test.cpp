// What is heard: a sound server of the test's own plays into the void, and its monitor is measured.

#include "engine/audio_levels.h"
#include "engine_world_qt.h"
#include "support/sound_server_qt.h"

#include <QProcess>
#include <QStandardPaths>

#include <array>
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <numbers>

namespace kv {
namespace {

constexpr int kSamplesPerSecond = 48000;
constexpr double kSilent = -80.0;  // decibels; what is below counts as nothing
constexpr double kTolerance = 1.0;

// Decibels of a full-scale constant, left and right.
using Levels = std::array<double, 2>;

// Listens to the monitor of the server.
class Recorder {
 public:
  Recorder() {
    parec_.start(QStringLiteral("parec"),
                 {QStringLiteral("--device=void.monitor"), QStringLiteral("--format=float32le"),
                  QStringLiteral("--rate=48000"), QStringLiteral("--channels=2"),
                  QStringLiteral("--latency-msec=10"), QStringLiteral("--raw")});
  }
  ~Recorder() {
    parec_.terminate();
    parec_.waitForFinished(3000);
  }
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;

  static bool Installed() {
    return !QStandardPaths::findExecutable(QStringLiteral("parec")).isEmpty();
  }

  // Of the last tenth of a second; silence before there is that much.
  Levels Heard() {
    constexpr qsizetype kFrameBytes = 2 * sizeof(float);
    constexpr qsizetype kFrames = kSamplesPerSecond / 10;
    bytes_ += parec_.readAllStandardOutput();
    // Whole frames are dropped, so that the channels stay where they are.
    const qsizetype spare = bytes_.size() / kFrameBytes - kFrames;
    Levels levels = {-200.0, -200.0};
    if (spare < 0) return levels;
    bytes_.remove(0, spare * kFrameBytes);
    for (std::size_t channel = 0; channel < 2; ++channel) {
      double power = 0.0;
      for (qsizetype i = 0; i < kFrames; ++i) {
        float sample = 0.0F;
        std::memcpy(
            &sample,
            bytes_.constData() + i * kFrameBytes + static_cast<qsizetype>(channel * sizeof(float)),
            sizeof sample);
        power += static_cast<double>(sample) * sample;
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
  constexpr std::uint32_t kSeconds = 20;
  constexpr std::uint32_t kBytes = kSeconds * kSamplesPerSecond * 4;
  std::string wave;
  const auto put = [&wave](std::uint32_t value, int bytes) {
    for (; bytes > 0; --bytes, value >>= 8) wave += static_cast<char>(value & 0xff);
  };
  wave += "RIFF";
  put(kBytes + 36, 4);
  wave += "WAVEfmt ";
  put(16, 4);
  put(1, 2);
  put(2, 2);
  put(kSamplesPerSecond, 4);
  put(kSamplesPerSecond * 4, 4);
  put(4, 2);
  put(16, 2);
  wave += "data";
  put(kBytes, 4);
  for (std::uint32_t i = 0; i < kSeconds * kSamplesPerSecond; ++i) {
    for (const double frequency : {440.0, 660.0}) {
      const double angle = 2.0 * std::numbers::pi * frequency * i / kSamplesPerSecond;
      put(static_cast<std::uint32_t>(std::lround(16384.0 * std::sin(angle))), 2);
    }
  }
  return wave;
}

bool IsNear(const Levels& heard, const Levels& wanted) {
  for (std::size_t channel = 0; channel < 2; ++channel) {
    if (wanted[channel] <= kSilent ? heard[channel] > kSilent
                                   : std::abs(heard[channel] - wanted[channel]) > kTolerance) {
      return false;
    }
  }
  return true;
}

struct Setting {
  int volume;
  int balance;
  Levels change;  // decibels
};

// Each follows the one before without a pause, as when sliders are moved.
constexpr std::array kSettings = {
    Setting{0, 0, {0.0, 0.0}},
    Setting{-1000, 0, {-10.0, -10.0}},
    Setting{-3000, 0, {-30.0, -30.0}},
    Setting{kSilence, 0, {-200.0, -200.0}},
    Setting{0, 1000, {-10.0, 0.0}},
    Setting{0, -1000, {0.0, -10.0}},
    Setting{0, kBalanceLimit, {-200.0, 0.0}},
    Setting{0, -kBalanceLimit, {0.0, -200.0}},
    Setting{-1000, 500, {-15.0, -10.0}},
    Setting{0, 0, {0.0, 0.0}},
};

TEST(Audible, VolumeAndBalanceAreDecibelsOfEachChannel) {
  if (!SoundServerProcess::Installed() || !Recorder::Installed()) {
    GTEST_SKIP() << "pulseaudio is not installed";
  }
  SoundServerProcess server(EngineWorld::SoundServer());
  server.Start();

  EngineWorld world;
  const std::string tone = world.Folder().Write("tone.wav", LongTone());
  auto graph = world.Engine().CreateGraph();
  ASSERT_TRUE(graph->RenderFile(tone));
  Recorder recorder;
  world.Pass(200);
  EXPECT_LT(recorder.Heard()[0], kSilent) << "halted, nothing is heard";

  ASSERT_TRUE(graph->Run());
  // A sine of half the scale.
  const double full = 20.0 * std::log10(0.5 / std::numbers::sqrt2);
  const auto expect_heard = [&](const Setting& setting) {
    SCOPED_TRACE(::testing::Message()
                 << "volume " << setting.volume << ", balance " << setting.balance);
    EXPECT_TRUE(graph->put_Volume(setting.volume));
    EXPECT_TRUE(graph->put_Balance(setting.balance));
    const Levels wanted = {full + setting.change[0], full + setting.change[1]};
    world.Becomes([&] { return IsNear(recorder.Heard(), wanted); }, 3000);
    world.Pass(150);
    const Levels heard = recorder.Heard();
    EXPECT_TRUE(IsNear(heard, wanted))
        << "heard " << heard[0] - full << " and " << heard[1] - full << " dB";
  };
  for (const Setting& setting : kSettings) expect_heard(setting);

  // What was set of one medium does not colour the next.
  expect_heard({-1000, 1000, {-20.0, -10.0}});
  graph = world.Engine().CreateGraph();
  ASSERT_TRUE(graph->RenderFile(tone));
  ASSERT_TRUE(graph->Run());
  expect_heard({0, 0, {0.0, 0.0}});

  ASSERT_TRUE(graph->Pause());
  EXPECT_TRUE(world.Becomes([&] { return recorder.Heard()[0] < kSilent; }, 2000));
}

}  // namespace
}  // namespace kv
