#include "shell/media_opener.h"

#include "shell/recent_files.h"
#include "system/ascii_text.h"
#include "system/name_tests.h"
#include "system/paths.h"
#include "system/shown_text.h"
#include "system/translation.h"

#include <utility>

namespace kv {
namespace {

bool IsMms(const std::string& url) {
  return StartsWithIgnoringCase(url, "mms://");
}

}  // namespace

MediaOpener::MediaOpener(OpenerHost& host, OpenerView& view, OpenerParts parts)
    : host_(host), view_(view), parts_(parts) {}

bool MediaOpener::Overtaken(std::uint64_t number) const {
  return number != last_open_ || parts_.session.Unloading;
}

void MediaOpener::OpenFile(const std::string& File, OpenArguments arguments) {
  const std::uint64_t before = last_open_;
  std::string path = File;  // `File` may be a field that changes inside a pump
  parts_.status.RemoveStatus();
  host_.UpdateFileDisp(Fill(Tr("Loading %1"), FileNameOfPath(WithoutUserInfo(path))));
  parts_.pump.PumpOnce();
  parts_.session.SlowMoveDetected = false;
  if (path.empty()) {
    // What was opened meanwhile does not count here: the user is still to choose.
    if (parts_.session.Unloading) return;
    const bool chosen = AskForFile(path);
    if (parts_.session.Unloading) return;
    if (!chosen) {
      host_.UpdateFileDisp("");  // nothing is loading
      return;
    }
    arguments.KeepWindowSize = false;
  } else if (Overtaken(before)) {
    return;
  } else if (!IsPlayableName(path, parts_.session.SupportedExtensions)) {
    parts_.dialogs.ShowMessageBox(
        {Tr("Unsupported file format or protocol error!"), BoxIcon::kStop, BoxButtons::kOk, ""});
    return;
  }
  const std::string extension = LowerAscii(GetFileExtension(path, true));
  if (extension == ".kvr") {
    OpenResume(path, arguments);
    return;
  }
  PrepareState(path, arguments);
  if (extension == ".m3u") {
    host_.OpenPlaylist(path, !arguments.Unattended && !arguments.IsResumeStart);
    return;
  }
  parts_.settings.PlayingFromPlaylist = FromBool(arguments.FromPlaylist);
  if (!arguments.FromPlaylist && !parts_.session.StartingUp) {
    parts_.settings.PreviousItemPosition = parts_.Movie.DS_GetPosition();
  }
  const std::uint64_t number = ++last_open_;
  if (arguments.IsResumeStart) resumed_ = number;
  if (parts_.Movie.DS_IsOpen()) {
    parts_.Movie.DS_Stop();
    parts_.pump.PumpOnce();
    parts_.pump.PumpOnce();
    if (Overtaken(number)) return;
  }
  std::string target;
  const Kind kind = PrepareKind(path, target);
  if (Overtaken(number) || !Render(path, target, kind, arguments.FromPlaylist)) return;
  FinishOpen(path, arguments);
}

bool MediaOpener::AskForFile(std::string& path) {
  while (true) {
    FileDialogRequest request;
    request.title = Tr("Open movie");
    request.filter = parts_.session.OpenFilter;
    request.folder = parts_.settings.LastOpenFolder;
    path = parts_.dialogs.ShowFileDialog(request).file_name;
    if (path.empty()) return false;
    if (IsPlayableName(path, parts_.session.SupportedExtensions)) return true;
    parts_.dialogs.ShowMessageBox(
        {Tr("Unsupported fileformat error!"), BoxIcon::kStop, BoxButtons::kOk, ""});
  }
}

void MediaOpener::PrepareState(const std::string& path, const OpenArguments& arguments) {
  view_.SetTitleToolTip("");
  if (!arguments.IsResumeStart) {
    parts_.session.ResumeEndPosition = kNoPosition;
    parts_.session.ResumePosition = kNoPosition;
    view_.ShowResumeMark(false);
  }
  if (!arguments.IsResumeStart && !arguments.FromPlaylist) {
    parts_.settings.LastOpenFolder = FolderOfPath(path);
  }
}

MediaOpener::Kind MediaOpener::PrepareKind(const std::string& path, std::string& target) {
  target = path;
  if (!IsAsfFile(path)) {
    parts_.session.AsxInfo = AsxInfo{};
    view_.SetSlidersEnabled(true);
    if (IsUrlName(path)) parts_.status.ShowStatus(StatusOverlay::kConnecting);
    return Kind::kPlain;
  }
  parts_.session.AsxInfo = host_.ReadAsxFile(path);
  const AsxInfo& info = parts_.session.AsxInfo;
  if (info.entry.empty()) {
    view_.SetSlidersEnabled(true);
    return Kind::kAsf;
  }
  // A stream of unknown length has no position to move and no rate to change.
  parts_.models.Scroller1.SetValue(0.0);
  if (!IsMms(info.entry)) view_.SetSlidersEnabled(false);
  parts_.models.Scroller3.SetValue(parts_.models.Scroller3.Max() / 2.0);
  parts_.time.PrintTitle(info.title);
  target = info.entry;
  parts_.status.ShowStatus(StatusOverlay::kConnecting);
  return Kind::kAsxStream;
}

// False when another open has overtaken this one.
bool MediaOpener::Render(const std::string& path, const std::string& target, Kind kind,
                         bool from_playlist) {
  const std::uint64_t number = last_open_;
  const RenderTarget render = view_.Render();
  ++depth_;
  const bool opened =
      parts_.Movie.DS_OpenFile(target, 0, 0, render.ScaleWidth, render.ScaleHeight, render.hWnd);
  --depth_;
  if (Overtaken(number)) return false;
  if (!opened) {
    std::string text = Fill(Tr("Error opening \"%1\""), ShownName(target));
    if (parts_.Movie.DS_CertificateRefused()) {
      text += "\n\n";
      text += Tr("The server could not prove who it is: its certificate is not trusted.");
    }
    parts_.dialogs.ShowMessageBox({text, BoxIcon::kExclamation, BoxButtons::kOk, ""});
    if (Overtaken(number)) return false;
    parts_.status.RemoveStatus();
  }
  if (!from_playlist) {
    AddRecentFile(path);
    host_.BuildMenu();
  }
  if (kind != Kind::kPlain || IsUrlName(path)) parts_.status.RemoveStatus();
  return !Overtaken(number);
}

void MediaOpener::FinishOpen(const std::string& path, const OpenArguments& arguments) {
  const std::uint64_t number = last_open_;
  clsDShowControl& Movie = parts_.Movie;
  SliderModels& models = parts_.models;
  host_.ScaleMovie(false);
  if (Overtaken(number)) return;
  // The engine starts each medium loud, centred and at normal speed.
  parts_.sliders.Scroller2_AfterScroll(models.Scroller2.Value(), 0);
  parts_.sliders.Scroller4_AfterScroll(models.Scroller4.Value(), 0);
  if (models.Scroller3.Value() != models.Scroller3.Max() / 2.0) {
    parts_.sliders.Scroller3_AfterScroll(models.Scroller3.Value(), 0);
  }
  parts_.settings.CurrentFile = path;
  parts_.time.MediumChanged();
  models.Scroller1.SetValue(0.0);
  models.Scroller1.SetMin(0.0);
  models.Scroller1.SetMax(Movie.DS_GetDuration());
  Movie.DS_GetMovieSize(parts_.session.MovieWidth, parts_.session.MovieHeight);
  const bool video = parts_.session.MovieWidth >= 1 && parts_.session.MovieHeight >= 1;
  if (arguments.ShowOnOpen && video) host_.RestoreFromTray();
  host_.ResetAB();
  if (arguments.StartPlaying) host_.BUtton_Click(0);
  if (Overtaken(number)) return;
  host_.UpdateFileDisp("");
  host_.ScaleMovie(false);
  if (Overtaken(number)) return;
  host_.UpdateFileDataDisplay();
  if (!arguments.KeepWindowSize && IsOn(parts_.settings.AutoZoom)) host_.ScaleWindow(1.0F);
  parts_.pump.PumpOnce();
  if (Overtaken(number)) return;
  host_.SetVumeterVisible();
  ConnectionIcon icon = ConnectionIcon::kNone;
  if (StartsWithIgnoringCase(parts_.settings.CurrentFile, "https://")) {
    icon = ConnectionIcon::kSecure;
  } else if (StartsWithIgnoringCase(parts_.settings.CurrentFile, "http://")) {
    icon = ConnectionIcon::kPlain;
  }
  view_.ShowConnectionIcon(icon);
}

void MediaOpener::OpenResume(const std::string& path, const OpenArguments& arguments) {
  const std::uint64_t before = last_open_;
  bool from_playlist = arguments.FromPlaylist;
  host_.OpenResumeFile(path, from_playlist, arguments.StartPlaying);
  // Its medium comes by `OpenFile` as well; any other open inside is a newer wish, with its own
  // mark.
  if (last_open_ != before && Overtaken(resumed_)) return;
  view_.SetTitleToolTip(path);
  view_.ShowResumeMark(true);
  if (!from_playlist) parts_.settings.LastOpenFolder = FolderOfPath(path);
}

void MediaOpener::AbandonOpen() {
  ++last_open_;
  if (depth_ > 0) parts_.Movie.DS_Remove();
}

void MediaOpener::AddRecentFile(const std::string& File) {
  kv::AddRecentFile(parts_.settings.RecentFiles, File, parts_.text);
}

}  // namespace kv
