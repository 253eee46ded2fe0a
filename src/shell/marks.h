// The A > B loop: its two marks, the button that sets them and the range on the position slider.
//
// The marks themselves are in the session, in seconds; the playback tick does the looping. They are
// of one medium: each open takes them away. Owned by `frmMain`; interface thread only.
#pragma once

#include "controls/scroller_model.h"
#include "engine/dshow_control.h"
#include "state/session.h"

#include <string>

namespace kv {

// The button "A > B".
class MarksView {
 public:
  virtual ~MarksView() = default;

  // Puts a face of the row `AB` on the button: 0 no mark, 1 A is set, 2 both are.
  virtual void SetAbFace(int face) = 0;
  virtual void SetAbToolTip(const std::string& text) = 0;
};

class Marks {
 public:
  // All must outlive this object. `Scroller1` is the position slider.
  Marks(const clsDShowControl& movie, Session& session, ScrollerModel& Scroller1, MarksView& view);

  // One press of the button: sets A, then B (and brings the two into order), then clears both.
  void Press();

  // Clears both marks. The tooltip stays as it was until the next press.
  void ResetAB();

  bool BothSet() const;

 private:
  const clsDShowControl& movie_;
  Session& session_;
  ScrollerModel& position_;
  MarksView& view_;
};

}  // namespace kv
