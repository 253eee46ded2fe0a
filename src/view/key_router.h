// `Form_KeyDown`, the main window's whole keyboard: keys become menu commands or act at once.
//
// Holding Shift or Ctrl and tapping an arrow walks a paused picture; play goes on when the modifier
// is let go. Key codes and masks are those of key_table.h. Owned by `frmMain`, which outlives it;
// interface thread only.
#pragma once

#include "controls/scroller_model.h"
#include "engine/dshow_control.h"
#include "state/session.h"
#include "view/command_router.h"
#include "view/key_table.h"

#include <cstdint>
#include <string>

namespace kv {

// What keys do that is no menu command.
class KeyHost {
 public:
  virtual ~KeyHost() = default;
  virtual void BUtton_Click(int Index) = 0;
  // Tells the window that a medium is being prepared: the logo takes the picture's place.
  virtual void PrepareMedia() = 0;
  virtual void ScaleWindow(float Factor) = 0;
  virtual void DeleteCurFile() = 0;
  virtual void ReleaseResumeData() = 0;
  virtual void ShowColors() = 0;
  virtual void ShowQuickSearch() = 0;
  virtual void ShowPlugins() = 0;
  virtual void ConfigPlugin() = 0;
  // The next display of the level meter.
  virtual void SetVuMeterStyle() = 0;
  virtual void ToggleFullScreen() = 0;
  // Turns `DemoTimer` on or off; true when it is on now.
  virtual bool FlipDemoTimer() = 0;
  virtual void SetTempWindowCaption(const std::string& text) = 0;
  // Shows the main menu at the upper left corner of the window.
  virtual void PopUpMenuAtWindow() = 0;
};

struct KeySliders {
  ScrollerModel& Scroller1;  // position
  ScrollerModel& Scroller2;  // volume
  ScrollerModel& Scroller3;  // rate
};

class KeyRouter {
 public:
  // All must outlive this object.
  KeyRouter(clsDShowControl& movie, const Session& session, const KeySliders& sliders,
            CommandRouter& commands, KeyHost& host);

  // `Shift` is the mask as it stood when the key went down, so without the key's own bit. A key
  // that repeats comes again. True when the key means something here.
  bool Form_KeyDown(std::int16_t KeyCode, std::int16_t Shift);

  void Form_KeyUp(std::int16_t KeyCode);

  // The keyboard is lost to another window: all that is held counts as let go.
  void ReleaseAll();

 private:
  void Act(const KeyRow& row);
  void GoToMark(double mark, double resume);
  void SeekStep(double seconds);
  void SeekFrames(double frames);
  void StepRate(double steps);
  void ResumePlay();
  void ForgetSeeks();

  clsDShowControl& movie_;
  const Session& session_;
  KeySliders sliders_;
  CommandRouter& commands_;
  KeyHost& host_;

  bool ShiftDown = false;
  bool CtrlDown = false;
  bool SeekHeld = false;       // a seek key has been used since the modifier went down
  bool PlayAfterKeys = false;  // play was paused by one and goes on when the modifier is let go
};

}  // namespace kv
