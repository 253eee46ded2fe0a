#include "view/command_router.h"

#include "system/ascii_text.h"
#include "system/translation.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace kv {
namespace {

constexpr int kClickMilliseconds = 25;
constexpr int kTrayRestore = 1;
constexpr int kStep = -1;  // not a jump to an index
constexpr float kNormalSize = 1.0F;

// Buttons of the strip.
constexpr int kPlay = 0;
constexpr int kPause = 1;
constexpr int kStop = 2;
constexpr int kPrevious = 3;
constexpr int kNext = 4;

// Nothing unless all of `digits` is a number from 0 up.
std::optional<int> Number(std::string_view digits) {
  int number = 0;
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, number);
  if (error != std::errc() || stop != end || number < 0) return std::nullopt;
  return number;
}

}  // namespace

CommandRouter::CommandRouter(MenuModel& menu, Settings& settings, const Session& session,
                             Dialogs& dialogs, MessagePump& pump, TimerSource& time,
                             const CommandTimers& timers, const CommandHosts& hosts)
    : menu_(menu),
      settings_(settings),
      session_(session),
      dialogs_(dialogs),
      pump_(pump),
      time_(time),
      timers_(timers),
      hosts_(hosts) {}

const std::vector<CommandRouter::Row>& CommandRouter::Rows() {
  using Self = CommandRouter;
  static const std::vector<Row> rows = {
      {"mReleaseRF", [](Self& self) { self.hosts_.medium.ReleaseResumeData(); }},
      {"mSaveRFAs", [](Self& self) { self.hosts_.medium.SaveResumeFile(false, false); }},
      {"mSaveRFEnd", [](Self& self) { self.hosts_.medium.SaveResumeFile(true, false); }},
      {"mSaveRFEndClear", [](Self& self) { self.hosts_.medium.SaveResumeFile(true, true); }},
      {"mOpen", [](Self& self) { self.hosts_.medium.OpenFile(""); }},
      {"mOpenURL", [](Self& self) { self.OpenUrl(); }},
      {"mSaveAs", [](Self& self) { self.hosts_.medium.SaveCurrentFile(); }},
      {"mPlay", [](Self& self) { self.hosts_.transport.BUtton_Click(kPlay); }},
      {"mPause", [](Self& self) { self.hosts_.transport.BUtton_Click(kPause); }},
      {"mStop", [](Self& self) { self.hosts_.transport.BUtton_Click(kStop); }},
      {"mPrevious", [](Self& self) { self.hosts_.transport.BUtton_Click(kPrevious); }},
      {"mNext", [](Self& self) { self.hosts_.transport.BUtton_Click(kNext); }},
      {"mOptions", [](Self& self) { self.Options(); }},
      {"mJumpToFirst", [](Self& self) { self.hosts_.transport.PlaylistSetPrevious(true, true); }},
      {"mJumpToLast", [](Self& self) { self.hosts_.transport.PlaylistSetNext(true, kStep, true); }},
      {"mKeepAspect", [](Self& self) { self.Store(&Settings::KeepAspect, "mKeepAspect"); }},
      {"mFitToWindow", [](Self& self) { self.Store(&Settings::FitToWindow, "mFitToWindow"); }},
      {"mFullScreen", [](Self& self) { self.timers_.ToggleFullscreenTimer.SetEnabled(true); }},
      {"mPlaylist", [](Self& self) { self.TogglePlaylist(); }},
      {"mAbout", [](Self& self) { self.ShowModal([&] { self.hosts_.forms.ShowAbout(); }); }},
      {"mExit", [](Self& self) { self.timers_.UnloadTimer.SetEnabled(true); }},
      {"mHelp", [](Self& self) { self.hosts_.forms.ShowHelp(); }},
      {"mShowScope",
       [](Self& self) {
         self.hosts_.visuals.StopVuMeter1();
         self.hosts_.visuals.ShowMeterWindow();
       }},
      {"mPluginManager",
       [](Self& self) { self.ShowModal([&] { self.hosts_.forms.ShowPlugins(); }); }},
      {"mZoom100", [](Self& self) { self.hosts_.window.ScaleWindow(kNormalSize); }},
      {"mPlug_-2", [](Self& self) { self.Store(&Settings::ShowVuMeter, "mPlug_-2"); }},
      {kBuiltInMeterKey, [](Self& self) { self.UseBuiltInMeter(); }},
      {"mRecent_Clear", [](Self& self) { self.ClearRecentFiles(); }},
      {"mSubtitles_Load",
       [](Self& self) { self.ShowModal([&self] { self.hosts_.tracks.LoadSubtitles(); }); }},
  };
  return rows;
}

// A timer does not fire inside its own handler, and a command may take long there: opening a slow
// address pumps for a minute. Stop and Exit must work meanwhile, so they get a timer of their own.
Timer& CommandRouter::ClickTimer() {
  if (running_ == 0) return timers_.mnuTimer;
  while (inner_timers_.size() < running_) {
    const std::size_t level = inner_timers_.size();
    inner_timers_.push_back(
        time_.MakeTimer(TimerKind::kOrdinary, kClickMilliseconds, [this, level] {
          inner_timers_[level]->SetEnabled(false);
          OnmnuTimer();
        }));
  }
  return *inner_timers_[running_ - 1];
}

void CommandRouter::MENU_Click(int id) {
  if (session_.Unloading || !menu_.Enabled(id)) return;
  PendingMenuId_ = id;
  ClickTimer().SetEnabled(true);
  pump_.PumpOnce();
}

void CommandRouter::RunMenuCommand(std::string_view key) {
  MENU_Click(menu_.IdOfKey(key));
}

void CommandRouter::FlipAndRun(std::string_view key) {
  const int id = menu_.IdOfKey(key);
  if (!menu_.Enabled(id)) return;
  menu_.SetChecked(id, !menu_.Checked(id));
  MENU_Click(id);
}

void CommandRouter::OnmnuTimer() {
  timers_.mnuTimer.SetEnabled(false);
  const int id = PendingMenuId_;
  PendingMenuId_ = MenuModel::kNoItem;
  if (id == MenuModel::kNoItem || session_.Unloading) return;
  ++running_;
  pump_.PumpOnce();
  if (!session_.Unloading) Dispatch(id);
  --running_;
}

void CommandRouter::Dispatch(int id) {
  const MenuItem* const item = menu_.Find(id);
  // By value: a command may build the menu anew.
  const std::string key = item != nullptr ? item->key : std::string();
  const std::vector<Row>& rows = Rows();
  const auto row = std::find_if(rows.begin(), rows.end(),
                                [&key](const Row& candidate) { return candidate.key == key; });
  if (row != rows.end()) {
    row->run(*this);
    return;
  }
  RunEntryMadeAtRunTime(key);
  if (!session_.Unloading) menu_.UpdateMenuChecks();
}

void CommandRouter::RunEntryMadeAtRunTime(const std::string& key) {
  constexpr std::size_t kNumberDigits = 2;
  if (StartsWithIgnoringCase(key, kRecentKey) && key.size() >= kRecentKey.size() + kNumberDigits) {
    const auto number = Number(std::string_view(key).substr(key.size() - kNumberDigits));
    if (!number || static_cast<std::size_t>(*number) >= settings_.RecentFiles.size()) return;
    // By value: opening moves the list. An empty name would ask for a file.
    const std::string file = settings_.RecentFiles[static_cast<std::size_t>(*number)];
    if (!file.empty()) hosts_.medium.OpenFile(file);
  } else if (key.starts_with(kPluginKey)) {
    const auto number = Number(std::string_view(key).substr(kPluginKey.size()));
    if (number) hosts_.visuals.SetExPlugIn(*number);
  } else if (key.starts_with(kSubtitleKey) || key.starts_with(kSoundKey)) {
    hosts_.tracks.PickTrack(key);
  }
}

// While such a window is open, the tray can still send commands; it gets no second one.
template <class Show>
bool CommandRouter::ShowModal(Show show) {
  if (modal_) return false;
  modal_ = true;
  show();
  modal_ = false;
  return !session_.Unloading;
}

void CommandRouter::OpenUrl() {
  if (!hosts_.window.FormVisible()) hosts_.window.TrayClick(kTrayRestore);
  std::string address;
  if (!ShowModal([&] { address = hosts_.forms.AskForUrl(); })) return;
  if (!address.empty()) hosts_.medium.OpenAddress(address);
}

void CommandRouter::Options() {
  hosts_.window.SetCursor(true, true);
  bool wants_colors = false;
  if (!ShowModal([&] { wants_colors = hosts_.forms.ShowOptions(); })) return;
  hosts_.window.UpdateSettings();
  if (wants_colors) hosts_.forms.ShowColors();
}

void CommandRouter::TogglePlaylist() {
  if (!session_.PlaylistWindowLoaded) {
    hosts_.forms.ShowPlaylistWindow();
  } else if (!IsOn(settings_.FullScreen)) {
    hosts_.forms.ClosePlaylistWindow();
  }
}

void CommandRouter::ClearRecentFiles() {
  MessageBoxRequest question;
  question.text = Tr("Clear list of recent files?");
  question.icon = BoxIcon::kQuestion;
  question.buttons = BoxButtons::kOkCancel;
  BoxAnswer answer = BoxAnswer::kCancel;
  if (!ShowModal([&] { answer = dialogs_.ShowMessageBox(question); })) return;
  if (answer != BoxAnswer::kOk) return;
  settings_.RecentFiles.fill("");
  menu_.BuildMenu();
}

void CommandRouter::UseBuiltInMeter() {
  hosts_.visuals.ReleasePlugin();
  settings_.UseExternalPlugin = FromBool(false);
  menu_.UpdateMenuChecks();
}

void CommandRouter::Store(SettingsBool Settings::*setting, std::string_view key) {
  settings_.*setting = FromBool(menu_.Checked(menu_.IdOfKey(key)));
  hosts_.window.UpdateSettings();
}

}  // namespace kv
