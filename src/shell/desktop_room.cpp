#include "shell/desktop_room.h"

#include "shell/time_display.h"
#include "shell/transport.h"
#include "system/file_address.h"
#include "system/name_tests.h"

#include <QDBusConnection>

#include <string_view>
#include <utility>

namespace kv {
namespace {

// The first picture of a file that comes with the start is there by then.
constexpr int kBeginMilliseconds = 600;
// A screen goes blank after minutes.
constexpr int kWatchMilliseconds = 1000;

constexpr double kRatePerStep = 0.05;
// The rate of a slider at its lower end, where a factor of 0 would stand still.
constexpr double kRateAtBottom = 0.1;

// The types of the desktop entry, which is where they are kept.
std::vector<std::string> MimeTypes() {
  std::vector<std::string> types;
  std::string_view rest = KV_MIME_TYPES;
  while (!rest.empty()) {
    const std::size_t end = rest.find(',');
    types.emplace_back(rest.substr(0, end));
    rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
  }
  return types;
}

}  // namespace

struct DesktopRoom::Services {
  Services(DesktopRoom& room, const QDBusConnection& bus)
      : blanking(bus),
        guard(blanking),
        service(bus),
        player(room, service, room.parts_.time,
               {kAppTitle, "kestrelview", {"file", "http", "https", "ftp", "mms"}, MimeTypes()}) {
    service.Start(player);
  }

  BlankingServicesQt blanking;
  BlankingGuard guard;
  MprisService service;
  MprisPlayer player;
};

DesktopRoom::DesktopRoom(DesktopRoomHost& host, const Parts& parts)
    : host_(host),
      parts_(parts),
      art_(parts.runtime_folder),
      begin_(parts.time.MakeTimer(TimerKind::kOrdinary, kBeginMilliseconds, [this] { Connect(); })),
      watch_(parts.time.MakeTimer(TimerKind::kOrdinary, kWatchMilliseconds, [this] {
        const PlayerState state = State();
        services_->guard.SetPlaying(state.Playing() && state.picture);
      })) {}

DesktopRoom::~DesktopRoom() = default;

void DesktopRoom::Connect() {
  begin_->SetEnabled(false);
  const QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return;
  services_ = std::make_unique<Services>(*this, bus);
  parts_.dialogs.UsePortal(bus);
  watch_->SetEnabled(true);
}

void DesktopRoom::End() {
  begin_->SetEnabled(false);
  watch_->SetEnabled(false);
  if (!services_) return;
  services_->guard.SetPlaying(false);
  services_->service.Stop();
}

PlayerState DesktopRoom::State() const {
  const clsDShowControl& Movie = parts_.Movie;
  const Session& session = parts_.session;
  PlayerState state;
  if (Movie.DS_IsOpen()) state.target = Movie.DS_CurFile();
  if (!state.target.empty()) {
    state.tags = Movie.DS_GetTags();
    state.title = session.AsxInfo.title;
    state.author = session.AsxInfo.author;
    state.position = Movie.DS_GetPosition();
    state.duration = Movie.DS_GetDuration();
    state.picture = session.MovieWidth >= 1 && session.MovieHeight >= 1;
  }
  state.seekable = !PlaysWithoutPosition(session);
  state.running = Movie.DS_IsRunning();
  state.paused = Movie.DS_IsPaused();
  const ScrollerModel& volume = parts_.models.Scroller2;
  state.volume = volume.Max() > 0 ? volume.Value() / volume.Max() : 0;
  const double rate = parts_.models.Scroller3.Value();
  state.rate = rate > 0 ? rate * kRatePerStep : kRateAtBottom;
  state.repeat_mode = parts_.settings.RepeatMode;
  state.list_index = parts_.settings.PlaylistIndex;
  state.list_count = host_.PlaylistCount();
  state.from_list = IsOn(parts_.settings.PlayingFromPlaylist);
  state.full_screen = IsOn(parts_.settings.FullScreen);
  return state;
}

void DesktopRoom::PressPlay() {
  host_.BUtton_Click(Transport::kPlay);
}
void DesktopRoom::PressPause() {
  host_.BUtton_Click(Transport::kPause);
}
void DesktopRoom::PressStop() {
  host_.BUtton_Click(Transport::kStop);
}
void DesktopRoom::PressPrevious() {
  host_.BUtton_Click(Transport::kPrevious);
}
void DesktopRoom::PressNext() {
  host_.BUtton_Click(Transport::kNext);
}

void DesktopRoom::SetVolume(double volume) {
  ScrollerModel& slider = parts_.models.Scroller2;
  slider.SetAndFinish(volume * slider.Max());
}

void DesktopRoom::SetRate(double rate) {
  parts_.models.Scroller3.SetAndFinish(rate / kRatePerStep);
}

void DesktopRoom::SetRepeatMode(int mode) {
  parts_.settings.RepeatMode = mode;
  host_.ShowRepeatMode();
}

void DesktopRoom::SetFullScreen(bool on) {
  if (IsOn(parts_.settings.FullScreen) == on) return;
  if (!parts_.form.isVisible()) RaiseWindow();
  host_.ToggleFullScreen();
}

// Opening takes its time, and the caller only wants to know whether it begins.
bool DesktopRoom::OpenUri(const std::string& uri) {
  if (parts_.session.Unloading) return false;
  const std::string target = IsUrl(uri) ? uri : PathOfFileAddress(uri);
  if (target.empty() || !IsPlayableName(target, parts_.session.SupportedExtensions)) return false;
  Later([this, target] { host_.OpenForProgram(target); });
  return true;
}

void DesktopRoom::RaiseWindow() {
  QWidget& form = parts_.form;
  if (form.isMinimized()) form.setWindowState(form.windowState() & ~Qt::WindowMinimized);
  form.show();
  form.raise();
  form.activateWindow();
}

void DesktopRoom::CloseWindow() {
  parts_.UnloadTimer.SetEnabled(true);
}

void DesktopRoom::Later(std::function<void()> work) {
  QMetaObject::invokeMethod(
      &services_->service,
      [this, work = std::move(work)] {
        if (!parts_.session.Unloading) work();
      },
      Qt::QueuedConnection);
}

}  // namespace kv
