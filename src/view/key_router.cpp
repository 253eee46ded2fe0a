#include "view/key_router.h"

#include "system/translation.h"

namespace kv {
namespace {

constexpr int kPause = 1;                      // of the buttons of the strip
constexpr double kFrameWithoutPicture = 0.01;  // seconds

}  // namespace

KeyRouter::KeyRouter(clsDShowControl& movie, const Session& session, const KeySliders& sliders,
                     CommandRouter& commands, KeyHost& host)
    : movie_(movie), session_(session), sliders_(sliders), commands_(commands), host_(host) {}

bool KeyRouter::Form_KeyDown(std::int16_t KeyCode, std::int16_t Shift) {
  if (session_.Unloading) return false;
  if (KeyCode == kKeyF12) host_.PrepareMedia();
  if (Shift == (kShiftKey | kCtrlKey)) ShiftDown = CtrlDown = true;
  const KeyRow* const row = FindKey(KeyCode, Shift);
  // Preparing pumps.
  if (row != nullptr && !session_.Unloading) Act(*row);
  return row != nullptr || KeyCode == kKeyF12;
}

void KeyRouter::Act(const KeyRow& row) {
  switch (row.action) {
    case KeyAction::kItem:
      return commands_.RunMenuCommand(row.item);
    case KeyAction::kFlipItem:
      return commands_.FlipAndRun(row.item);
    case KeyAction::kGoToMark:
      return row.amount == 1 ? GoToMark(session_.MarkA, session_.ResumePosition)
                             : GoToMark(session_.MarkB, session_.ResumeEndPosition);
    case KeyAction::kShiftDown:
      ShiftDown = true;
      return;
    case KeyAction::kCtrlDown:
      CtrlDown = true;
      return;
    case KeyAction::kVolume:
      return sliders_.Scroller2.SetValue(sliders_.Scroller2.Value() + row.amount);  // held in range
    case KeyAction::kZoom:
      return host_.ScaleWindow(static_cast<float>(row.amount));
    case KeyAction::kSeek:
      return SeekStep(row.amount);
    case KeyAction::kSeekFrames:
      return SeekFrames(row.amount);
    case KeyAction::kRate:
      return StepRate(row.amount);
    case KeyAction::kNormalRate:
      return sliders_.Scroller3.SetAndFinish(sliders_.Scroller3.Max() / 2);
    case KeyAction::kPopUpMenu:
      return host_.PopUpMenuAtWindow();
    case KeyAction::kDeleteFile:
      return host_.DeleteCurFile();
    case KeyAction::kReleaseResume:
      return host_.ReleaseResumeData();
    case KeyAction::kShowColors:
      return host_.ShowColors();
    case KeyAction::kDemoMode:
      return host_.SetTempWindowCaption(
          Tr(host_.FlipDemoTimer() ? TrLater("Demo mode:ON") : TrLater("Demo mode:OFF")));
    case KeyAction::kQuickSearch:
      return host_.ShowQuickSearch();
    case KeyAction::kMeterStyle:
      return host_.SetVuMeterStyle();
    case KeyAction::kConfigPlugin:
      return host_.ConfigPlugin();
    case KeyAction::kFullScreen:
      return host_.ToggleFullScreen();
    case KeyAction::kShowPlugins:
      return host_.ShowPlugins();
  }
}

// A mark that the user has set counts before what a resume file brought along.
void KeyRouter::GoToMark(double mark, double resume) {
  if (!movie_.DS_IsOpen()) return;
  if (mark > 0.0) {
    movie_.DS_SetPosition(mark);
  } else if (resume > 0.0) {
    movie_.DS_SetPosition(resume);
  }
}

void KeyRouter::SeekStep(double seconds) {
  if (!movie_.DS_IsPaused()) {
    host_.BUtton_Click(kPause);
    if (session_.Unloading) return;
    PlayAfterKeys = true;
  } else if (!SeekHeld) {
    PlayAfterKeys = false;
  }
  movie_.DS_Seek(seconds);
  sliders_.Scroller1.SetValue(movie_.DS_GetPosition());
  SeekHeld = true;
}

void KeyRouter::SeekFrames(double frames) {
  const double frame = movie_.DS_GetAvgTimePerFrame();
  SeekStep(frames * (frame > 0.0 ? frame : kFrameWithoutPicture));
}

void KeyRouter::StepRate(double steps) {
  ScrollerModel& rate = sliders_.Scroller3;
  const bool room = steps > 0.0 ? rate.Value() < rate.Max() : rate.Value() > rate.Min();
  if (room) rate.SetAndFinish(rate.Value() + steps);
}

void KeyRouter::Form_KeyUp(std::int16_t KeyCode) {
  if (KeyCode == kKeyCtrl) {
    if (!ShiftDown) ResumePlay();
    CtrlDown = false;
  } else if (KeyCode == kKeyShift) {
    if (!CtrlDown) ResumePlay();
    ShiftDown = false;
  } else {
    return;
  }
  if (!ShiftDown && !CtrlDown) ForgetSeeks();
}

void KeyRouter::ReleaseAll() {
  ResumePlay();
  ShiftDown = CtrlDown = false;
  ForgetSeeks();
}

void KeyRouter::ResumePlay() {
  if (SeekHeld && PlayAfterKeys && !session_.Unloading) movie_.DS_Play();
}

void KeyRouter::ForgetSeeks() {
  SeekHeld = false;
  PlayAfterKeys = false;
}

}  // namespace kv
