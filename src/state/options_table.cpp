#include "state/options_table.h"

#include "state/settings_fields.h"
#include "system/translation.h"

#include <algorithm>
#include <type_traits>

namespace kv {
namespace {

constexpr int kIntervals[] = {100, 200, 300, 400, 500, 600, 700, 800, 900, 1000};
constexpr int kBufferSizes[] = {16, 32, 64, 128, 256, 512, 1024};
constexpr int kBufferCounts[] = {8, 16, 32, 64, 80, 90, 100, 120};
constexpr int kSampleRates[] = {8000, 11025, 22050, 44100};

using enum OptionKind;
using enum OptionPage;

constexpr OptionRow kRows[] = {
    {kPlayback, TrLater("When the player starts"), kCheck, "chkAutoLoadLast",
     TrLater("Load last file"), "AutoLoadLast"},
    {kPlayback, TrLater("When the player starts"), kCheck, "chkStorePos",
     TrLater("Remember last file position"), "StorePos"},
    {kPlayback, TrLater("When the player starts"), kCheck, "chkAutoStart", TrLater("Start playing"),
     "AutoStart"},
    {kPlayback, TrLater("When the player starts"), kCheck, "chkInitLastFrame",
     TrLater("Initialize last frame (previously playing movie)"), "InitLastFrame"},
    {kPlayback, TrLater("Resume files"), kCheck, "chkAutoPlayResume",
     TrLater("Start playing, when opening resume file"), "AutoPlayResume"},
    {kPlayback, TrLater("Scrolling"), kOffCheck, "chkReqCTRLScroll",
     TrLater("Only show frames while scrolling, when CTRL is pressed."),
     "ShowFramesWhileScrolling"},
    {kPlayback, TrLater("When the system shuts down"), kCheck, "chkAutoRestart",
     TrLater("Automatically re-start Kestrelview, if it's running when Windows  exits."),
     "AutoRestart"},

    {kPicture, TrLater("Size"), kCheck, "chkKeepAspcet", TrLater("Keep aspect ratio"),
     "KeepAspect"},
    {kPicture, TrLater("Size"), kCheck, "chkFitToWindow", TrLater("Fit video to window"),
     "FitToWindow"},
    {kPicture, TrLater("Size"), kCheck, "ChkAutoZoom",
     TrLater("Scale windows to movie original size when i open a movie"), "AutoZoom"},
    {kPicture, TrLater("Size"), kCheck, "chkSilentSizing",
     TrLater("Silent sizing (Hide content while sizing, faster!)"), "SilentSizing"},
    {kPicture, TrLater("Full screen"), kCheck, "chkHideInFullscreen",
     TrLater("Auto hide controls in fullscreen mode"), "HideInFullscreen"},
    {kPicture, TrLater("Full screen"), kCheck, "chkHideControlsInFullscreen",
     TrLater("Hide controls in fullscreen"), "HideControlsInFullscreen"},
    {kPicture, TrLater("Full screen"), kCheck, "chkAutoFullscreen",
     TrLater("Automatically return from Full Screen when another program takes focus"),
     "AutoFullscreen"},

    {kWindow, TrLater("Main window"), kCheck, "chkRememberWindowPos",
     TrLater("Remember window position"), "RememberWindowPos"},
    {kWindow, TrLater("Main window"), kCheck, "chkRememberSize", TrLater("Remember size"),
     "RememberSize"},
    {kWindow, TrLater("Main window"), kCheck, "chkHideInNormal",
     TrLater("Auto hide controls in window mode"), "HideInNormal"},
    {kWindow, TrLater("Main window"), kCheck, "ChkInclidePathInFileTitle",
     TrLater("Include path in file title"), "IncludePathInFileTitle"},
    {kWindow, TrLater("When minimized"), kChoice, "ShowMode(1)", TrLater("Minimize to Tray"),
     "MinimizeToTray", -1},
    {kWindow, TrLater("When minimized"), kChoice, "ShowMode(0)", TrLater("Minimize to taskbar*"),
     "MinimizeToTray", 0},
    {kWindow, TrLater("CPU load"), kCheck, "chkCPU", TrLater("CPU Graph"), "CpuGraph"},
    {.page = kWindow,
     .group = TrLater("CPU load"),
     .kind = kCheck,
     .control = "chkCPUGrid",
     .caption = TrLater("Show grid"),
     .field = "CpuGraphGrid",
     .depends_on = "chkCPU"},
    {.page = kWindow,
     .group = TrLater("CPU load"),
     .kind = kCheck,
     .control = "chkCPUGraphGridMove",
     .caption = TrLater("Move grid"),
     .field = "CpuGraphGridMove",
     .depends_on = "chkCPU"},
    {.page = kWindow,
     .group = TrLater("CPU load"),
     .kind = kIndexList,
     .control = "cmbCPU",
     .caption = TrLater("Update interval:"),
     .field = "CpuGraphInterval",
     .values = kIntervals,
     .unit = TrLater("%1 ms"),
     .depends_on = "chkCPU"},

    {kPlaylist, TrLater("Opening and saving"), kCheck, "chkAutoPlayPlaylist",
     TrLater("Automatically start playing when opening playlists"), "AutoPlayPlaylist"},
    {kPlaylist, TrLater("Opening and saving"), kCheck, "chkSavePlaylist",
     TrLater("Save current playlist"), "SavePlaylist"},
    {kPlaylist, TrLater("Opening and saving"), kCheck, "ChkSaveAbsolute",
     TrLater("Save M3U playlist using \"absolute\" paths only."), "SaveAbsolutePaths"},
    {kPlaylist, TrLater("In the list"), kCheck, "ChkFindPlaying",
     TrLater("Find playing file, when playlist position changes from player."), "FindPlaying"},
    {kPlaylist, TrLater("In the list"), kCheck, "chkDragDrop",
     TrLater("Drag 'n' Drop adds to playlist"), "DragDropAddsToPlaylist"},

    {kMeter, TrLater("Picture"), kCheck, "chkVuMeter",
     TrLater("Show VuMeter in movie window (when playing sounds)"), "ShowVuMeter"},
    {kMeter, TrLater("Picture"), kSlider, "Scroller1",
     TrLater("VuMeter refresh rate: default is 50% (25)"), "VuRefreshRate"},
    {.page = kMeter,
     .group = TrLater("Sound"),
     .kind = kValueList,
     .control = "Combo3",
     .caption = TrLater("Audio buffer size:"),
     .field = "AudioBufferSize",
     .values = kBufferSizes},
    {.page = kMeter,
     .group = TrLater("Sound"),
     .kind = kValueList,
     .control = "Combo4",
     .caption = TrLater("Number of buffers:"),
     .field = "AudioBufferCount",
     .values = kBufferCounts},
    {.page = kMeter,
     .group = TrLater("Sound"),
     .kind = kValueList,
     .control = "Combo1",
     .caption = TrLater("Sample rate:"),
     .field = "AudioSampleRate",
     .values = kSampleRates,
     .first_if_none = true},
};

constexpr bool IsField(std::string_view name) {
  return std::any_of(kSettingsFields.begin(), kSettingsFields.end(),
                     [name](const SettingsField& field) { return field.name == name; });
}
static_assert(std::all_of(std::begin(kRows), std::end(kRows),
                          [](const OptionRow& row) { return IsField(row.field); }));

const SettingsField* FieldNamed(std::string_view name) {
  const auto* const field =
      std::find_if(kSettingsFields.begin(), kSettingsFields.end(),
                   [name](const SettingsField& each) { return each.name == name; });
  return field == kSettingsFields.end() ? nullptr : field;
}

// Calls `use` with the field where it is one whole number.
template <class Record, class Use>
void WithNumber(Record& settings, std::string_view name, Use use) {
  const SettingsField* const field = FieldNamed(name);
  if (field == nullptr) return;
  std::visit(
      [&](auto member) {
        auto& value = settings.*member;
        if constexpr (std::is_integral_v<std::remove_cvref_t<decltype(value)>>) use(value);
      },
      field->member);
}

}  // namespace

std::span<const OptionRow> OptionRows() {
  return kRows;
}

std::optional<std::int32_t> OptionValue(const Settings& settings, std::string_view field) {
  std::optional<std::int32_t> result;
  WithNumber(settings, field, [&result](const auto& value) { result = value; });
  return result;
}

bool SetOptionValue(Settings& settings, std::string_view field, std::int32_t value) {
  bool done = false;
  WithNumber(settings, field, [&done, value](auto& stored) {
    stored = static_cast<std::remove_cvref_t<decltype(stored)>>(value);
    done = true;
  });
  return done;
}

int OptionLine(const OptionRow& row, std::int32_t value) {
  const auto count = static_cast<int>(row.values.size());
  if (row.kind == kIndexList) return value >= 0 && value < count ? value : -1;
  const auto found = std::find(row.values.begin(), row.values.end(), value);
  if (found != row.values.end()) return static_cast<int>(found - row.values.begin());
  return row.first_if_none && count > 0 ? 0 : -1;
}

std::int32_t OptionOfLine(const OptionRow& row, int line, std::int32_t value) {
  if (line < 0 || line >= static_cast<int>(row.values.size())) return value;
  return row.kind == kIndexList ? line : row.values[static_cast<std::size_t>(line)];
}

}  // namespace kv
