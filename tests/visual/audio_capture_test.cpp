// The real capture on sound servers of the test's own: one that plays into the void, none, one that
// dies and comes back, and one that accepts and never answers.

#include "support/sound_server_qt.h"
#include "support/temp_folder.h"
#include "visual/audio_capture_pulse.h"

#include <QElapsedTimer>
#include <QLocalServer>
#include <QProcess>
#include <QTest>
#include <pulse/context.h>
#include <pulse/mainloop.h>
#include <pulse/stream.h>

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <thread>

namespace kv {
namespace {

// Plays a constant from this process, as its own sink input.
class Tone {
 public:
  explicit Tone(std::uint8_t sample)
      : loop_(pa_mainloop_new()), thread_([this, sample] { Play(sample); }) {}
  ~Tone() {
    stop_ = true;
    pa_mainloop_wakeup(loop_);
    thread_.join();
    pa_mainloop_free(loop_);
  }
  Tone(const Tone&) = delete;
  Tone& operator=(const Tone&) = delete;

 private:
  void Play(std::uint8_t sample) {
    pa_context* context = pa_context_new(pa_mainloop_get_api(loop_), "tone");
    pa_context_connect(context, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr);
    pa_stream* stream = nullptr;
    std::vector<std::uint8_t> samples;
    while (!stop_ && PA_CONTEXT_IS_GOOD(pa_context_get_state(context))) {
      pa_mainloop_iterate(loop_, 1, nullptr);
      if (pa_context_get_state(context) != PA_CONTEXT_READY) continue;
      if (stream == nullptr) {
        const pa_sample_spec spec = {PA_SAMPLE_U8, 11025, 1};
        stream = pa_stream_new(context, "tone", &spec, nullptr);
        pa_stream_connect_playback(stream, nullptr, nullptr, PA_STREAM_NOFLAGS, nullptr, nullptr);
      }
      if (pa_stream_get_state(stream) != PA_STREAM_READY) continue;
      samples.assign(pa_stream_writable_size(stream), sample);
      if (!samples.empty()) {
        pa_stream_write(stream, samples.data(), samples.size(), nullptr, 0, PA_SEEK_RELATIVE);
      }
    }
    if (stream != nullptr) pa_stream_unref(stream);
    pa_context_disconnect(context);
    pa_context_unref(context);
  }

  pa_mainloop* loop_;
  std::atomic<bool> stop_{false};
  std::thread thread_;
};

class AudioCaptureTest : public ::testing::Test {
 protected:
  void SetUp() override {
    setenv("PULSE_SERVER", ("unix:" + Socket()).c_str(), 1);
    setenv("HOME", folder_.Path().c_str(), 1);
  }

  std::string Socket() const { return folder_.Path("sound"); }

  // Another program, whose sound is none of ours.
  void StartOther() {
    const std::string file = folder_.Write("other", std::string(1'000'000, '0'));
    const QString words = QStringLiteral("--raw --format=u8 --rate=11025 --channels=1 ");
    other_.start(QStringLiteral("pacat"),
                 (words + QString::fromStdString(file)).split(QLatin1Char(' ')));
    EXPECT_TRUE(other_.waitForStarted());
  }

  // Whether that sample is heard, and nothing else once it is, for as long as `hold` milliseconds.
  bool Hears(std::uint8_t sample, int hold = 300) {
    Sound sound;
    const auto heard = [&] {
      capture_.Take(sound);
      return std::find(sound.begin(), sound.end(), sample) != sound.end();
    };
    if (!QTest::qWaitFor(heard, 8000)) return false;
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < hold) {
      QTest::qWait(20);
      capture_.Take(sound);
      if (std::any_of(sound.begin(), sound.end(), [&](int s) {
            return std::abs(s - sample) > 1 && std::abs(s - kSilentSample) > 1;
          })) {
        return false;
      }
    }
    return true;
  }

  using Sound = std::vector<std::uint8_t>;
  static constexpr CaptureFormat kFormat = {
      .samplespersec = 11025, .buffersizebytes = 64, .numberofbuffers = 16};

  TempFolder folder_;
  SoundServerProcess server_{Socket()};
  QProcess other_;
  PulseCapture capture_;
};

TEST_F(AudioCaptureTest, HearsThisProcessAloneThroughEveryChange) {
  if (!SoundServerProcess::Installed()) GTEST_SKIP() << "pulseaudio is not installed";
  EXPECT_EQ(capture_.Start(kFormat), "") << "no server yet";
  server_.Start();
  StartOther();
  {
    const Tone first(160);
    EXPECT_TRUE(Hears(160, 1000)) << "the server came later";
  }
  {
    const Tone second(200);
    EXPECT_TRUE(Hears(200)) << "another medium, another sink input";
    server_.Stop();
  }
  server_.Start();
  const Tone third(90);
  EXPECT_TRUE(Hears(90)) << "the server came back";
  capture_.Stop();
  EXPECT_EQ(capture_.Start(kFormat), "");
  EXPECT_TRUE(Hears(90)) << "started while it sounds";
}

TEST_F(AudioCaptureTest, IsNotHeldUpByAServerThatNeverAnswers) {
  QLocalServer mute;
  ASSERT_TRUE(mute.listen(QString::fromStdString(Socket())));
  QElapsedTimer timer;
  {
    PulseCapture capture;
    timer.start();
    EXPECT_EQ(capture.Start(kFormat), "");
    EXPECT_LT(timer.elapsed(), 200);
    EXPECT_TRUE(mute.waitForNewConnection(5000));
    QTest::qWait(50);
    timer.restart();
    for (int i = 0; i < 20; ++i) {
      capture.Stop();
      EXPECT_EQ(capture.Start(kFormat), "");
    }
  }
  EXPECT_LT(timer.elapsed(), 1000);
}

}  // namespace
}  // namespace kv
