// One libmpv player core: its options, its commands and its events, brought to the interface
// thread.
//
// Everything that is asked of the core is asynchronous, since a synchronous read waits for whatever
// the core is busy with: a decoder, a dead host, a sound server that never answers. Owned by
// `MpvEngine`. Interface thread only, but for `~MpvCore`, which may run anywhere.
#pragma once

#include "engine/video_renderer.h"

#include <QObject>
#include <mpv/client.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <set>
#include <string>

namespace kv {

class MpvCore : public QObject {
  Q_OBJECT

 public:
  // Hears of every event, in order.
  class Listener {
   public:
    virtual ~Listener() = default;
    virtual void OnMpvEvent(const mpv_event& event) = 0;
  };

  // A core with the player's options, null when libmpv cannot be started. `hardware_decoding`: the
  // renderer can take pictures that stay on the graphics card. No sound output is opened until the
  // property "ao" names one. Takes a while; any thread.
  static mpv_handle* CreateHandle(bool hardware_decoding);

  // Takes `handle` over; it may be null.
  explicit MpvCore(mpv_handle* handle);
  // Waits for the core to end, which can take as long as the core is stuck in what it does; see
  // `Retire`.
  ~MpvCore() override;

  // False when libmpv could not be started; every command then does nothing.
  bool Valid() const { return handle_ != nullptr; }
  mpv_handle* Handle() const { return handle_; }

  // Without a listener nothing is wanted of the core: a medium that it is about to open is stopped.
  void SetListener(Listener* listener);

  // `listener` hears the name of the sound output in use whenever another one is; empty for none.
  void SetSoundOutputListener(std::function<void(const std::string& output)> listener);

  // False when the core has told nothing for a while though it was asked: it is stuck in what it
  // does. To be called again and again while something is awaited.
  bool Alive();

  // Before it opens a medium the core waits for the answer to its hook. Held, it waits until
  // `ReleaseHook`, or until there is no listener any more.
  void HoldHook(std::uint64_t hook) { held_hook_ = hook; }
  void ReleaseHook();

  // Each answers the number under which the event of its completion comes back.
  std::uint64_t Command(std::initializer_list<const char*> words);
  std::uint64_t AddFile(const char* path, const char* how, const char* title,
                        const char* language = "");
  std::uint64_t SetFlag(const char* name, bool value);
  std::uint64_t SetDouble(const char* name, double value);
  std::uint64_t SetText(const char* name, const std::string& value);
  std::uint64_t Ask(const char* name, mpv_format format);

  // Files of subtitles are still being added to the medium. The core would add them to the next one
  // if that came before they are read.
  bool Adding() const { return !adding_.empty(); }

  // Handles what has come, waiting at most `seconds` for the first event. For the one caller that
  // must block; everybody else is called when something has come.
  void HandleEvents(double seconds);

  // Whose pictures the renderer makes. Ended together with the core, before it.
  void SetRenderer(std::shared_ptr<VideoRenderer> renderer) { renderer_ = std::move(renderer); }

  // Ends `core` on a thread of its own, so that nobody waits for it. The answer becomes true when
  // that is done.
  static std::shared_ptr<std::atomic<bool>> Retire(std::unique_ptr<MpvCore> core);

 private:
  static void OnWakeup(void* self);
  void RefuseHook(std::uint64_t hook);

  mpv_handle* handle_ = nullptr;
  Listener* listener_ = nullptr;
  std::function<void(const std::string& output)> sound_output_listener_;
  std::shared_ptr<VideoRenderer> renderer_;
  std::uint64_t last_request_ = 0;
  std::set<std::uint64_t> adding_;
  std::uint64_t held_hook_ = 0;  // 0: none
  bool sign_wanted_ = false;     // of life
  std::chrono::steady_clock::time_point sign_wanted_since_;
  std::atomic<bool> wakeup_pending_{false};
};

}  // namespace kv
