#include "shell/transport.h"

#include "controls/scroller_model.h"
#include "system/ascii_text.h"
#include "system/paths.h"

#include <array>
#include <cstddef>

namespace kv {
namespace {

constexpr int kStep = -1;  // not a jump to an index
constexpr int kBuffering = 0;
constexpr int kLastRepeatMode = 2;

}  // namespace

Transport::Transport(clsDShowControl& movie, Settings& settings, const Session& session,
                     Marks& marks, MessagePump& pump, TransportNavigation& navigation,
                     TransportMenu& menu, TransportVisuals& visuals, TransportDisplay& display)
    : movie_(movie),
      settings_(settings),
      session_(session),
      marks_(marks),
      pump_(pump),
      navigation_(navigation),
      menu_(menu),
      visuals_(visuals),
      display_(display) {}

void Transport::BUtton_Click(int Index) {
  using Action = void (Transport::*)();
  // In the order of `Button`.
  static constexpr std::array<Action, 12> kActions = {
      &Transport::Play,  &Transport::Pause,     &Transport::Stop,       &Transport::Previous,
      &Transport::Next,  &Transport::StepMarks, &Transport::StepRepeat, &Transport::Menu,
      &Transport::First, &Transport::Last,      &Transport::Playlist,   &Transport::CyclePlugins,
  };
  if (Index < 0 || Index >= static_cast<int>(kActions.size())) return;
  (this->*kActions[static_cast<std::size_t>(Index)])();
}

void Transport::Button_DblClick(int Index) {
  if (Index == kPrevious || Index == kNext) BUtton_Click(Index);
}

void Transport::BottonPanel_MouseUp(std::int16_t MouseButton) {
  if (MouseButton == kRightButton) BUtton_Click(kMenu);
}

void Transport::Play() {
  if (marks_.BothSet()) movie_.DS_SetPosition(session_.MarkA);
  if (!movie_.DS_IsOpen()) {
    PlayFromList();
    visuals_.SetVumeterVisible();
  } else if (session_.AsxInfo.entry.empty()) {
    if (Playing()) {
      movie_.DS_SetPosition(0);
    } else {
      movie_.DS_Play();
    }
  } else if (!movie_.DS_IsRunning() && !movie_.DS_CurFile().empty()) {
    display_.ShowStatus(kBuffering);
    movie_.DS_Play();
  }
}

void Transport::PlayFromList() {
  const int index = settings_.PlaylistIndex == 0 ? 1 : settings_.PlaylistIndex;
  const std::string item = navigation_.PlaylistItem(index);
  if (item.empty()) {
    menu_.RunMenuCommand("mOpen");
    return;
  }
  settings_.PlaylistIndex = index;
  settings_.CurrentFile = item;
  display_.UpdateFileDisp("");
  display_.UpdateFileDataDisplay();
  navigation_.StartPlaylistTimer(false);
}

void Transport::Pause() {
  if (Playing()) {
    movie_.DS_Pause();
  } else {
    movie_.DS_Play();
  }
  visuals_.SetVumeterVisible();
}

// Held paused at the start, so that the first picture shows.
void Transport::Stop() {
  movie_.DS_Stop();
  movie_.DS_Pause();
  visuals_.ReleasePlugin();
  pump_.PumpOnce();
}

void Transport::Previous() {
  navigation_.PlaylistSetPrevious(false, true);
}

void Transport::Next() {
  navigation_.PlaylistSetNext(false, kStep, true);
}

void Transport::First() {
  navigation_.PlaylistSetPrevious(true, true);
}

void Transport::Last() {
  navigation_.PlaylistSetNext(true, kStep, true);
}

void Transport::StepMarks() {
  marks_.Press();
}

void Transport::StepRepeat() {
  const int mode = settings_.RepeatMode;
  settings_.RepeatMode = mode >= 0 && mode < kLastRepeatMode ? mode + 1 : 0;
  SetRepeatButtonColor();
}

void Transport::SetRepeatButtonColor() {
  const int mode = settings_.RepeatMode;
  display_.SetRepeatFace(mode >= 0 && mode <= kLastRepeatMode ? mode : 0);
}

void Transport::Menu() {
  // A meter that runs on would make the menu stutter.
  const bool meter_ran = visuals_.StopMeter();
  const std::string extension = LowerAscii(GetFileExtension(settings_.CurrentFile, true));
  menu_.SetMenuEnabled("mSaveRFAs", extension != ".asx" && extension != ".asf");
  menu_.PopUpMainMenu();
  if (meter_ran) visuals_.StartMeter();
}

void Transport::Playlist() {
  switch (display_.StateOfPlaylistWindow()) {
    case TransportDisplay::PlaylistWindow::kNotLoaded:
      display_.ShowPlaylistWindow();
      break;
    case TransportDisplay::PlaylistWindow::kMinimised:
      display_.RestorePlaylistWindow();
      break;
    case TransportDisplay::PlaylistWindow::kOpen:
      display_.FocusPlaylistWindow();
      break;
  }
}

void Transport::CyclePlugins() {
  visuals_.CyclePlugins();
}

}  // namespace kv
