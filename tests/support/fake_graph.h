// A media back end on virtual time: media are rows of a table, and playing is arithmetic.
//
// A test describes its media in `FakeGraphFactory::media`, by the name that RenderFile is given,
// and moves the clock. Every command that a graph takes is written down in `calls`, over all graphs
// in one order, with its argument ("put_CurrentPosition 12.5"); reads are not. Graphs must not
// outlive their factory.
#pragma once

#include "engine/filter_graph.h"
#include "support/virtual_time.h"
#include "system/message_pump.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace kv {

// While the medium would be in [from, to), its position stands still; then it jumps to `to`.
// Seconds of the medium.
struct FakeStall {
  double from = 0.0;
  double to = 0.0;
};

struct FakeMedium {
  double duration = 60.0;  // seconds, 0 for a stream without end
  int width = 0;           // 0 by 0: sound alone
  int height = 0;
  double frames_per_second = 0.0;
  bool renders = true;
  bool certificate_refused = false;
  int render_milliseconds = 0;  // what RenderFile takes, spent in the pump
  bool seekable = true;
  std::vector<FakeStall> stalls = {};
  int window_milliseconds = 0;  // what each SetWindowPosition takes
  std::vector<MediaTrack> tracks = {};
};

class FakeGraph : public FilterGraph {
 public:
  FakeGraph(VirtualTime& time, MessagePump& pump, const std::map<std::string, FakeMedium>& media,
            std::vector<std::string>& calls)
      : time_(time), pump_(pump), media_(media), calls_(calls) {}

  WindowHandle Owner() const { return owner_; }

  bool RenderFile(const std::string& target) override {
    Note("RenderFile", target);
    const auto row = media_.find(target);
    if (abandoned_ || row == media_.end()) return false;
    medium_ = row->second;
    const std::int64_t begin = time_.Milliseconds();
    const std::int64_t needed = medium_.render_milliseconds;
    while (time_.Milliseconds() - begin < std::min(needed, kPatience)) {
      const std::int64_t left = needed - (time_.Milliseconds() - begin);
      pump_.WaitAndPump(static_cast<int>(std::min<std::int64_t>(left, kPollMilliseconds)));
      if (abandoned_) return false;
    }
    ready_ = medium_.renders && needed <= kPatience;
    return ready_;
  }
  bool CertificateRefused() const override { return medium_.certificate_refused; }

  bool Run() override {
    Note("Run");
    if (!ready_) return false;
    Anchor(Position());
    running_ = true;
    return true;
  }

  bool Pause() override { return Noted("Pause") && Halt(); }

  bool Stop() override {
    Note("Stop");
    if (ready_) return Halt();
    abandoned_ = true;
    return true;
  }

  std::optional<double> get_Duration() const override { return If(ready_, medium_.duration); }

  bool put_CurrentPosition(double seconds) override {
    Note("put_CurrentPosition", seconds);
    if (!ready_ || !medium_.seekable) return false;
    Anchor(std::max(0.0, medium_.duration > 0.0 ? std::min(seconds, medium_.duration) : seconds));
    return true;
  }

  std::optional<double> get_CurrentPosition() const override { return If(ready_, Position()); }

  bool put_Rate(double rate) override {
    Note("put_Rate", rate);
    if (!ready_ || !(rate > 0.0)) return false;
    Anchor(Position());
    rate_ = rate;
    return true;
  }

  std::optional<double> get_Rate() const override { return If(ready_, rate_); }

  bool put_Volume(int volume) override {
    return Noted("put_Volume", volume) && Store(ready_, volume_, volume);
  }
  std::optional<int> get_Volume() const override { return If(ready_, volume_); }

  bool put_Balance(int balance) override {
    return Noted("put_Balance", balance) && Store(ready_, balance_, balance);
  }
  std::optional<int> get_Balance() const override { return If(ready_, balance_); }

  bool put_WindowStyle(std::uint32_t style) override {
    return Noted("put_WindowStyle", style) && HasPicture();
  }
  bool put_Owner(WindowHandle owner) override {
    return Noted("put_Owner", owner) && Store(HasPicture(), owner_, owner);
  }
  bool put_Top(int top) override { return Noted("put_Top", top) && HasPicture(); }
  bool put_Left(int left) override { return Noted("put_Left", left) && HasPicture(); }
  bool put_Width(int width) override { return Noted("put_Width", width) && HasPicture(); }
  bool put_Height(int height) override { return Noted("put_Height", height) && HasPicture(); }

  bool SetWindowPosition(int left, int top, int width, int height) override {
    Note("SetWindowPosition", left, top, width, height);
    if (medium_.window_milliseconds > 0) time_.Advance(medium_.window_milliseconds);
    return HasPicture();
  }

  bool put_FullScreenMode(bool on) override {
    return Noted("put_FullScreenMode", on) && HasPicture();
  }
  bool HideCursor(bool hide) override { return Noted("HideCursor", hide) && HasPicture(); }
  std::optional<bool> IsCursorHidden() const override { return If(HasPicture(), false); }

  std::optional<double> get_AvgTimePerFrame() const override {
    if (!HasPicture() || !(medium_.frames_per_second > 0.0)) return std::nullopt;
    return 1.0 / medium_.frames_per_second;
  }
  std::optional<int> get_BitRate() const override { return If(HasPicture(), 0); }
  std::optional<int> get_BitErrorRate() const override { return If(HasPicture(), 0); }
  std::optional<VideoSize> GetVideoSize() const override {
    return If(HasPicture(), VideoSize{medium_.width, medium_.height});
  }

  std::vector<MediaTrack> Tracks() const override {
    return ready_ ? medium_.tracks : std::vector<MediaTrack>();
  }
  bool SelectTrack(TrackKind kind, int id) override {
    Note("SelectTrack", static_cast<int>(kind), id);
    const auto is = [&](const MediaTrack& track) { return track.kind == kind && track.id == id; };
    std::vector<MediaTrack>& tracks = medium_.tracks;
    const bool none = kind == TrackKind::kSubtitle && id == 0;
    if (!ready_ || (!none && std::none_of(tracks.begin(), tracks.end(), is))) return false;
    for (MediaTrack& track : tracks) {
      if (track.kind == kind) track.selected = track.id == id;
    }
    return true;
  }
  // A name that ends in ".srt" is a file of subtitles.
  bool AddSubtitles(const std::string& path) override {
    Note("AddSubtitles", path);
    if (!ready_ || !path.ends_with(".srt")) return false;
    MediaTrack added{.kind = TrackKind::kSubtitle, .id = 1, .codec = "subrip", .external = true};
    added.title = path.substr(path.rfind('/') + 1);
    for (const MediaTrack& track : medium_.tracks) added.id += track.kind == added.kind ? 1 : 0;
    medium_.tracks.push_back(added);
    return SelectTrack(added.kind, added.id);
  }

  // Blocking moves the clock; timers that fall due meanwhile fire on the way.
  int WaitForCompletion(int timeout_milliseconds) override {
    Note("WaitForCompletion", timeout_milliseconds);
    if (!ready_) return kAborted;
    for (int waited = 0; !AtEnd(); ++waited) {
      if (waited >= timeout_milliseconds) return kGoesOn;
      time_.Advance(1);
    }
    return kComplete;
  }

 private:
  enum Completion { kGoesOn = 0, kComplete = 1, kAborted = 2 };
  static constexpr std::int64_t kPollMilliseconds = 20;
  static constexpr std::int64_t kPatience = 60000;

  bool HasPicture() const { return ready_ && medium_.width > 0 && medium_.height > 0; }

  // Where the medium would be if nothing held it up.
  double Undisturbed() const {
    const auto elapsed = static_cast<double>(time_.Milliseconds() - anchor_) / 1000.0;
    const double position = running_ ? base_ + elapsed * rate_ : base_;
    return medium_.duration > 0.0 ? std::min(position, medium_.duration) : position;
  }

  double Position() const {
    const double position = Undisturbed();
    for (const FakeStall& stall : medium_.stalls) {
      // A position put into the middle of a stall stands where it was put.
      if (position >= stall.from && position < stall.to) return std::max(stall.from, base_);
    }
    return position;
  }

  bool AtEnd() const { return medium_.duration > 0.0 && Position() >= medium_.duration; }

  void Anchor(double position) {
    base_ = position;
    anchor_ = time_.Milliseconds();
  }

  bool Halt() {
    if (!ready_) return false;
    Anchor(Position());
    running_ = false;
    return true;
  }

  template <class T>
  static bool Store(bool allowed, T& field, T value) {
    if (allowed) field = value;
    return allowed;
  }

  template <class T>
  static std::optional<T> If(bool there, T value) {
    return there ? std::optional(value) : std::nullopt;
  }

  template <class... T>
  void Note(const char* name, const T&... arguments) {
    std::ostringstream line;
    line << name;
    ((line << ' ' << arguments), ...);
    calls_.push_back(line.str());
  }
  template <class... T>
  bool Noted(const char* name, const T&... arguments) {
    Note(name, arguments...);
    return true;
  }

  VirtualTime& time_;
  MessagePump& pump_;
  const std::map<std::string, FakeMedium>& media_;
  std::vector<std::string>& calls_;

  FakeMedium medium_;
  bool ready_ = false;
  bool abandoned_ = false;
  bool running_ = false;
  double base_ = 0.0;  // position at `anchor_`
  std::int64_t anchor_ = 0;
  double rate_ = 1.0;
  int volume_ = 0;
  int balance_ = 0;
  WindowHandle owner_ = 0;
};

class FakeGraphFactory : public GraphFactory {
 public:
  // `pump` must move `time` when it waits, as FakePump does.
  FakeGraphFactory(VirtualTime& time, MessagePump& pump) : time_(time), pump_(pump) {}

  std::shared_ptr<FilterGraph> CreateGraph() override {
    auto graph = std::make_shared<FakeGraph>(time_, pump_, media, calls);
    current_ = graph;
    return graph;
  }

  // The graph made last; null when it has been let go.
  std::shared_ptr<FakeGraph> Current() const { return current_.lock(); }

  // What can be rendered, by path or URL.
  std::map<std::string, FakeMedium> media;
  std::vector<std::string> calls;

 private:
  VirtualTime& time_;
  MessagePump& pump_;
  std::weak_ptr<FakeGraph> current_;
};

}  // namespace kv
