#include "engine/mpv_core.h"

#include "engine/mpv_library.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace kv {
namespace {

struct Option {
  const char* name;
  const char* value;
};

// A description of a broadcast, whatever it is called, would open ports that anybody can send to,
// and a script of parts other local files: these are all that a medium is made of.
constexpr char kProtocols[] = "protocol_whitelist=[http,https,tls,tcp,crypto,data,httpproxy]";

// The player decides everything itself: no configuration, scripts, keys or helper programs of the
// engine's own; a medium is held at its end until the player says what follows.
// One a line.
// clang-format off
constexpr std::array kOptions = {
    Option{"config", "no"},
    Option{"load-scripts", "no"},
    Option{"ytdl", "no"},
    Option{"load-stats-overlay", "no"},
    Option{"load-osd-console", "no"},
    Option{"load-auto-profiles", "no"},
    Option{"osc", "no"},
    Option{"terminal", "no"},
    Option{"input-default-bindings", "no"},
    Option{"input-vo-keyboard", "no"},
    Option{"idle", "yes"},
    Option{"vo", "libmpv"},
    Option{"keep-open", "yes"},
    Option{"keep-open-pause", "no"},
    Option{"pause", "yes"},
    Option{"keepaspect", "no"},     // the player's own scaling rules decide the rectangle
    Option{"audio-display", "no"},  // a cover picture does not make a song a video
    Option{"cover-art-auto", "no"},
    Option{"ao", "null"},  // until it is known which sound outputs there are
    Option{"audio-fallback-to-null", "yes"},
    Option{"audio-client-name", "Kestrelview"},
    Option{"hr-seek", "yes"},           // A > B loops and frame steps are exact
    Option{"access-references", "no"},  // what a file names is not opened
    Option{"network-timeout", "10"},
    Option{"volume-max", "100"},
    Option{"osd-level", "0"},
    // On the processor scaling is a quarter of the work; this filter saves a tenth of it unseen.
    Option{"zimg-scaler", "bicubic"},
    Option{"zimg-threads", "1"},  // until `SwRenderer` wants more
    Option{"sub-auto", "no"},  // found and judged by the player itself, see subtitle_files.h
    Option{"save-position-on-quit", "no"},
    Option{"resume-playback", "no"},
    Option{"load-unsafe-playlists", "no"},
    Option{"demuxer-lavf-o", kProtocols},
    Option{"tls-verify", "yes"},  // against the system's own certificates
};
// clang-format on

constexpr unsigned kMostDecoders = 16;  // of which a codec makes use

// What a core that is not stuck may take to answer, on a machine that has much else to do.
constexpr auto kSignPatience = std::chrono::milliseconds(3000);

// Tells the change of the sound output from those that the listener has asked for.
constexpr std::uint64_t kSoundOutput = ~std::uint64_t{0};

}  // namespace

mpv_handle* MpvCore::CreateHandle(bool hardware_decoding) {
  if (!Mpv().loaded) return nullptr;
  mpv_handle* handle = Mpv().create();
  if (handle == nullptr) return nullptr;
  for (const Option& option : kOptions) {
    Mpv().set_option_string(handle, option.name, option.value);
  }
  // By itself the library takes one more, which costs its switches and brings nothing.
  const unsigned threads = std::clamp(std::thread::hardware_concurrency(), 1U, kMostDecoders);
  Mpv().set_option_string(handle, "vd-lavc-threads", std::to_string(threads).c_str());
  Mpv().set_option_string(handle, "hwdec", hardware_decoding ? "auto-safe" : "no");
  // Where others look for certificates beside the system's, say that of a server at home.
  if (const char* const file = std::getenv("SSL_CERT_FILE"); file != nullptr && file[0] == '/') {
    Mpv().set_option_string(handle, "tls-ca-file", file);
  }
  if (Mpv().initialize(handle) >= 0) return handle;
  Mpv().destroy(handle);
  return nullptr;
}

MpvCore::MpvCore(mpv_handle* handle) : handle_(handle) {
  if (handle_ != nullptr) Mpv().set_wakeup_callback(handle_, &MpvCore::OnWakeup, this);
}

MpvCore::~MpvCore() {
  if (handle_ == nullptr) return;
  Mpv().set_wakeup_callback(handle_, nullptr, nullptr);
  if (renderer_) renderer_->Stop();
  Mpv().terminate_destroy(handle_);
}

void MpvCore::OnWakeup(void* self) {
  auto* core = static_cast<MpvCore*>(self);
  if (core->wakeup_pending_.exchange(true)) return;
  QMetaObject::invokeMethod(
      core, [core] { core->HandleEvents(0.0); }, Qt::QueuedConnection);
}

void MpvCore::HandleEvents(double seconds) {
  wakeup_pending_ = false;
  if (handle_ == nullptr) return;
  while (true) {
    const mpv_event* event = Mpv().wait_event(handle_, seconds);
    if (event->event_id == MPV_EVENT_NONE) return;
    seconds = 0.0;
    sign_wanted_ = false;
    if (event->event_id == MPV_EVENT_COMMAND_REPLY) adding_.erase(event->reply_userdata);
    if (event->event_id == MPV_EVENT_PROPERTY_CHANGE && event->reply_userdata == kSoundOutput) {
      const auto* property = static_cast<mpv_event_property*>(event->data);
      const bool known = property->format == MPV_FORMAT_STRING;
      sound_output_listener_(known ? *static_cast<char* const*>(property->data) : "");
    } else if (listener_ != nullptr) {
      listener_->OnMpvEvent(*event);
    } else if (event->event_id == MPV_EVENT_HOOK) {
      // Left without an answer it would hold up the core for good.
      RefuseHook(static_cast<mpv_event_hook*>(event->data)->id);
    }
  }
}

void MpvCore::SetListener(Listener* listener) {
  listener_ = listener;
  if (listener_ == nullptr && held_hook_ != 0) RefuseHook(std::exchange(held_hook_, 0));
}

bool MpvCore::Alive() {
  const auto now = std::chrono::steady_clock::now();
  if (handle_ == nullptr) return true;
  if (!sign_wanted_) {
    sign_wanted_ = true;
    sign_wanted_since_ = now;
    Ask("pause", MPV_FORMAT_FLAG);
  }
  return now - sign_wanted_since_ < kSignPatience;
}

void MpvCore::SetSoundOutputListener(std::function<void(const std::string& output)> listener) {
  sound_output_listener_ = std::move(listener);
  if (handle_ == nullptr) return;
  Mpv().observe_property(handle_, kSoundOutput, "current-ao", MPV_FORMAT_STRING);
}

void MpvCore::ReleaseHook() {
  if (held_hook_ != 0) Mpv().hook_continue(handle_, std::exchange(held_hook_, 0));
}

void MpvCore::RefuseHook(std::uint64_t hook) {
  Command({"stop"});
  Mpv().hook_continue(handle_, hook);
}

std::uint64_t MpvCore::Command(std::initializer_list<const char*> words) {
  std::vector<const char*> list(words);
  list.push_back(nullptr);
  ++last_request_;
  if (handle_ != nullptr) Mpv().command_async(handle_, last_request_, list.data());
  return last_request_;
}

std::uint64_t MpvCore::AddFile(const char* path, const char* how, const char* title,
                               const char* language) {
  const std::uint64_t request = Command({"sub-add", path, how, title, language});
  if (handle_ != nullptr) adding_.insert(request);
  return request;
}

std::uint64_t MpvCore::SetFlag(const char* name, bool value) {
  int flag = value ? 1 : 0;
  ++last_request_;
  if (handle_ != nullptr) {
    Mpv().set_property_async(handle_, last_request_, name, MPV_FORMAT_FLAG, &flag);
  }
  return last_request_;
}

std::uint64_t MpvCore::SetDouble(const char* name, double value) {
  ++last_request_;
  if (handle_ != nullptr) {
    Mpv().set_property_async(handle_, last_request_, name, MPV_FORMAT_DOUBLE, &value);
  }
  return last_request_;
}

std::uint64_t MpvCore::SetText(const char* name, const std::string& value) {
  const char* text = value.c_str();
  ++last_request_;
  if (handle_ != nullptr) {
    Mpv().set_property_async(handle_, last_request_, name, MPV_FORMAT_STRING, &text);
  }
  return last_request_;
}

std::uint64_t MpvCore::Ask(const char* name, mpv_format format) {
  ++last_request_;
  if (handle_ != nullptr) Mpv().get_property_async(handle_, last_request_, name, format);
  return last_request_;
}

std::shared_ptr<std::atomic<bool>> MpvCore::Retire(std::unique_ptr<MpvCore> core) {
  auto done = std::make_shared<std::atomic<bool>>(false);
  if (!core) {
    *done = true;
    return done;
  }
  core->SetListener(nullptr);
  if (core->handle_ != nullptr) Mpv().set_wakeup_callback(core->handle_, nullptr, nullptr);
  // The queue must hold nothing for an object that ends on another thread.
  core->moveToThread(nullptr);
  std::thread([core = std::move(core), done]() mutable {
    core.reset();
    *done = true;
  }).detach();
  return done;
}

}  // namespace kv
