// `OpenFile`: every road to a picture ends here.
//
// Decides what kind of thing it was given, tears down what plays, drives the engine, brings the
// sliders' settings into it and has the display follow. Opening blocks and can be re-entered: the
// engine pumps messages while it works, so another open, or the end of the program, can come in the
// middle; the one that began last wins and the other ends without another word. Owned by `frmMain`;
// interface thread only.
#pragma once

#include "engine/dshow_control.h"
#include "shell/sliders.h"
#include "shell/status_overlay.h"
#include "shell/time_display.h"
#include "state/session.h"
#include "state/settings.h"
#include "system/dialogs.h"
#include "system/message_pump.h"
#include "system/text_platform.h"

#include <cstdint>
#include <string>

namespace kv {

struct OpenArguments {
  bool FromPlaylist = false;    // a list entry: neither recent list nor folder remember it
  bool StartPlaying = false;    // play at once
  bool KeepWindowSize = false;  // no automatic scaling of the window; the Open dialog clears it
  bool ShowOnOpen = false;      // a video brings the window up, as a click on the tray icon does
  bool IsResumeStart = false;   // called by a resume file: its section and its mark stay
  bool Unattended = false;      // the player's own doing: not the time to ask how to read a list
};

// What an open asks of the other rooms.
class OpenerHost {
 public:
  virtual ~OpenerHost() = default;
  // `ByHand`: the user has asked for it and can be asked how it is to be read.
  virtual void OpenPlaylist(const std::string& Path, bool ByHand) = 0;
  // `FromPlaylist` becomes true when the resume file's medium is an entry of the list.
  virtual void OpenResumeFile(const std::string& Path, bool& FromPlaylist, bool StartPlaying) = 0;
  virtual AsxInfo ReadAsxFile(const std::string& Path) = 0;
  virtual void UpdateFileDisp(const std::string& text) = 0;
  virtual void UpdateFileDataDisplay() = 0;
  virtual void ScaleMovie(bool ForcePanel) = 0;
  virtual void ScaleWindow(float Factor) = 0;
  virtual void BuildMenu() = 0;
  virtual void SetVumeterVisible() = 0;
  virtual void ResetAB() = 0;
  virtual void BUtton_Click(int Index) = 0;
  // What a left click on the tray icon does.
  virtual void RestoreFromTray() = 0;
};

// `Render`, where the picture goes; pixels.
struct RenderTarget {
  WindowHandle hWnd = 0;
  int ScaleWidth = 0;
  int ScaleHeight = 0;
};

enum class ConnectionIcon { kNone, kSecure, kPlain };

// The controls that an open touches itself.
class OpenerView {
 public:
  virtual ~OpenerView() = default;
  virtual RenderTarget Render() const = 0;
  virtual void ShowConnectionIcon(ConnectionIcon icon) = 0;   // `ic_https`
  virtual void ShowResumeMark(bool visible) = 0;              // `picKVR`
  virtual void SetTitleToolTip(const std::string& text) = 0;  // `Disp(5)`
  virtual void SetSlidersEnabled(bool enabled) = 0;           // `Scroller1` and `Scroller3`
};

struct OpenerParts {
  clsDShowControl& Movie;
  Settings& settings;
  Session& session;
  SliderModels models;
  Sliders& sliders;
  TimeDisplay& time;
  StatusOverlay& status;
  Dialogs& dialogs;
  MessagePump& pump;
  const TextPlatform& text;
};

class MediaOpener {
 public:
  MediaOpener(OpenerHost& host, OpenerView& view, OpenerParts parts);

  // Opens `File`, a path or URL; with an empty one the user is asked.
  void OpenFile(const std::string& File, OpenArguments arguments);

  // Has an open that is under way end without another word; one that waits for the engine leaves
  // nothing open.
  void AbandonOpen();

  void AddRecentFile(const std::string& File);

 private:
  enum class Kind { kPlain, kAsf, kAsxStream };

  // Another open has begun since, or the form goes down: what this one still had to do is void.
  bool Overtaken(std::uint64_t number) const;
  bool AskForFile(std::string& path);
  void PrepareState(const std::string& path, const OpenArguments& arguments);
  Kind PrepareKind(const std::string& path, std::string& target);
  bool Render(const std::string& path, const std::string& target, Kind kind, bool from_playlist);
  void FinishOpen(const std::string& path, const OpenArguments& arguments);
  void OpenResume(const std::string& path, const OpenArguments& arguments);

  OpenerHost& host_;
  OpenerView& view_;
  OpenerParts parts_;
  std::uint64_t last_open_ = 0;  // number of the open that began last
  std::uint64_t resumed_ = 0;    // number of the last one that a resume file has led to
  int depth_ = 0;                // opens that wait for the engine, one inside the other
};

}  // namespace kv
