#include "visual/audio_capture_pulse.h"

#include "visual/sample_ring.h"

#include <pulse/context.h>
#include <pulse/def.h>
#include <pulse/introspect.h>
#include <pulse/mainloop.h>
#include <pulse/operation.h>
#include <pulse/proplist.h>
#include <pulse/sample.h>
#include <pulse/stream.h>
#include <pulse/subscribe.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <span>
#include <string>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace kv {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kFarewell{500};
constexpr std::chrono::seconds kRetry{1};
constexpr int kRetryMicroseconds = 1'000'000;
constexpr int kForever = -1;
constexpr int kFragmentsPerSecond = 100;
constexpr std::uint32_t kDefault = static_cast<std::uint32_t>(-1);

}  // namespace

// One capture, from Start to Stop. `Run` and the callbacks are on its thread, `End` and `WaitEnded`
// on any.
class PulseCapture::Session {
 public:
  explicit Session(const CaptureFormat& format)
      : format_(format), ring_(format), loop_(pa_mainloop_new()) {}
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session() {
    if (loop_ != nullptr) pa_mainloop_free(loop_);
  }

  bool Valid() const { return loop_ != nullptr; }
  SampleRing& Ring() { return ring_; }

  void Run() {
    while (!Stopping()) {
      if (Connect()) Converse();
      Disconnect();
      std::unique_lock lock(mutex_);
      changed_.wait_for(lock, kRetry, [this] { return stop_; });
    }
    const std::lock_guard lock(mutex_);
    ended_ = true;
    changed_.notify_all();
  }

  void End() {
    {
      const std::lock_guard lock(mutex_);
      stop_ = true;
      changed_.notify_all();
    }
    pa_mainloop_wakeup(loop_);
  }

  bool WaitEnded(Clock::time_point limit) {
    std::unique_lock lock(mutex_);
    return changed_.wait_until(lock, limit, [this] { return ended_; });
  }

 private:
  bool Stopping() {
    const std::lock_guard lock(mutex_);
    return stop_;
  }

  bool Connect() {
    context_ = pa_context_new(pa_mainloop_get_api(loop_), "Kestrelview");
    if (context_ == nullptr) return false;
    pa_context_set_state_callback(context_, &Session::OnContextState, this);
    // Starting a server is left to the sound output.
    return pa_context_connect(context_, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) >= 0;
  }

  void Disconnect() {
    CloseStream();
    looking_ = look_again_ = stream_failed_ = false;
    if (context_ == nullptr) return;
    pa_context_set_state_callback(context_, nullptr, nullptr);
    pa_context_set_subscribe_callback(context_, nullptr, nullptr);
    pa_context_disconnect(context_);
    pa_context_unref(context_);
    context_ = nullptr;
  }

  // Until the connection or the capture ends.
  void Converse() {
    while (!Stopping() && PA_CONTEXT_IS_GOOD(pa_context_get_state(context_))) {
      const bool retry = stream_failed_;
      if (pa_mainloop_prepare(loop_, retry ? kRetryMicroseconds : kForever) < 0) return;
      if (pa_mainloop_poll(loop_) < 0) return;
      const int events = pa_mainloop_dispatch(loop_);
      if (events < 0) return;
      if (retry && events == 0) {
        stream_failed_ = false;
        Look();
      }
    }
  }

  // Asks for the sink inputs. Reports that come while the answer is awaited lead to one more
  // question, however many there are.
  void Look() {
    if (looking_) {
      look_again_ = true;
      return;
    }
    looking_ = true;
    found_ = PA_INVALID_INDEX;
    found_corked_ = true;
    Forget(pa_context_get_sink_input_info_list(context_, &Session::OnSinkInput, this));
  }

  static void Forget(pa_operation* operation) {
    if (operation != nullptr) pa_operation_unref(operation);
  }

  static void OnContextState(pa_context* context, void* self) {
    if (pa_context_get_state(context) != PA_CONTEXT_READY) return;
    pa_context_set_subscribe_callback(context, &Session::OnReport, self);
    Forget(pa_context_subscribe(context, PA_SUBSCRIPTION_MASK_SINK_INPUT, nullptr, nullptr));
    static_cast<Session*>(self)->Look();
  }

  static void OnReport(pa_context* /*context*/, pa_subscription_event_type_t /*type*/,
                       std::uint32_t /*index*/, void* self) {
    static_cast<Session*>(self)->Look();
  }

  static void OnSinkInput(pa_context* /*context*/, const pa_sink_input_info* input, int end,
                          void* self) {
    if (end == 0) {
      static_cast<Session*>(self)->Consider(*input);
    } else {
      static_cast<Session*>(self)->Looked();
    }
  }

  // Of several sink inputs of ours the newest that is not held counts.
  void Consider(const pa_sink_input_info& input) {
    const char* process = pa_proplist_gets(input.proplist, PA_PROP_APPLICATION_PROCESS_ID);
    if (process == nullptr || process != std::to_string(getpid())) return;
    const bool corked = input.corked != 0;
    const bool better = found_ == PA_INVALID_INDEX || (found_corked_ && !corked) ||
                        (found_corked_ == corked && input.index > found_);
    if (!better) return;
    found_ = input.index;
    found_corked_ = corked;
  }

  void Looked() {
    looking_ = false;
    if (found_ != followed_) {
      CloseStream();
      if (found_ != PA_INVALID_INDEX) OpenStream();
    }
    if (!look_again_) return;
    look_again_ = false;
    Look();
  }

  void OpenStream() {
    stream_failed_ = true;
    pa_sample_spec spec{};
    spec.format = PA_SAMPLE_U8;
    spec.rate = static_cast<std::uint32_t>(format_.samplespersec);
    spec.channels = 1;
    stream_ = pa_stream_new(context_, "Kestrelview", &spec, nullptr);
    if (stream_ == nullptr) return;
    pa_stream_set_state_callback(stream_, &Session::OnStreamState, this);
    pa_stream_set_read_callback(stream_, &Session::OnSound, this);
    // Before it connects: until then it would be the monitor of all that sounds on the machine.
    if (pa_stream_set_monitor_stream(stream_, found_) < 0) return;
    pa_buffer_attr attributes{};
    attributes.maxlength = kDefault;
    attributes.tlength = attributes.prebuf = attributes.minreq = kDefault;
    // Smaller pieces than ten milliseconds would only wake the server and us more often.
    attributes.fragsize = static_cast<std::uint32_t>(
        std::max(format_.buffersizebytes, format_.samplespersec / kFragmentsPerSecond));
    const auto flags =
        static_cast<pa_stream_flags_t>(PA_STREAM_ADJUST_LATENCY | PA_STREAM_DONT_MOVE);
    if (pa_stream_connect_record(stream_, nullptr, &attributes, flags) < 0) return;
    stream_failed_ = false;
    followed_ = found_;
  }

  void CloseStream() {
    followed_ = PA_INVALID_INDEX;
    if (stream_ == nullptr) return;
    pa_stream_set_state_callback(stream_, nullptr, nullptr);
    pa_stream_set_read_callback(stream_, nullptr, nullptr);
    pa_stream_disconnect(stream_);
    pa_stream_unref(stream_);
    stream_ = nullptr;
  }

  // A stream ends with its sink input, and when that moves to another output.
  static void OnStreamState(pa_stream* stream, void* self) {
    if (PA_STREAM_IS_GOOD(pa_stream_get_state(stream))) return;
    auto* session = static_cast<Session*>(self);
    session->followed_ = PA_INVALID_INDEX;
    session->stream_failed_ = true;
  }

  static void OnSound(pa_stream* stream, std::size_t /*bytes*/, void* self) {
    SampleRing& ring = static_cast<Session*>(self)->ring_;
    const void* data = nullptr;
    std::size_t bytes = 0;
    while (pa_stream_peek(stream, &data, &bytes) >= 0 && bytes > 0) {
      if (data != nullptr) {
        ring.Write(std::span(static_cast<const std::uint8_t*>(data), bytes));
      } else {
        ring.WriteSilence(bytes);
      }
      pa_stream_drop(stream);
    }
  }

  const CaptureFormat format_;
  SampleRing ring_;
  pa_mainloop* const loop_;

  std::mutex mutex_;  // of the three below
  std::condition_variable changed_;
  bool stop_ = false;
  bool ended_ = false;

  // The thread's own.
  pa_context* context_ = nullptr;
  pa_stream* stream_ = nullptr;
  std::uint32_t followed_ = PA_INVALID_INDEX;
  std::uint32_t found_ = PA_INVALID_INDEX;
  bool found_corked_ = true;
  bool looking_ = false;
  bool look_again_ = false;
  bool stream_failed_ = false;
};

PulseCapture::PulseCapture() = default;

PulseCapture::~PulseCapture() {
  PulseCapture::Stop();
  const auto limit = Clock::now() + kFarewell;
  for (const auto& session : ending_) session->WaitEnded(limit);
}

std::string PulseCapture::Start(const CaptureFormat& format) {
  Stop();
  auto session = std::make_shared<Session>(format);
  if (!session->Valid()) return "The sound cannot be captured: out of file descriptors.";
  try {
    std::thread([session] { session->Run(); }).detach();
  } catch (const std::system_error& error) {
    return std::string("The sound cannot be captured: ") + error.what();
  }
  session_ = std::move(session);
  return {};
}

void PulseCapture::Stop() {
  std::erase_if(ending_, [](const auto& session) { return session->WaitEnded({}); });
  if (!session_) return;
  session_->End();
  ending_.push_back(std::move(session_));
  session_.reset();
}

void PulseCapture::Take(std::vector<std::uint8_t>& sound) {
  if (session_) {
    session_->Ring().Take(sound);
  } else {
    sound.clear();
  }
}

}  // namespace kv
