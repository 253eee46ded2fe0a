#include "engine/sound_probe.h"

#include <pulse/context.h>
#include <pulse/mainloop.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>

namespace kv {
namespace {

constexpr auto kPatience = std::chrono::milliseconds(800);
constexpr int kPollMicroseconds = 50'000;

SoundServer AskServer() {
  const auto deadline = std::chrono::steady_clock::now() + kPatience;
  pa_mainloop* loop = pa_mainloop_new();
  if (loop == nullptr) return SoundServer::kAbsent;
  pa_context* context = pa_context_new(pa_mainloop_get_api(loop), "Kestrelview");
  SoundServer answer = SoundServer::kAbsent;
  // Starting a server is left to the sound output itself, which may be none of this one.
  if (context != nullptr &&
      pa_context_connect(context, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) >= 0) {
    answer = SoundServer::kMute;
    while (std::chrono::steady_clock::now() < deadline) {
      const pa_context_state_t state = pa_context_get_state(context);
      if (state == PA_CONTEXT_READY) {
        answer = SoundServer::kAnswers;
        break;
      }
      if (!PA_CONTEXT_IS_GOOD(state)) {
        answer = SoundServer::kAbsent;
        break;
      }
      if (pa_mainloop_prepare(loop, kPollMicroseconds) < 0 || pa_mainloop_poll(loop) < 0 ||
          pa_mainloop_dispatch(loop) < 0) {
        break;
      }
    }
    pa_context_disconnect(context);
  }
  if (context != nullptr) pa_context_unref(context);
  pa_mainloop_free(loop);
  return answer;
}

bool HasPipeWire() {
  const char* folder = std::getenv("XDG_RUNTIME_DIR");
  std::error_code error;
  return folder != nullptr &&
         std::filesystem::exists(std::filesystem::path(folder) / "pipewire-0", error);
}

// A playback device of the kernel's own: "pcmC0D0p".
bool HasSoundCard() {
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator("/dev/snd", error)) {
    const std::string name = entry.path().filename();
    if (name.starts_with("pcm") && name.ends_with('p')) return true;
  }
  return false;
}

}  // namespace

std::string SoundOutputs(SoundServer server) {
  // Behind a server that does not answer every other way may lead to the same server.
  if (server == SoundServer::kMute || server == SoundServer::kUnknown) return "null";
  std::string outputs;
  const auto add = [&outputs](const char* name) {
    if (!outputs.empty()) outputs += ',';
    outputs += name;
  };
  if (server == SoundServer::kAnswers) add("pulse");
  if (HasPipeWire()) add("pipewire");
  if (HasSoundCard()) add("alsa");
  return outputs.empty() ? "null" : outputs;
}

SoundProbe::SoundProbe()
    : result_(std::make_shared<std::atomic<SoundServer>>(SoundServer::kUnknown)) {
  std::thread([result = result_] { result->store(AskServer()); }).detach();
}

}  // namespace kv
