#include "engine/dshow_control.h"

#include "engine/audio_levels.h"

#include <algorithm>
#include <cmath>

namespace kv {
namespace {

constexpr std::uint32_t kWindowVisible = 0x10000000;
constexpr double kSlowestRate = 0.1;

}  // namespace

clsDShowControl::clsDShowControl(GraphFactory& factory, MessagePump& pump)
    : factory_(factory), pump_(pump) {}

clsDShowControl::~clsDShowControl() = default;

void clsDShowControl::RaisePlayState(PlayState state) {
  if (events_ != nullptr) events_->Movie_PlayStateChange(state);
}

void clsDShowControl::PutWindow(int Top, int Left, int Width, int Height, WindowHandle Hwnd) {
  Control->put_Top(Top);
  Control->put_Left(Left);
  Control->put_Width(Width);
  Control->put_Height(Height);
  Control->put_Owner(Hwnd);
}

bool clsDShowControl::DS_OpenFile(const std::string& File, int Top, int Left, int Width, int Height,
                                  WindowHandle Hwnd) {
  // Whoever opens or releases inside one of the pumps below has the last word.
  std::uint64_t released = released_;
  if (events_ != nullptr) events_->Movie_PrepareMedia(File);
  if (released == released_) {
    DS_Remove();
    released = released_;
    pump_.PumpOnce();
    pump_.PumpOnce();
  }
  const bool rendered = released == released_ && BuildGraph(File, Top, Left, Width, Height, Hwnd);
  if (events_ != nullptr) events_->Movie_PrepareMediaFinish(File);
  return rendered;
}

bool clsDShowControl::BuildGraph(const std::string& File, int Top, int Left, int Width, int Height,
                                 WindowHandle Hwnd) {
  const std::uint64_t released = released_;
  // Held here as well: a release inside the pump of `RenderFile` lets go of the field.
  std::shared_ptr<FilterGraph> graph = factory_.CreateGraph();
  Control = graph;
  CurFile = File;
  const bool rendered = graph->RenderFile(File);
  if (released != released_) return false;
  if (!rendered) CurFile.clear();
  Running = false;
  graph->put_Volume(kFullVolume);
  graph->put_Balance(0);
  graph->put_Owner(Hwnd);
  graph->put_WindowStyle(kWindowVisible);
  PutWindow(Top, Left, Width, Height, Hwnd);
  graph->put_Rate(1.0);
  Duration = graph->get_Duration().value_or(0.0);
  Paused = false;
  Open = true;
  graph.reset();  // an open inside this pump releases the last of it before it makes its own
  pump_.PumpOnce();
  return rendered && released == released_;
}

void clsDShowControl::DS_Remove() {
  ++released_;
  Duration = 0.0;
  Paused = false;
  Open = false;
  if (Control) Control->Stop();
  Control.reset();
  CurFile.clear();
}

void clsDShowControl::DS_ChangeTarget(int Top, int Left, int Width, int Height, WindowHandle Hwnd) {
  if (!Control || (!Paused && !Running)) return;
  Control->put_WindowStyle(kWindowVisible);
  Control->put_Owner(Hwnd);
  Control->SetWindowPosition(Left, Top, Width, Height);
}

void clsDShowControl::DS_SetScale(int Top, int Left, int Width, int Height) {
  if (Control) Control->SetWindowPosition(Left, Top, Width, Height);
}

void clsDShowControl::DS_Play() {
  Paused = false;
  if (!Control) return;
  const auto position = Control->get_CurrentPosition();
  const auto duration = Control->get_Duration();
  if (position && duration && std::nearbyint(*position) == std::nearbyint(*duration)) {
    Control->put_CurrentPosition(0.0);
  }
  Control->Run();
  Running = true;
  RaisePlayState(kStarted);
}

void clsDShowControl::DS_Pause() {
  if (!Control) return;
  Control->Pause();
  Paused = true;
  RaisePlayState(kPaused);
}

void clsDShowControl::DS_Stop() {
  if (!Control) return;
  Control->Stop();
  Control->put_CurrentPosition(0.0);
  Running = false;
  RaisePlayState(kStopped);
}

void clsDShowControl::DS_Seek(double Delta) {
  if (!Control) return;
  const auto position = Control->get_CurrentPosition();
  const auto duration = Control->get_Duration();
  if (!position || !duration) return;
  const double target = *position + Delta;
  if (target < 0.0) {
    Control->put_CurrentPosition(0.0);
  } else {
    Control->put_CurrentPosition(target <= *duration ? target : *duration);
  }
}

bool clsDShowControl::DS_StillPlaying(int TimeoutMs) {
  return Control && Control->WaitForCompletion(TimeoutMs) == 0;
}

double clsDShowControl::DS_GetRate() const {
  return Control ? Control->get_Rate().value_or(0.0) : 0.0;
}

double clsDShowControl::DS_SetRate(double Rate) {
  if (!(Rate > 0.0)) Rate = kSlowestRate;
  if (Control) Control->put_Rate(Rate);
  return Rate;
}

double clsDShowControl::DS_GetDuration() const {
  return Control ? Control->get_Duration().value_or(0.0) : 0.0;
}

double clsDShowControl::DS_GetPosition() const {
  return Control ? Control->get_CurrentPosition().value_or(0.0) : 0.0;
}

double clsDShowControl::DS_SetPosition(double Pos) {
  if (!Control) return Pos;
  if (!(Pos >= 0.0)) Pos = 0.0;
  const auto duration = Control->get_Duration();
  if (duration && Pos > *duration) Pos = *duration;
  Control->put_CurrentPosition(Pos);
  DS_SetVolume(-1, false);
  DS_SetVolume(StoredVolume, true);
  return Pos;
}

int clsDShowControl::DS_GetVolume() const {
  return Control ? Control->get_Volume().value_or(0) : 0;
}

int clsDShowControl::DS_SetVolume(int Volume, bool Remember) {
  Volume = std::clamp(Volume, kSilence, kFullVolume);
  if (Control) {
    Control->put_Volume(Volume);
    if (Remember) StoredVolume = Volume;
  }
  return Volume;
}

int clsDShowControl::DS_GetBalance() const {
  return Control ? Control->get_Balance().value_or(0) : 0;
}

int clsDShowControl::DS_SetBalance(int Balance) {
  Balance = std::clamp(Balance, -kBalanceLimit, kBalanceLimit);
  if (Control) Control->put_Balance(Balance);
  return Balance;
}

int clsDShowControl::DS_GetVideoBitRate() {
  return Control ? Control->get_BitRate().value_or(0) : 0;
}

int clsDShowControl::DS_GetVideoBitErrorRate() {
  return Control ? Control->get_BitErrorRate().value_or(0) : 0;
}

void clsDShowControl::DS_GetMovieSize(int& Width, int& Height) {
  if (!Control) return;
  const VideoSize size = Control->GetVideoSize().value_or(VideoSize{});
  Width = size.width;
  Height = size.height;
}

double clsDShowControl::DS_GetAvgTimePerFrame() {
  return Control ? Control->get_AvgTimePerFrame().value_or(0.0) : 0.0;
}

void clsDShowControl::DS_SetFullscreen(bool On) {
  if (Control) Control->put_FullScreenMode(On);
}

void clsDShowControl::DS_HideCursor(bool Hide) {
  if (Control) Control->HideCursor(Hide);
}

std::vector<MediaTrack> clsDShowControl::DS_GetTracks() const {
  return Control ? Control->Tracks() : std::vector<MediaTrack>();
}

bool clsDShowControl::DS_SelectTrack(TrackKind Kind, int Id) {
  return Control && Control->SelectTrack(Kind, Id);
}

bool clsDShowControl::DS_AddSubtitles(const std::string& File) {
  // Held here as well: a release inside the pump lets go of the field.
  const std::shared_ptr<FilterGraph> graph = Control;
  return graph && graph->AddSubtitles(File);
}

bool clsDShowControl::DS_IsCursorHidden() const {
  return Control && Control->IsCursorHidden().value_or(false);
}

int clsDShowControl::State() const {
  if (Paused) return 2;
  return Running ? 1 : 0;
}

}  // namespace kv
