#include "state/options_table.h"

#include "state/settings_fields.h"

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
    {kPlayback, "When the player starts", kCheck, "chkAutoLoadLast", "Load last file",
     "AutoLoadLast"},
    {kPlayback, "When the player starts", kCheck, "chkStorePos", "Remember last file position",
     "StorePos"},
    {kPlayback, "When the player starts", kCheck, "chkAutoStart", "Start playing", "AutoStart"},
    {kPlayback, "When the player starts", kCheck, "chkInitLastFrame",
     "Initialize last frame (previously playing movie)", "InitLastFrame"},
    {kPlayback, "Resume files", kCheck, "chkAutoPlayResume",
     "Start playing, when opening resume file", "AutoPlayResume"},
    {kPlayback, "Scrolling", kOffCheck, "chkReqCTRLScroll",
     "Only show frames while scrolling, when CTRL is pressed.", "ShowFramesWhileScrolling"},
    {kPlayback, "When the system shuts down", kCheck, "chkAutoRestart",
     "Automatically re-start Kestrelview, if it's running when Windows  exits.", "AutoRestart"},

    {kPicture, "Size", kCheck, "chkKeepAspcet", "Keep aspect ratio", "KeepAspect"},
    {kPicture, "Size", kCheck, "chkFitToWindow", "Fit video to window", "FitToWindow"},
    {kPicture, "Size", kCheck, "ChkAutoZoom",
     "Scale windows to movie original size when i open a movie", "AutoZoom"},
    {kPicture, "Size", kCheck, "chkSilentSizing",
     "Silent sizing (Hide content while sizing, faster!)", "SilentSizing"},
    {kPicture, "Full screen", kCheck, "chkHideInFullscreen",
     "Auto hide controls in fullscreen mode", "HideInFullscreen"},
    {kPicture, "Full screen", kCheck, "chkHideControlsInFullscreen", "Hide controls in fullscreen",
     "HideControlsInFullscreen"},
    {kPicture, "Full screen", kCheck, "chkAutoFullscreen",
     "Automatically return from Full Screen when another program takes focus", "AutoFullscreen"},

    {kWindow, "Main window", kCheck, "chkRememberWindowPos", "Remember window position",
     "RememberWindowPos"},
    {kWindow, "Main window", kCheck, "chkRememberSize", "Remember size", "RememberSize"},
    {kWindow, "Main window", kCheck, "chkHideInNormal", "Auto hide controls in window mode",
     "HideInNormal"},
    {kWindow, "Main window", kCheck, "ChkInclidePathInFileTitle", "Include path in file title",
     "IncludePathInFileTitle"},
    {kWindow, "When minimized", kChoice, "ShowMode(1)", "Minimize to Tray", "MinimizeToTray", -1},
    {kWindow, "When minimized", kChoice, "ShowMode(0)", "Minimize to taskbar*", "MinimizeToTray",
     0},
    {kWindow, "CPU load", kCheck, "chkCPU", "CPU Graph", "CpuGraph"},
    {.page = kWindow,
     .group = "CPU load",
     .kind = kCheck,
     .control = "chkCPUGrid",
     .caption = "Show grid",
     .field = "CpuGraphGrid",
     .depends_on = "chkCPU"},
    {.page = kWindow,
     .group = "CPU load",
     .kind = kCheck,
     .control = "chkCPUGraphGridMove",
     .caption = "Move grid",
     .field = "CpuGraphGridMove",
     .depends_on = "chkCPU"},
    {.page = kWindow,
     .group = "CPU load",
     .kind = kIndexList,
     .control = "cmbCPU",
     .caption = "Update interval:",
     .field = "CpuGraphInterval",
     .values = kIntervals,
     .unit = " ms",
     .depends_on = "chkCPU"},

    {kPlaylist, "Opening and saving", kCheck, "chkAutoPlayPlaylist",
     "Automatically start playing when opening playlists", "AutoPlayPlaylist"},
    {kPlaylist, "Opening and saving", kCheck, "chkSavePlaylist", "Save current playlist",
     "SavePlaylist"},
    {kPlaylist, "Opening and saving", kCheck, "ChkSaveAbsolute",
     "Save M3U playlist using \"absolute\" paths only.", "SaveAbsolutePaths"},
    {kPlaylist, "In the list", kCheck, "ChkFindPlaying",
     "Find playing file, when playlist position changes from player.", "FindPlaying"},
    {kPlaylist, "In the list", kCheck, "chkDragDrop", "Drag 'n' Drop adds to playlist",
     "DragDropAddsToPlaylist"},

    {kMeter, "Picture", kCheck, "chkVuMeter", "Show VuMeter in movie window (when playing sounds)",
     "ShowVuMeter"},
    {kMeter, "Picture", kSlider, "Scroller1", "VuMeter refresh rate: default is 50% (25)",
     "VuRefreshRate"},
    {.page = kMeter,
     .group = "Sound",
     .kind = kValueList,
     .control = "Combo3",
     .caption = "Audio buffer size:",
     .field = "AudioBufferSize",
     .values = kBufferSizes},
    {.page = kMeter,
     .group = "Sound",
     .kind = kValueList,
     .control = "Combo4",
     .caption = "Number of buffers:",
     .field = "AudioBufferCount",
     .values = kBufferCounts},
    {.page = kMeter,
     .group = "Sound",
     .kind = kValueList,
     .control = "Combo1",
     .caption = "Sample rate:",
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
