// The playback tick: polls the engine, moves the position slider and decides what follows the end
// of a medium. And what the window shows while the engine prepares one.
//
// The engine tells nothing while it plays. A timer, `PosTimer`, runs for the life of the form,
// every 30 ms (90 with nothing open), and asks; a position that has stood still for six samples
// within a second of the end is the end. While paused, a tick reads a few values and touches
// nothing. Owned by `frmMain`; interface thread only. Seconds.
#pragma once

#include "controls/scroller_model.h"
#include "engine/dshow_control.h"
#include "shell/sliders.h"
#include "shell/transport.h"
#include "state/session.h"
#include "state/settings.h"
#include "system/message_pump.h"

#include <string>

namespace kv {

// What the tick needs of the playlist.
class TickNavigation {
 public:
  virtual ~TickNavigation() = default;
  virtual int PlaylistCount() const = 0;
  virtual void PlaylistSetNext(bool to_last, int index, bool immediate) = 0;
  virtual void StartPlaylistTimer(bool immediate) = 0;
  // The timer `PlayFromPlaylist` runs: another medium is about to be opened.
  virtual bool PlayFromPlaylistEnabled() const = 0;
};

class PlaybackTick {
 public:
  // All must outlive this object. `Scroller1` is the position slider.
  PlaybackTick(clsDShowControl& movie, Settings& settings, const Session& session,
               ScrollerModel& Scroller1, const Sliders& sliders, Transport& transport,
               TickNavigation& navigation);

  // One tick. A tick inside a tick (the steps it takes can pump messages) does nothing.
  void PosTimer();

 private:
  void Follow(double duration);
  // Counts how long the position has stood still; true at the end of the medium.
  bool ReachedEnd(double duration);
  void KeepToResumeSection();
  void LoopMarks();
  void EndOfMedium();
  bool Playing() const { return movie_.DS_IsRunning() && !movie_.DS_IsPaused(); }

  clsDShowControl& movie_;
  Settings& settings_;
  const Session& session_;
  ScrollerModel& position_;
  const Sliders& sliders_;
  Transport& transport_;
  TickNavigation& navigation_;

  bool tick_busy_ = false;
  double last_pos_ = 0.0;
  int frozen_count_ = 0;
  bool section_left_ = false;  // the end of the resume section was reached and acted on
};

// What changes on the window with the state of the engine.
class MovieView {
 public:
  virtual ~MovieView() = default;
  virtual void SetRenderVisible(bool visible) = 0;
  virtual void SetVuMeter1Visible(bool visible) = 0;
  virtual void SetLogoVisible(bool visible) = 0;  // `imgLogo`
  // Decides anew whether the meter in the main window runs and shows.
  virtual void SetVumeterVisible() = 0;
  // Tells the plug-in that another medium comes.
  virtual void ExtPluginMediaChanged() = 0;
};

// Answers the engine's events: the logo covers the movie area while a graph is built.
class MovieEvents : public clsDShowControl::Events {
 public:
  // Both must outlive this object.
  MovieEvents(MovieView& view, MessagePump& pump) : view_(view), pump_(pump) {}

  void Movie_PlayStateChange(clsDShowControl::PlayState State) override;
  void Movie_PrepareMedia(const std::string& File) override;
  void Movie_PrepareMediaFinish(const std::string& File) override;

 private:
  void ShowLogo(bool show);

  MovieView& view_;
  MessagePump& pump_;
};

}  // namespace kv
