// The filter graph of one medium over libmpv.
//
// Made by `MpvEngine`, which lends it the core for as long as no other graph takes it. All it
// answers comes from what the core has reported so far, so no read waits for anybody. Interface
// thread only.
#pragma once

#include "engine/filter_graph.h"
#include "engine/mpv_core.h"
#include "engine/mpv_tracks.h"
#include "engine/playing_clock.h"

#include <QTimer>
#include <mpv/client.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kv {

class MpvEngine;

// All that a graph knows of its medium. A value, so that a load that was begun before it was asked
// for can be taken over.
struct MpvGraphState {
  enum class Phase { kEmpty, kLoading, kPreparing, kReady, kFailed };

  Phase phase_ = Phase::kEmpty;
  bool abandoned_ = false;
  bool certificate_refused_ = false;

  // Loading
  std::uint64_t load_request_ = 0;
  bool load_accepted_ = false;
  std::int64_t entry_ = -1;    // the core's number of our medium
  std::int64_t started_ = -1;  // of the medium that the core began last
  std::uint64_t format_request_ = 0;
  std::uint64_t duration_request_ = 0;
  std::uint64_t video_request_ = 0;
  std::uint64_t tags_request_ = 0;
  bool has_video_track_ = false;
  std::uint64_t picture_request_ = 0;
  bool picture_told_ = false;  // the core has decoded what it can of the beginning

  // Playing
  PlayingClock clock_;
  std::uint64_t seek_request_ = 0;     // the last seek sent, until it is answered
  std::uint64_t confirm_request_ = 0;  // the question for the position that it led to
  std::uint64_t ended_request_ = 0;    // and the one whether that is the end
  double rate_ = 1.0;
  int volume_ = 0;
  int balance_ = 0;

  // Picture
  double frames_per_second_ = 0.0;
  double bit_rate_ = 0.0;

  MediaTags tags_;
  VideoSize size_;

  MpvTracks tracks_;
};

class MpvGraph : public FilterGraph, public MpvCore::Listener, private MpvGraphState {
 public:
  // The core's property that tells the size of the pictures, observed by the engine.
  static constexpr const char* kPictureFormat = "video-out-params";

  explicit MpvGraph(MpvEngine& engine);
  ~MpvGraph() override;
  MpvGraph(const MpvGraph&) = delete;
  MpvGraph& operator=(const MpvGraph&) = delete;

  bool RenderFile(const std::string& target) override;
  bool CertificateRefused() const override { return certificate_refused_; }
  bool Run() override;
  bool Pause() override;
  bool Stop() override;

  std::optional<double> get_Duration() const override;
  bool put_CurrentPosition(double seconds) override;
  std::optional<double> get_CurrentPosition() const override;
  bool put_Rate(double rate) override;
  std::optional<double> get_Rate() const override;

  bool put_Volume(int volume) override;
  std::optional<int> get_Volume() const override;
  bool put_Balance(int balance) override;
  std::optional<int> get_Balance() const override;

  bool put_WindowStyle(std::uint32_t style) override;
  bool put_Owner(WindowHandle owner) override;
  bool put_Top(int top) override;
  bool put_Left(int left) override;
  bool put_Width(int width) override;
  bool put_Height(int height) override;
  bool SetWindowPosition(int left, int top, int width, int height) override;
  bool put_FullScreenMode(bool on) override;
  bool HideCursor(bool hide) override;
  std::optional<bool> IsCursorHidden() const override;

  std::optional<double> get_AvgTimePerFrame() const override;
  std::optional<int> get_BitRate() const override;
  std::optional<int> get_BitErrorRate() const override;
  std::optional<VideoSize> GetVideoSize() const override;

  std::vector<MediaTrack> Tracks() const override;
  bool SelectTrack(TrackKind kind, int id) override;
  bool AddSubtitles(const std::string& path) override;

  const MediaTags* get_Tags() const override;

  int WaitForCompletion(int timeout_milliseconds) override;

  void OnMpvEvent(const mpv_event& event) override;

  const MpvGraphState& State() const { return *this; }

  // Begins to load without waiting. Only for a medium that `MpvEngine::Expect` was told of.
  void StartLoading(const std::string& target, bool remote);

 private:
  bool Ready() const { return phase_ == Phase::kReady; }
  bool HasVideo() const { return Ready() && size_.width > 0 && size_.height > 0; }
  bool AtEnd() const;
  bool ReachedDuration() const;
  bool WaitUntilLoaded(const std::string& target, bool remote);
  void Fail();
  void OnCommandReply(const mpv_event& event);
  void OnHook(const mpv_event_hook& hook);
  void OnStartFile(const mpv_event_start_file& start);
  void OnFileLoaded();
  void OnEndFile(const mpv_event_end_file& end);
  void OnPlaybackRestart();
  void OnReply(const mpv_event& event);
  void OnLog(const mpv_event_log_message& message);
  void OnProperty(const mpv_event_property& property);
  void ShowSubtitlesNow();
  void OnPictureFormat(const mpv_event_property& property);
  void CheckPrepared();

  MpvEngine& engine_;
  QTimer settled_;  // another track of subtitles has been chosen, a moment ago
};

}  // namespace kv
