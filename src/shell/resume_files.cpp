#include "shell/resume_files.h"

#include "system/ascii_text.h"
#include "system/files.h"
#include "system/ini_file.h"
#include "system/ini_text.h"
#include "system/name_tests.h"
#include "system/paths.h"
#include "system/save_file.h"
#include "system/shown_text.h"
#include "system/translation.h"
#include "system/utf8.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <utility>

namespace kv {
namespace {

constexpr std::string_view kSection = "RESUME_FILE";
constexpr std::string_view kExtension = ".kvr";
constexpr std::string_view kNoEnd = "-1";

// The longest path of the system is 4095 bytes, twice the buffer of an INI value; a URL may be
// longer still.
constexpr std::size_t kPathBuffer = 16384;

// A resume file may lead to a playlist whose first entry is a resume file, and so round and round.
constexpr int kDeepest = 4;

std::string ValueOf(std::string_view text, std::string_view key, std::string_view default_value,
                    std::size_t buffer = kIniValueBuffer) {
  const auto value = FindIniValue(text, kSection, key);
  return std::string(Utf8Prefix(value ? WithoutQuotes(*value) : default_value, buffer - 1));
}

// The number that the text begins with; 0 for anything else and for what no number can hold.
double NumberOf(std::string_view text) {
  text = TrimBlanks(text);
  if (text.starts_with('+')) text.remove_prefix(1);
  std::string digits(text);
  std::replace(digits.begin(), digits.end(), ',', '.');
  double value = 0.0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  return result.ec == std::errc() && std::isfinite(value) ? value : 0.0;
}

std::int32_t WholeNumberOf(std::string_view text) {
  constexpr double kLeast = std::numeric_limits<std::int32_t>::min();
  constexpr double kMost = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::clamp(std::nearbyint(NumberOf(text)), kLeast, kMost));
}

bool TruthOf(std::string_view text) {
  return EqualsIgnoringCase(TrimBlanks(text), "true") || NumberOf(text) != 0.0;
}

// As few digits as lead back to the same number, never in powers of ten.
std::string NumberText(double value) {
  if (!std::isfinite(value)) value = 0.0;
  std::array<char, 400> digits{};
  const auto result =
      std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed);
  return result.ec == std::errc() ? std::string(digits.data(), result.ptr) : "0";
}

bool IsResumeFile(const std::string& path) {
  return LowerAscii(GetFileExtension(path, true)) == kExtension;
}

// Replaces the file as a whole, also one that is write-protected. If it fails the old one stays as
// it is, with its protection.
bool ReplaceFile(const std::string& name, std::string_view bytes) {
  struct stat old {};
  const bool is_protected =
      stat(name.c_str(), &old) == 0 && S_ISREG(old.st_mode) && (old.st_mode & S_IWUSR) == 0;
  if (is_protected) chmod(name.c_str(), (old.st_mode | S_IWUSR) & 07777U);
  if (SaveFileChecked(name, bytes)) return true;
  if (is_protected) chmod(name.c_str(), old.st_mode & 07777U);
  return false;
}

}  // namespace

ResumeFiles::ResumeFiles(ResumeFilesHost& host, ResumeFilesParts parts)
    : host_(host), parts_(parts) {}

void ResumeFiles::SaveResumeFile(bool endPos, bool clearEnd) {
  clsDShowControl& Movie = parts_.Movie;
  const bool was_playing = Movie.DS_IsRunning() && !Movie.DS_IsPaused();
  if (was_playing) Movie.DS_Pause();
  std::string name = AskForName(endPos);
  if (name.empty()) return;
  if (endPos) {
    SaveEnd(name, clearEnd);
    return;
  }
  if (!IsResumeFile(name)) name += kExtension;
  if (!MayReplace(name)) return;
  SavePoint(name);
  if (was_playing && !parts_.session.Unloading) Movie.DS_Play();
}

std::string ResumeFiles::AskForName(bool endPos) {
  while (true) {
    FileDialogRequest request;
    // Crossed against their use, as users know them.
    request.title = Tr(endPos ? TrLater("Save Kestrelview Resume File (end pos)")
                              : TrLater("Set Kestrelview Resume File"));
    request.filter = std::string(Tr("Kestrelview Resume File")) + "|*.kvr";
    request.folder = parts_.settings.LastOpenFolder;
    request.file_name = FileNameOfPath(parts_.settings.CurrentFile);
    request.save = true;
    std::string name = parts_.dialogs.ShowFileDialog(request).file_name;
    if (parts_.session.Unloading) return {};
    if (name.empty() || !endPos || FileExists(name)) return name;
    Exclaim(Tr("The specified file does not exist!"));
    if (parts_.session.Unloading) return {};
  }
}

void ResumeFiles::SaveEnd(const std::string& name, bool clear) {
  std::string text;
  ReadWholeFile(name, kMaxTextFileBytes, text);
  // Whatever else the user may have picked, a film even, must not be written into.
  const bool is_resume_file = FindIniValue(text, kSection, "Path").has_value();
  const std::string medium = ValueOf(text, "Path", "", kPathBuffer);
  const bool same = parts_.text.Lower(medium) == parts_.text.Lower(parts_.settings.CurrentFile);
  if (!is_resume_file || (!clear && !same)) {
    Exclaim(Tr("Resume File does not contain this media!"));
    return;
  }
  const double position = parts_.Movie.DS_GetPosition();
  const std::string value = clear ? std::string(kNoEnd) : NumberText(position);
  if (WriteIniString(name, kSection, "ENDPOS", value) == 0) {
    Exclaim(Fill(Tr("Error saving \"%1\""), name));
  } else if (!clear) {
    parts_.session.ResumeEndPosition = position;
  }
}

bool ResumeFiles::MayReplace(const std::string& name) {
  if (!FileExists(name)) return true;
  const BoxAnswer answer = parts_.dialogs.ShowMessageBox(
      {Fill(Tr("The file \"%1\" already exist!\n\nOverwrite ?"), name), BoxIcon::kExclamation,
       BoxButtons::kOkCancel, ""});
  return answer == BoxAnswer::kOk && !parts_.session.Unloading;
}

void ResumeFiles::SavePoint(const std::string& name) {
  const Settings& settings = parts_.settings;
  const double position = parts_.Movie.DS_GetPosition();
  const SettingsBool from_playlist = FromBool(IsOn(settings.PlayingFromPlaylist));
  const std::pair<std::string_view, std::string> values[] = {
      {"Path", settings.CurrentFile},
      {"POS", NumberText(position)},
      {"PLFile", std::to_string(from_playlist)},
      {"PLID", std::to_string(settings.PlaylistIndex)},
  };
  std::string text;
  bool can_stand = true;
  for (const auto& [key, value] : values) {
    can_stand = can_stand && CanStandInIni(kSection, key, value);
    SetIniValue(text, kSection, key, value);
  }
  if (!can_stand || !ReplaceFile(name, text)) {
    Exclaim(Fill(Tr("Error saving \"%1\""), name));
    return;
  }
  parts_.session.ResumePosition = position;
  parts_.session.ResumeEndPosition = 0.0;
  host_.ShowResumeMark(true);
  parts_.settings.LastOpenFolder = FolderOfPath(name);
}

void ResumeFiles::OpenResumeFile(const std::string& path, bool& fromPlaylist,
                                 bool /*StartPlaying*/) {
  if (depth_ >= kDeepest) {
    Exclaim(Fill(Tr("Error opening \"%1\""), ShownName(path)));
    return;
  }
  std::string text;
  ReadWholeFile(path, kMaxTextFileBytes, text);
  const std::string medium = ValueOf(text, "path", "", kPathBuffer);
  const bool there = IsUrl(medium) || FileExists(medium);
  if (there && IsResumeFile(medium)) {
    Exclaim(Fill(Tr("Error opening \"%1\""), ShownName(medium)));
    return;
  }
  parts_.session.ResumePosition = NumberOf(ValueOf(text, "pos", ""));
  parts_.session.ResumeEndPosition = NumberOf(ValueOf(text, "endpos", kNoEnd));
  if (!there) {
    Exclaim(Fill(Tr("File \"%1\" does not exist!"), ShownName(medium)));
    return;
  }
  if (TruthOf(ValueOf(text, "PLFile", "")) && IsInPlaylist(medium)) {
    parts_.settings.PlaylistIndex = WholeNumberOf(ValueOf(text, "PLID", ""));
    fromPlaylist = true;
  }
  if (parts_.text.Lower(parts_.Movie.DS_CurFile()) != parts_.text.Lower(medium)) {
    ++depth_;
    host_.OpenFile(medium, fromPlaylist);
    --depth_;
  } else {
    parts_.settings.CurrentFile = medium;
    host_.UpdateFileDisp("");
  }
  GoOn(medium);
}

// The last item is never looked at, and resume files in use count on that.
bool ResumeFiles::IsInPlaylist(const std::string& medium) const {
  const std::string wanted = parts_.text.Lower(medium);
  for (int i = 1; i < parts_.playlist.Count(); ++i) {
    if (parts_.text.Lower(parts_.playlist.Item(i)) == wanted) return true;
  }
  return false;
}

void ResumeFiles::GoOn(const std::string& medium) {
  const auto ours = [&] {
    return !parts_.session.Unloading && parts_.settings.CurrentFile == medium;
  };
  if (!ours() || !(parts_.session.ResumePosition > 0.0)) return;
  parts_.Movie.DS_SetPosition(parts_.session.ResumePosition);
  parts_.pump.PumpOnce();
  if (!ours()) return;
  if (IsOn(parts_.settings.AutoPlayResume)) {
    parts_.Movie.DS_Play();
  } else if (IsOn(parts_.settings.AutoStart)) {
    // So that the picture at the position shows.
    parts_.Movie.DS_Play();
    parts_.Movie.DS_Pause();
  }
}

void ResumeFiles::ReleaseResumeData() {
  parts_.session.ResumePosition = 0.0;
  parts_.session.ResumeEndPosition = 0.0;
  host_.ShowResumeMark(false);
}

void ResumeFiles::Exclaim(const std::string& text) {
  parts_.dialogs.ShowMessageBox({text, BoxIcon::kExclamation, BoxButtons::kOk, ""});
}

}  // namespace kv
