#include "engine/mpv_graph.h"

#include "engine/audio_levels.h"
#include "engine/media_gate.h"
#include "engine/mpv_engine.h"
#include "engine/mpv_library.h"
#include "engine/mpv_values.h"
#include "system/ascii_text.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <utility>

namespace kv {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kPollMilliseconds = 20;
constexpr double kLastMomentsPollSeconds = 0.01;
// A core takes a command at once unless it is stuck in a system call.
constexpr auto kCorePatience = std::chrono::milliseconds(1500);
constexpr auto kLocalPatience = std::chrono::seconds(30);
constexpr auto kRemotePatience = std::chrono::seconds(60);
constexpr auto kTrackSettles = std::chrono::milliseconds(60);
constexpr auto kSubtitlePatience = std::chrono::seconds(5);
// How long a medium that is ready waits for the list of the files beside it.
constexpr auto kSearchPatience = std::chrono::milliseconds(300);

constexpr int kGraphRunning = 0;
constexpr int kGraphComplete = 1;
constexpr int kGraphAborted = 2;

// Formats whose content names other media: one graph is one medium.
constexpr std::array<std::string_view, 5> kListFormats = {"edl", "cue", "playlist", "mf", "concat"};

// The core's volume is the cube root of the amplitude, in per cent.
double CoreVolume(int volume) {
  return 100.0 * std::cbrt(GainOfVolume(volume));
}

std::string SecondsText(double seconds) {
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "%.6f", seconds);
  return text.data();
}

}  // namespace

MpvGraph::MpvGraph(MpvEngine& engine) : engine_(engine) {
  settled_.setSingleShot(true);
  settled_.callOnTimeout([this] {
    if (!engine_.IsCurrent(*this) || !Ready() || clock_.Running()) return;
    put_CurrentPosition(clock_.Position(Clock::now()));
  });
}

MpvGraph::~MpvGraph() {
  engine_.Release(*this, false);
}

bool MpvGraph::RenderFile(const std::string& target) {
  const GateVerdict verdict = CheckMedium(target);
  if (!verdict.allowed) {
    phase_ = Phase::kFailed;
    return false;
  }
  engine_.Claim(*this);
  if (!engine_.IsCurrent(*this) || abandoned_ || !engine_.Core().Valid()) {
    phase_ = Phase::kFailed;
    return false;
  }
  if (const auto begun = engine_.TakeExpected(verdict.target)) {
    static_cast<MpvGraphState&>(*this) = *begun;
  } else {
    StartLoading(verdict.target, verdict.remote);
  }
  if (!WaitUntilLoaded(verdict.target, verdict.remote)) {
    Fail();
    return false;
  }
  return true;
}

void MpvGraph::StartLoading(const std::string& target, bool remote) {
  phase_ = Phase::kLoading;
  load_accepted_ = false;
  entry_ = started_ = -1;
  clock_.Reset();
  clock_.BeginSeek(0.0, Clock::now());
  MpvCore& core = engine_.Core();
  engine_.ResetBalance();
  // What goes wrong with a certificate is told nowhere else.
  if (core.Valid()) Mpv().request_log_messages(core.Handle(), remote ? "error" : "no");
  core.SetFlag("pause", true);
  core.SetDouble("speed", 1.0);
  core.SetDouble("volume", CoreVolume(kFullVolume));
  // A stream may be made of parts that its server names; a local file has no business to name any.
  const std::string options =
      std::string(remote ? "access-references=yes," : "access-references=no,") +
      tracks_.Begin(target, remote, engine_.Wishes());
  load_request_ = core.Command({"loadfile", target.c_str(), "replace", options.c_str()});
}

bool MpvGraph::WaitUntilLoaded(const std::string& target, bool remote) {
  const auto begin = Clock::now();
  bool replaced = false;
  const auto found = [&] { return !tracks_.Searching() || Clock::now() - begin > kSearchPatience; };
  while (phase_ == Phase::kLoading || phase_ == Phase::kPreparing || (Ready() && !found())) {
    engine_.Pump().WaitAndPump(kPollMilliseconds);
    if (abandoned_ || !engine_.IsCurrent(*this)) return false;
    const auto waited = Clock::now() - begin;
    if (!replaced && ((!load_accepted_ && waited > kCorePatience) || !engine_.Core().Alive())) {
      replaced = true;
      engine_.ReplaceCore();
      StartLoading(target, remote);
    }
    if (waited > (remote ? kRemotePatience : kLocalPatience)) return false;
  }
  if (Ready()) tracks_.AddFound(engine_.Core());
  return Ready();
}

void MpvGraph::Fail() {
  phase_ = Phase::kFailed;
  clock_.Reset();
  engine_.Release(*this, true);
}

bool MpvGraph::Run() {
  if (!Ready()) return false;
  engine_.Core().SetFlag("pause", false);
  clock_.Run(Clock::now());
  return true;
}

bool MpvGraph::Pause() {
  if (!Ready()) return false;
  engine_.Core().SetFlag("pause", true);
  clock_.Halt(Clock::now());
  return true;
}

bool MpvGraph::Stop() {
  if (phase_ == Phase::kLoading || phase_ == Phase::kPreparing || phase_ == Phase::kEmpty) {
    abandoned_ = true;
    engine_.Release(*this, true);
    return true;
  }
  return Pause();
}

std::optional<double> MpvGraph::get_Duration() const {
  if (!Ready()) return std::nullopt;
  return clock_.Duration();
}

bool MpvGraph::put_CurrentPosition(double seconds) {
  if (!Ready()) return false;
  // The core takes a negative position for a distance from the end.
  if (!(seconds >= 0.0)) seconds = 0.0;
  if (clock_.Duration() > 0.0) seconds = std::min(seconds, clock_.Duration());
  clock_.BeginSeek(seconds, Clock::now());
  const std::string text = SecondsText(seconds);
  seek_request_ = engine_.Core().Command({"seek", text.c_str(), "absolute+exact"});
  confirm_request_ = ended_request_ = 0;
  return true;
}

std::optional<double> MpvGraph::get_CurrentPosition() const {
  if (!Ready()) return std::nullopt;
  return clock_.Position(Clock::now());
}

bool MpvGraph::put_Rate(double rate) {
  if (!Ready() || !(rate > 0.0)) return false;
  rate_ = rate;
  engine_.Core().SetDouble("speed", rate);
  clock_.SetRate(rate, Clock::now());
  return true;
}

std::optional<double> MpvGraph::get_Rate() const {
  if (!Ready()) return std::nullopt;
  return rate_;
}

bool MpvGraph::put_Volume(int volume) {
  if (!Ready()) return false;
  if (volume == volume_) return true;
  volume_ = volume;
  engine_.Core().SetDouble("volume", CoreVolume(volume));
  return true;
}

std::optional<int> MpvGraph::get_Volume() const {
  if (!Ready()) return std::nullopt;
  return volume_;
}

bool MpvGraph::put_Balance(int balance) {
  if (!Ready()) return false;
  if (balance == balance_) return true;
  balance_ = balance;
  engine_.SetBalance(balance);
  return true;
}

std::optional<int> MpvGraph::get_Balance() const {
  if (!Ready()) return std::nullopt;
  return balance_;
}

// The picture is a part of its surface and not a window with a frame; showing it is all a style
// can mean here.
bool MpvGraph::put_WindowStyle(std::uint32_t /*style*/) {
  if (!HasVideo()) return false;
  engine_.Video().SetShown(true);
  return true;
}

bool MpvGraph::put_Owner(WindowHandle owner) {
  if (!HasVideo()) return false;
  engine_.Video().SetOwner(owner);
  return true;
}

bool MpvGraph::SetWindowPosition(int left, int top, int width, int height) {
  if (!HasVideo()) return false;
  engine_.Video().SetRectangle(QRect(left, top, width, height));
  return true;
}

bool MpvGraph::put_Top(int top) {
  const QRect old = engine_.Video().Rectangle();
  return SetWindowPosition(old.left(), top, old.width(), old.height());
}

bool MpvGraph::put_Left(int left) {
  const QRect old = engine_.Video().Rectangle();
  return SetWindowPosition(left, old.top(), old.width(), old.height());
}

bool MpvGraph::put_Width(int width) {
  const QRect old = engine_.Video().Rectangle();
  return SetWindowPosition(old.left(), old.top(), width, old.height());
}

bool MpvGraph::put_Height(int height) {
  const QRect old = engine_.Video().Rectangle();
  return SetWindowPosition(old.left(), old.top(), old.width(), height);
}

bool MpvGraph::put_FullScreenMode(bool on) {
  return HasVideo() && engine_.Video().SetFullScreen(on);
}

bool MpvGraph::HideCursor(bool hide) {
  if (!HasVideo()) return false;
  engine_.Video().SetCursorHidden(hide);
  return true;
}

std::optional<bool> MpvGraph::IsCursorHidden() const {
  if (!HasVideo()) return std::nullopt;
  return engine_.Video().CursorHidden();
}

std::optional<double> MpvGraph::get_AvgTimePerFrame() const {
  if (!HasVideo() || !(frames_per_second_ > 0.0)) return std::nullopt;
  return 1.0 / frames_per_second_;
}

std::optional<int> MpvGraph::get_BitRate() const {
  if (!HasVideo()) return std::nullopt;
  return static_cast<int>(std::lround(bit_rate_));
}

// Decoders here conceal errors and do not count them.
std::optional<int> MpvGraph::get_BitErrorRate() const {
  if (!HasVideo()) return std::nullopt;
  return 0;
}

const MediaTags* MpvGraph::get_Tags() const {
  return Ready() ? &tags_ : nullptr;
}

std::optional<VideoSize> MpvGraph::GetVideoSize() const {
  if (!HasVideo()) return std::nullopt;
  return size_;
}

std::vector<MediaTrack> MpvGraph::Tracks() const {
  return Ready() ? tracks_.List() : std::vector<MediaTrack>();
}

bool MpvGraph::SelectTrack(TrackKind kind, int id) {
  if (!Ready() || !tracks_.Select(engine_.Core(), kind, id)) return false;
  TrackWishes& wishes = engine_.Wishes();
  if (kind == TrackKind::kSubtitle) wishes.no_subtitles = id == 0;
  if (const MediaTrack* const track = tracks_.Selected(kind)) {
    (kind == TrackKind::kSound ? wishes.sound : wishes.subtitles) = track->language;
  }
  if (kind == TrackKind::kSubtitle) ShowSubtitlesNow();
  return true;
}

// Halted, the core reads nothing of a track that it has not read before until it is moved. Moved at
// once it may meet its own reading back for that track, and end up on another picture.
void MpvGraph::ShowSubtitlesNow() {
  settled_.start(kTrackSettles);
}

bool MpvGraph::AddSubtitles(const std::string& path) {
  const GateVerdict verdict = CheckMedium(path);
  if (!Ready() || !verdict.allowed || verdict.remote || !MayBeSubtitles(verdict.target)) {
    return false;
  }
  tracks_.Add(engine_.Core(), verdict.target);
  for (const auto begin = Clock::now(); Clock::now() - begin < kSubtitlePatience;) {
    engine_.Pump().WaitAndPump(kPollMilliseconds);
    if (!engine_.IsCurrent(*this)) return false;
    if (!tracks_.Added()) continue;
    if (!*tracks_.Added()) return false;
    engine_.Wishes().no_subtitles = false;
    ShowSubtitlesNow();
    return true;
  }
  return false;
}

int MpvGraph::WaitForCompletion(int timeout_milliseconds) {
  if (!Ready()) return kGraphAborted;
  const auto deadline = Clock::now() + std::chrono::milliseconds(timeout_milliseconds);
  engine_.Core().HandleEvents(0.0);
  while (!AtEnd()) {
    const bool last_moments = clock_.Ended() || ReachedDuration();
    // A jump from the end to the end can be over before the core knows that it is at the end.
    if (last_moments && !clock_.Ended() && ended_request_ == 0) {
      ended_request_ = engine_.Core().Ask("eof-reached", MPV_FORMAT_FLAG);
    }
    const std::chrono::duration<double> left = deadline - Clock::now();
    if (left.count() <= 0.0) return kGraphRunning;
    // What the decoder has left to be heard and seen at its end runs out without an event.
    engine_.Core().HandleEvents(last_moments ? std::min(left.count(), kLastMomentsPollSeconds)
                                             : left.count());
  }
  return kGraphComplete;
}

bool MpvGraph::AtEnd() const {
  return clock_.Ended() && clock_.Position(Clock::now()) >= clock_.Duration();
}

bool MpvGraph::ReachedDuration() const {
  return clock_.Running() && clock_.Duration() > 0.0 &&
         clock_.Position(Clock::now()) >= clock_.Duration();
}

void MpvGraph::OnMpvEvent(const mpv_event& event) {
  switch (event.event_id) {
    case MPV_EVENT_COMMAND_REPLY:
      OnCommandReply(event);
      break;
    case MPV_EVENT_HOOK:
      OnHook(*static_cast<mpv_event_hook*>(event.data));
      break;
    case MPV_EVENT_START_FILE:
      OnStartFile(*static_cast<mpv_event_start_file*>(event.data));
      break;
    case MPV_EVENT_FILE_LOADED:
      OnFileLoaded();
      break;
    case MPV_EVENT_END_FILE:
      OnEndFile(*static_cast<mpv_event_end_file*>(event.data));
      break;
    case MPV_EVENT_PLAYBACK_RESTART:
      OnPlaybackRestart();
      break;
    case MPV_EVENT_GET_PROPERTY_REPLY:
      OnReply(event);
      break;
    case MPV_EVENT_LOG_MESSAGE:
      OnLog(*static_cast<mpv_event_log_message*>(event.data));
      break;
    case MPV_EVENT_PROPERTY_CHANGE:
      OnProperty(*static_cast<mpv_event_property*>(event.data));
      break;
    default:
      break;
  }
  if (phase_ == Phase::kPreparing || Ready()) tracks_.AddFound(engine_.Core());
}

void MpvGraph::OnCommandReply(const mpv_event& event) {
  if (event.reply_userdata == load_request_) {
    load_accepted_ = true;
    engine_.Core().ReleaseHook();
    if (event.error < 0) {
      phase_ = Phase::kFailed;
      return;
    }
    const mpv_node& result = static_cast<mpv_event_command*>(event.data)->result;
    if (result.format != MPV_FORMAT_NODE_MAP) return;
    for (int i = 0; i < result.u.list->num; ++i) {
      if (std::strcmp(result.u.list->keys[i], "playlist_entry_id") == 0) {
        entry_ = result.u.list->values[i].u.int64;
      }
    }
  } else if (event.reply_userdata == seek_request_) {
    seek_request_ = 0;
    if (event.error >= 0) return;
    // The medium cannot be moved: the clock goes on from where it really is.
    confirm_request_ = engine_.Core().Ask("time-pos", MPV_FORMAT_DOUBLE);
  } else {
    tracks_.OnCommandReply(event);
  }
}

void MpvGraph::OnHook(const mpv_event_hook& hook) {
  // Of a medium before ours: our own load, which is on its way, puts an end to it.
  if (!load_accepted_) {
    engine_.Core().HoldHook(hook.id);
    return;
  }
  // A medium whose content turned out to be a list makes the core go on to what the list names.
  if (started_ != entry_) {
    engine_.Core().Command({"stop"});
  } else {
    // The medium before has ended and ours has not begun: no picture can be ours yet.
    engine_.Video().Discard();
  }
  Mpv().hook_continue(engine_.Core().Handle(), hook.id);
}

void MpvGraph::OnStartFile(const mpv_event_start_file& start) {
  started_ = start.playlist_entry_id;
}

void MpvGraph::OnFileLoaded() {
  if (started_ != entry_ || phase_ != Phase::kLoading) return;
  phase_ = Phase::kPreparing;
  MpvCore& core = engine_.Core();
  format_request_ = core.Ask("file-format", MPV_FORMAT_STRING);
  duration_request_ = core.Ask("duration", MPV_FORMAT_DOUBLE);
  video_request_ = core.Ask("vid", MPV_FORMAT_STRING);
  tags_request_ = core.Ask("metadata", MPV_FORMAT_NODE);
  tracks_.Ask(core);
}

void MpvGraph::OnEndFile(const mpv_event_end_file& end) {
  if (end.playlist_entry_id != entry_ || entry_ < 0) return;
  if (phase_ == Phase::kReady) {
    // Held at its end is the rule; the medium being gone altogether is an end as well.
    clock_.SetEnded(true, Clock::now());
    return;
  }
  phase_ = Phase::kFailed;
}

void MpvGraph::OnPlaybackRestart() {
  if (started_ != entry_) return;
  // The restart of an earlier jump, or of the load, says nothing about one that has been sent
  // since.
  if (seek_request_ == 0) {
    // A jump from the end to the end is no change of the observed property.
    ended_request_ = engine_.Core().Ask("eof-reached", MPV_FORMAT_FLAG);
    confirm_request_ = engine_.Core().Ask("time-pos", MPV_FORMAT_DOUBLE);
  }
  // Everything decodes by now: a video track that has no picture will give none. Asked for, as the
  // core tells only of changes, and the medium before may have had pictures of the same size.
  if (phase_ == Phase::kPreparing) {
    picture_request_ = engine_.Core().Ask(kPictureFormat, MPV_FORMAT_NODE);
  }
}

void MpvGraph::OnReply(const mpv_event& event) {
  const auto* property = static_cast<mpv_event_property*>(event.data);
  const bool known = event.error >= 0;
  const auto now = Clock::now();
  if (event.reply_userdata == ended_request_) {
    ended_request_ = 0;
    if (!known || !AsFlag(*property)) return;
    // The decoder tells its last picture, which may be far behind the end that was asked for.
    clock_.EndSeek(clock_.Position(now), now);
    clock_.SetEnded(true, now);
  } else if (event.reply_userdata == confirm_request_) {
    confirm_request_ = 0;
    const double* position = known ? AsDouble(*property) : nullptr;
    clock_.EndSeek(position != nullptr ? std::max(0.0, *position) : clock_.Position(now), now);
  } else if (event.reply_userdata == format_request_) {
    format_request_ = 0;
    const std::string format = known ? AsText(*property) : std::string();
    for (const std::string_view list : kListFormats) {
      if (format == list) phase_ = Phase::kFailed;
    }
  } else if (event.reply_userdata == duration_request_) {
    duration_request_ = 0;
    const double* duration = known ? AsDouble(*property) : nullptr;
    clock_.SetDuration(duration != nullptr ? *duration : 0.0);
  } else if (event.reply_userdata == tags_request_) {
    tags_request_ = 0;
    if (known) tags_ = AsTags(*property);
  } else if (event.reply_userdata == video_request_) {
    video_request_ = 0;
    const std::string track = known ? AsText(*property) : std::string();
    has_video_track_ = !track.empty() && track != "no" && track != "auto";
  } else if (event.reply_userdata == picture_request_) {
    picture_request_ = 0;
    picture_told_ = true;
    if (known) OnPictureFormat(*property);
  } else if (!tracks_.OnReply(event, engine_.Core())) {
    return;
  }
  CheckPrepared();
}

void MpvGraph::CheckPrepared() {
  if (phase_ != Phase::kPreparing) return;
  if (format_request_ != 0 || duration_request_ != 0 || video_request_ != 0) return;
  if (!tracks_.Known()) return;
  if (has_video_track_ && size_.width == 0 && !picture_told_) return;
  phase_ = Phase::kReady;
}

void MpvGraph::OnProperty(const mpv_event_property& property) {
  // Before our medium is loaded the values are those of the one before.
  if (phase_ != Phase::kPreparing && phase_ != Phase::kReady) return;
  const std::string_view name = property.name;
  const auto now = Clock::now();
  if (name == "time-pos") {
    // Decoders start a little before the medium does.
    if (const double* position = AsDouble(property)) clock_.Report(std::max(0.0, *position), now);
  } else if (name == "duration") {
    if (const double* duration = AsDouble(property)) clock_.SetDuration(*duration);
  } else if (name == "eof-reached") {
    if (property.format != MPV_FORMAT_NONE) clock_.SetEnded(AsFlag(property), now);
  } else if (name == "paused-for-cache") {
    clock_.SetStalled(AsFlag(property), now);
  } else if (name == kPictureFormat) {
    OnPictureFormat(property);
  } else if (name == "container-fps") {
    const double* rate = AsDouble(property);
    frames_per_second_ = rate != nullptr ? *rate : 0.0;
    clock_.SetPictureSeconds(frames_per_second_ > 0.0 ? 1.0 / frames_per_second_ : 0.0);
  } else if (name == "metadata") {
    tags_ = AsTags(property);
  } else if (name == "video-bitrate") {
    if (const double* rate = AsDouble(property)) bit_rate_ = *rate;
  } else if (name == MpvTracks::kProperty) {
    tracks_.OnList(property);
  }
}

void MpvGraph::OnLog(const mpv_event_log_message& message) {
  if (ContainsIgnoringCase(message.text, "certificate")) certificate_refused_ = true;
}

void MpvGraph::OnPictureFormat(const mpv_event_property& property) {
  const VideoSize size = AsVideoSize(property);
  if (size.width <= 0 || size.height <= 0) return;
  size_ = size;
  CheckPrepared();
}

}  // namespace kv
