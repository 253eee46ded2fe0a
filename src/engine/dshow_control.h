// `clsDShowControl`, the player's only contact with media decoding.
//
// Wraps one filter graph, made anew for each medium: opens it, plays it into a surface, reports its
// position, size and levels. It holds no policy: looping, what follows the end of a medium and the
// A > B marks belong to its callers, which poll it. `frmMain` owns the one instance (`Movie`).
// Interface thread only. Every operation is safe with nothing open and then does nothing or answers
// 0, false or an empty text; none shows a message, none throws.
//
// Units: seconds; volume in hundredths of a decibel, -10000 to 0; balance -10000 (left) to 10000
// (right); rate a factor, 1.0 normal; rectangles in device-independent pixels of the target.
#pragma once

#include "engine/filter_graph.h"
#include "system/message_pump.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace kv {

class clsDShowControl {
 public:
  // The numbers of `PlayStateChange`; those of `State` differ.
  enum PlayState { kStarted = 0, kStopped = 1, kPaused = 2 };

  class Events {
   public:
    virtual ~Events() = default;
    // After `DS_Play`, `DS_Stop` and `DS_Pause`.
    virtual void Movie_PlayStateChange(PlayState State) = 0;
    // First and last in `DS_OpenFile`, also when it failed or was overtaken by another open.
    virtual void Movie_PrepareMedia(const std::string& File) = 0;
    virtual void Movie_PrepareMediaFinish(const std::string& File) = 0;
  };

  // Both must outlive this object.
  clsDShowControl(GraphFactory& factory, MessagePump& pump);
  ~clsDShowControl();
  clsDShowControl(const clsDShowControl&) = delete;
  clsDShowControl& operator=(const clsDShowControl&) = delete;

  // `events` hears of changes from now on; null for nobody.
  void SetEvents(Events* events) { events_ = events; }

  // Moves the picture to another target without a rebuild; only while playing or paused.
  void DS_ChangeTarget(int Top, int Left, int Width, int Height, WindowHandle Hwnd);

  // Releases the graph: nothing is open afterwards. Called inside the pump of a `DS_OpenFile` it
  // abandons that open.
  void DS_Remove();

  // Releases what was open and builds the graph for `File`. Pumps messages until the medium is
  // ready or has failed; another open may begin and end inside and then wins. True when the medium
  // can be played. After a failure `DS_IsOpen` is true and the graph holds nothing.
  bool DS_OpenFile(const std::string& File, int Top, int Left, int Width, int Height,
                   WindowHandle Hwnd);

  // True when the last open failed since its server could not prove who it is.
  bool DS_CertificateRefused() const { return Control && Control->CertificateRefused(); }

  // The rectangle of the picture inside its target.
  void DS_SetScale(int Top, int Left, int Width, int Height);

  // Starts or goes on; a medium within about half a second of its end starts over.
  void DS_Play();
  void DS_Pause();
  // Halts and goes back to the start. `DS_IsPaused` stays as it was.
  void DS_Stop();

  // Moves the position by `Delta` seconds, within the medium.
  void DS_Seek(double Delta);

  // True when the medium was still going on after `TimeoutMs`, for which this blocks.
  bool DS_StillPlaying(int TimeoutMs);

  double DS_GetRate() const;
  // A rate of 0 or below becomes 0.1. Answers the rate that was asked of the graph.
  double DS_SetRate(double Rate);
  double DS_GetDuration() const;
  double DS_GetPosition() const;
  // Answers `Pos` as brought into the medium. Sets the volume anew besides, as a host may have
  // changed it without asking to remember it.
  double DS_SetPosition(double Pos);
  int DS_GetVolume() const;
  int DS_GetVideoBitRate();
  int DS_GetVideoBitErrorRate();
  // Answers the volume as clamped. With `Remember` it is the one that `DS_SetPosition` returns to.
  int DS_SetVolume(int Volume, bool Remember);
  int DS_GetBalance() const;
  // Answers the balance as clamped.
  int DS_SetBalance(int Balance);
  // Leaves both untouched unless a graph is open; 0 by 0 then means that it has no picture.
  void DS_GetMovieSize(int& Width, int& Height);
  // Seconds; 0 without picture.
  double DS_GetAvgTimePerFrame();
  // What the medium tells of itself; null when that is nothing. Valid until the next pump.
  const MediaTags* DS_GetTags() const { return Control ? Control->get_Tags() : nullptr; }
  void DS_SetFullscreen(bool On);

  // Sounds and subtitles of the medium that is open.
  std::vector<MediaTrack> DS_GetTracks() const;
  // Plays this one of its kind; `Id` 0 shows no subtitles. False when there is no such track.
  bool DS_SelectTrack(TrackKind Kind, int Id);
  // Shows the subtitles of a local file. Pumps messages, at most for some seconds.
  bool DS_AddSubtitles(const std::string& File);

  bool DS_IsPaused() const { return Paused; }
  bool DS_IsOpen() const { return Open; }
  bool DS_IsRunning() const { return Running; }
  bool DS_IsCursorHidden() const;
  void DS_HideCursor(bool Hide);
  // 1 playing, 2 paused, 0 otherwise.
  int State() const;
  // Empty when nothing is open or the open failed.
  std::string DS_CurFile() const { return CurFile; }

 private:
  void RaisePlayState(PlayState state);
  bool BuildGraph(const std::string& File, int Top, int Left, int Width, int Height,
                  WindowHandle Hwnd);
  void PutWindow(int Top, int Left, int Width, int Height, WindowHandle Hwnd);

  GraphFactory& factory_;
  MessagePump& pump_;
  Events* events_ = nullptr;
  std::uint64_t released_ = 0;  // how often a graph was let go of

  int StoredVolume = 0;
  double Duration = 0.0;  // as cached by the open
  bool Paused = false;
  std::string CurFile;
  // The graph, whose members all the views of it are. Absent: nothing is open.
  std::shared_ptr<FilterGraph> Control;
  bool Open = false;
  bool Running = false;
};

}  // namespace kv
