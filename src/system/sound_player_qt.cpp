#include "system/sound_player_qt.h"

#include <pulse/context.h>
#include <pulse/def.h>
#include <pulse/introspect.h>
#include <pulse/mainloop.h>
#include <pulse/operation.h>
#include <pulse/sample.h>
#include <pulse/stream.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <string_view>
#include <utility>

namespace kv {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kAnswerLimit{3};  // for the server to connect and tell its outputs
constexpr std::chrono::seconds kGrace{5};        // beyond the length of the sound itself
constexpr int kTurnMicroseconds = 20000;         // the longest that a stop waits

// The server's stand-in for a machine without any output.
constexpr std::string_view kNullSink = "auto_null";

// In the order of WaveSample.
constexpr std::array<pa_sample_format_t, 5> kFormats = {
    PA_SAMPLE_U8, PA_SAMPLE_S16LE, PA_SAMPLE_S24LE, PA_SAMPLE_S32LE, PA_SAMPLE_FLOAT32LE};

// One sound on one connection; lives on the sound's thread.
class Playback {
 public:
  Playback(const WaveSound& sound, bool loop, const std::atomic<bool>& stop)
      : sound_(sound), loop_(loop), stop_(stop), main_loop_(pa_mainloop_new()) {
    if (main_loop_ == nullptr) return;
    context_ = pa_context_new(pa_mainloop_get_api(main_loop_), "Kestrelview");
  }

  Playback(const Playback&) = delete;
  Playback& operator=(const Playback&) = delete;

  ~Playback() {
    if (stream_ != nullptr) {
      pa_stream_disconnect(stream_);
      pa_stream_unref(stream_);
    }
    if (context_ != nullptr) {
      pa_context_disconnect(context_);
      pa_context_unref(context_);
    }
    if (main_loop_ != nullptr) pa_mainloop_free(main_loop_);
  }

  SoundOutcome Run() {
    if (context_ == nullptr ||
        pa_context_connect(context_, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) {
      return SoundOutcome::kNoOutput;
    }
    const auto answer_by = Clock::now() + kAnswerLimit;
    const bool connected =
        TurnUntil(answer_by, [this] { return pa_context_get_state(context_) == PA_CONTEXT_READY; });
    if (connected) {
      Finish(pa_context_get_sink_info_list(context_, &Playback::OnSink, this), answer_by);
    }
    if (stop_) return SoundOutcome::kStopped;
    if (!connected || !has_output_) return SoundOutcome::kNoOutput;
    if (!sound_.frames.empty()) Play(answer_by);
    return stop_ ? SoundOutcome::kStopped : SoundOutcome::kEnded;
  }

 private:
  // Turns the loop until `done`, the limit, a stop or the end of the connection.
  template <typename Done>
  bool TurnUntil(Clock::time_point limit, Done done) {
    while (!done()) {
      if (stop_ || Clock::now() >= limit) return false;
      if (!PA_CONTEXT_IS_GOOD(pa_context_get_state(context_))) return false;
      if (pa_mainloop_prepare(main_loop_, kTurnMicroseconds) < 0) return false;
      if (pa_mainloop_poll(main_loop_) < 0 || pa_mainloop_dispatch(main_loop_) < 0) return false;
    }
    return true;
  }

  void Finish(pa_operation* operation, Clock::time_point limit) {
    if (operation == nullptr) return;
    TurnUntil(limit,
              [operation] { return pa_operation_get_state(operation) != PA_OPERATION_RUNNING; });
    pa_operation_cancel(operation);  // one that is done takes no harm
    pa_operation_unref(operation);
  }

  void Play(Clock::time_point answer_by) {
    pa_sample_spec format{};
    format.format = kFormats.at(static_cast<std::size_t>(sound_.sample));
    format.rate = sound_.rate;
    format.channels = static_cast<std::uint8_t>(sound_.channels);
    stream_ = pa_stream_new(context_, "Kestrelview", &format, nullptr);
    if (stream_ == nullptr || pa_stream_connect_playback(stream_, nullptr, nullptr,
                                                         PA_STREAM_NOFLAGS, nullptr, nullptr) < 0) {
      return;
    }
    if (!TurnUntil(answer_by, [this] { return StreamState() != PA_STREAM_CREATING; })) return;

    const auto length = std::chrono::duration<double>(sound_.Seconds());
    const auto limit =
        loop_ ? Clock::time_point::max()
              : Clock::now() + kGrace + std::chrono::duration_cast<Clock::duration>(length);
    if (TurnUntil(limit, [this] { return !Feed(); }) && StreamState() == PA_STREAM_READY) {
      Finish(pa_stream_drain(stream_, nullptr, nullptr), limit);
    }
  }

  pa_stream_state_t StreamState() const { return pa_stream_get_state(stream_); }

  // Writes what the server has room for. False when all is written or the stream has failed.
  bool Feed() {
    if (StreamState() != PA_STREAM_READY) return false;
    std::size_t room = pa_stream_writable_size(stream_);
    if (room == static_cast<std::size_t>(-1)) return false;
    room -= room % sound_.frame_bytes;
    while (room > 0) {
      if (written_ == sound_.frames.size()) {
        if (!loop_) return false;
        written_ = 0;
      }
      const std::size_t size = std::min(room, sound_.frames.size() - written_);
      const char* from = sound_.frames.data() + written_;
      if (pa_stream_write(stream_, from, size, nullptr, 0, PA_SEEK_RELATIVE) < 0) return false;
      written_ += size;
      room -= size;
    }
    return true;
  }

  static void OnSink(pa_context* /*context*/, const pa_sink_info* sink, int /*end*/, void* self) {
    if (sink != nullptr && sink->name != nullptr && sink->name != kNullSink) {
      static_cast<Playback*>(self)->has_output_ = true;
    }
  }

  const WaveSound& sound_;
  bool loop_;
  const std::atomic<bool>& stop_;
  pa_mainloop* main_loop_;
  pa_context* context_ = nullptr;
  pa_stream* stream_ = nullptr;
  bool has_output_ = false;
  std::size_t written_ = 0;
};

}  // namespace

SoundPlayer::SoundPlayer() = default;

SoundPlayer::~SoundPlayer() {
  Stop();
}

void SoundPlayer::Start(WaveSound sound, bool loop, std::function<void(SoundOutcome)> on_done) {
  Stop();
  stop_ = false;
  playing_ = true;
  thread_ = std::thread([this, sound = std::move(sound), loop, on_done = std::move(on_done)] {
    const SoundOutcome outcome = Playback(sound, loop, stop_).Run();
    playing_ = false;
    on_done(outcome);
  });
}

void SoundPlayer::Stop() {
  stop_ = true;
  if (thread_.joinable()) thread_.join();
}

}  // namespace kv
