// The libmpv back end: makes graphs and keeps from one to the next what is costly to build, the
// player core with its sound output and the renderer.
//
// A core that no longer answers (its network or sound library blocks inside a system call) is
// replaced by a new one and ends by itself in the background. Owned by the program's entry;
// interface thread only.
#pragma once

#include "engine/filter_graph.h"
#include "engine/mpv_core.h"
#include "engine/mpv_tracks.h"
#include "engine/sound_watch.h"
#include "engine/video_output.h"
#include "system/message_pump.h"

#include <QTimer>

#include <atomic>
#include <future>
#include <memory>
#include <optional>
#include <string>

namespace kv {

class MpvGraph;
struct MpvGraphState;

class MpvEngine : public GraphFactory {
 public:
  // `pump` must outlive the engine; the application object must exist.
  MpvEngine(MessagePump& pump, VideoPath path);
  ~MpvEngine() override;
  MpvEngine(const MpvEngine&) = delete;
  MpvEngine& operator=(const MpvEngine&) = delete;

  std::shared_ptr<FilterGraph> CreateGraph() override;

  // Says that `target` will be rendered in a moment. If the engine is idle, the medium begins to
  // load as soon as there is a core, unseen and unheard, and `RenderFile` takes that load over.
  void Expect(const std::string& target);

  VideoOutput& Video() { return *video_; }

  // Ends the core, waiting at most `milliseconds`. False when it has not ended by then: the process
  // must then leave without running its destructors. No graph may be used afterwards.
  bool Shutdown(int milliseconds);

 private:
  friend class MpvGraph;

  // The graph that the core works for; null when another one has taken it.
  bool IsCurrent(const MpvGraph& graph) const { return current_ == &graph; }
  // Lends the core to `graph`. Pumps until there is one and it is known whether the sound server
  // answers.
  void Claim(MpvGraph& graph);
  // Lets go of what `graph` plays: silent and dark at once, unloaded soon after unless another
  // medium follows, since following directly spares the sound output. `at_once` unloads now.
  void Release(MpvGraph& graph, bool at_once);
  void ReplaceCore();
  // The state of the load that `Expect` has begun of `target`; nothing if there is none.
  std::optional<MpvGraphState> TakeExpected(const std::string& target);
  MpvCore& Core() { return *core_; }
  MessagePump& Pump() { return pump_; }
  TrackWishes& Wishes() { return wishes_; }

  // The balance is a filter that is put into the chain when it is first needed.
  void SetBalance(int balance);
  void ResetBalance();

  void MakeCore(mpv_handle* handle);
  bool HandleReady() const;
  void BeginExpected();

  MessagePump& pump_;
  SoundWatch sound_;
  std::unique_ptr<VideoOutput> video_;
  std::future<mpv_handle*> first_handle_;  // being made while the window comes up
  std::unique_ptr<MpvCore> core_;
  MpvGraph* current_ = nullptr;
  std::string expected_target_;
  std::unique_ptr<MpvGraph> expected_;  // the load of it, once begun
  bool balance_filter_ = false;
  TrackWishes wishes_;
  QTimer unload_;
};

}  // namespace kv
