// What a media back end offers to `clsDShowControl`: one graph, made anew for each medium.
//
// The members stand under the names of the interfaces that playback has always been told in
// (IMediaControl, IMediaPosition, IBasicAudio, IVideoWindow, IBasicVideo2, IMediaEvent). Reads that
// the graph cannot answer give no value, writes that it cannot carry out answer false; neither
// throws, and none waits for a decoder, the network or the sound server. Interface thread only.
//
// Units: positions in seconds; volume in hundredths of a decibel, -10000 (silence) to 0; balance in
// the same unit, -10000 (left alone) to 10000 (right alone), the far channel being attenuated;
// rate as a factor; rectangles in device-independent pixels of the owner.
#pragma once

#include "engine/media_tracks.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kv {

// Names a window or control that a picture can be shown in; 0 is none.
using WindowHandle = std::uintptr_t;

struct VideoSize {
  int width = 0;  // pixels as displayed, the sample aspect ratio applied
  int height = 0;
};

// What a medium tells of itself, under the names of its format in lower case ("title", "artist",
// "icy-title"); texts as they stand there.
using MediaTags = std::map<std::string, std::string>;

class FilterGraph {
 public:
  virtual ~FilterGraph() = default;

  // --- IMediaControl

  // Builds the graph for one medium: a plain local file or a URL of one of the four schemes, see
  // media_gate.h. Returns when the medium can be played (its duration and picture size are known)
  // or when that failed; between, it pumps messages. `Stop` inside that pump abandons the attempt,
  // which then counts as failed. Bounded in time whatever the other side does.
  virtual bool RenderFile(const std::string& target) = 0;
  // True when it failed since a server could not prove by its certificate that it is who it is.
  virtual bool CertificateRefused() const { return false; }
  virtual bool Run() = 0;
  virtual bool Pause() = 0;
  // Halts without moving the position.
  virtual bool Stop() = 0;

  // --- IMediaPosition

  virtual std::optional<double> get_Duration() const = 0;  // 0 for a stream without end
  virtual bool put_CurrentPosition(double seconds) = 0;
  // Runs like a clock while the medium plays, also between two pictures, and stands exactly still
  // when it is halted or at its end, where it equals the duration. A position just put is
  // reported at once. Costs no allocation and no round trip.
  virtual std::optional<double> get_CurrentPosition() const = 0;
  virtual bool put_Rate(double rate) = 0;
  virtual std::optional<double> get_Rate() const = 0;

  // --- IBasicAudio

  virtual bool put_Volume(int volume) = 0;
  virtual std::optional<int> get_Volume() const = 0;
  virtual bool put_Balance(int balance) = 0;
  virtual std::optional<int> get_Balance() const = 0;

  // --- IVideoWindow; all fail for a medium without picture

  virtual bool put_WindowStyle(std::uint32_t style) = 0;
  virtual bool put_Owner(WindowHandle owner) = 0;
  virtual bool put_Top(int top) = 0;
  virtual bool put_Left(int left) = 0;
  virtual bool put_Width(int width) = 0;
  virtual bool put_Height(int height) = 0;
  virtual bool SetWindowPosition(int left, int top, int width, int height) = 0;
  virtual bool put_FullScreenMode(bool on) = 0;
  virtual bool HideCursor(bool hide) = 0;
  virtual std::optional<bool> IsCursorHidden() const = 0;

  // --- IBasicVideo2; no value for a medium without picture

  virtual std::optional<double> get_AvgTimePerFrame() const = 0;  // seconds
  virtual std::optional<int> get_BitRate() const = 0;             // bits per second
  virtual std::optional<int> get_BitErrorRate() const = 0;
  virtual std::optional<VideoSize> GetVideoSize() const = 0;

  // --- Tracks; none and false until the medium is rendered

  // Sounds and subtitles in the order of their numbers. Files beside a local medium that hold its
  // subtitles join a moment after it has been rendered.
  virtual std::vector<MediaTrack> Tracks() const = 0;
  // Plays this one of its kind; 0 is no subtitles. False when there is no such track. What has
  // just been selected is reported at once.
  virtual bool SelectTrack(TrackKind kind, int id) = 0;
  // Adds the subtitles of a local file and shows them. Pumps until they are there; false when the
  // file is none that may be opened, holds none, or takes longer than some seconds.
  virtual bool AddSubtitles(const std::string& path) = 0;

  // Null while nothing is known. What a stream tells changes while it plays.
  virtual const MediaTags* get_Tags() const { return nullptr; }

  // --- IMediaEvent

  // Blocks until the medium has ended or the time is over. Answers 0 while it goes on, 1 (complete)
  // at its end, 2 (user abort) when nothing is rendered.
  virtual int WaitForCompletion(int timeout_milliseconds) = 0;
};

// Makes graphs. A back end keeps what is costly (renderer, sound output) from one to the next.
class GraphFactory {
 public:
  virtual ~GraphFactory() = default;
  virtual std::shared_ptr<FilterGraph> CreateGraph() = 0;
};

}  // namespace kv
