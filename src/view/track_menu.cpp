#include "view/track_menu.h"

#include "system/paths.h"
#include "system/shown_text.h"
#include "system/translation.h"

#include <algorithm>
#include <utility>

namespace kv {
namespace {

constexpr std::size_t kLongestTitle = 60;  // characters

std::string KeyOf(TrackKind kind, int id) {
  const std::string_view prefix = kind == TrackKind::kSound ? kSoundKey : kSubtitleKey;
  return std::string(prefix) + std::to_string(id);
}

// The same track, played or not.
bool Same(MediaTrack a, const MediaTrack& b) {
  a.selected = b.selected;
  return a == b;
}

std::size_t Count(const std::vector<MediaTrack>& tracks, TrackKind kind) {
  return static_cast<std::size_t>(
      std::count_if(tracks.begin(), tracks.end(),
                    [kind](const MediaTrack& track) { return track.kind == kind; }));
}

}  // namespace

TrackMenu::TrackMenu(MenuModel& menu, clsDShowControl& movie, Dialogs& dialogs,
                     const Session& session, LanguageNames languages)
    : menu_(menu),
      movie_(movie),
      dialogs_(dialogs),
      session_(session),
      languages_(std::move(languages)) {}

// "2: German, Director's comments (forced)"
std::string TrackMenu::Caption(const MediaTrack& track, int number) const {
  std::string text = track.language.empty() ? "" : languages_(track.language);
  const std::string title = ShownText(track.title, kLongestTitle);
  if (text.empty()) text = ShownText(track.language, kLongestTitle);
  if (text.empty() && title.empty()) text = Tr("Unknown language");
  // Many media repeat the language as title.
  if (!title.empty() && title != text) text += (text.empty() ? "" : ", ") + title;
  if (track.forced) text = Fill(Tr("%1 (forced)"), text);
  return std::to_string(number) + ": " + text;
}

void TrackMenu::SetEntries(TrackKind kind) {
  std::vector<MenuItem> entries;
  const auto add = [&](int id, const std::string& caption) {
    MenuItem& item = entries.emplace_back();
    item.key = KeyOf(kind, id);
    item.type = CommandType::kCheck;
    item.caption = caption;
  };
  if (kind == TrackKind::kSubtitle) add(0, Tr("None"));
  int number = 0;
  for (const MediaTrack& track : shown_) {
    if (track.kind == kind) add(track.id, Caption(track, ++number));
  }
  menu_.SetEntries(kind == TrackKind::kSound ? kSoundTracksMenu : kSubtitlesMenu,
                   std::move(entries));
}

void TrackMenu::Update() {
  const std::vector<MediaTrack> tracks = movie_.DS_GetTracks();
  const bool same =
      made_ && std::equal(tracks.begin(), tracks.end(), shown_.begin(), shown_.end(), Same);
  shown_ = tracks;
  made_ = true;
  if (!same) {
    SetEntries(TrackKind::kSubtitle);
    SetEntries(TrackKind::kSound);
  }
  bool none = true;
  for (const MediaTrack& track : shown_) {
    menu_.SetChecked(menu_.IdOfKey(KeyOf(track.kind, track.id)), track.selected);
    if (track.kind == TrackKind::kSubtitle && track.selected) none = false;
  }
  menu_.SetChecked(menu_.IdOfKey(KeyOf(TrackKind::kSubtitle, 0)), none);
  int width = 0;
  int height = 0;
  movie_.DS_GetMovieSize(width, height);
  menu_.SetEnabled(menu_.IdOfKey(kSubtitlesMenu), width > 0);
  menu_.SetEnabled(menu_.IdOfKey(kSoundTracksMenu), Count(shown_, TrackKind::kSound) > 1);
}

// The menu may have stood open while another medium began, whose tracks are not those it shows.
void TrackMenu::PickTrack(std::string_view key) {
  const std::vector<MediaTrack> tracks = movie_.DS_GetTracks();
  if (key == KeyOf(TrackKind::kSubtitle, 0)) movie_.DS_SelectTrack(TrackKind::kSubtitle, 0);
  for (const MediaTrack& track : shown_) {
    if (KeyOf(track.kind, track.id) != key) continue;
    const bool there = std::any_of(tracks.begin(), tracks.end(),
                                   [&](const MediaTrack& one) { return Same(one, track); });
    if (there) movie_.DS_SelectTrack(track.kind, track.id);
    break;
  }
  Update();
}

void TrackMenu::LoadSubtitles() {
  const std::string medium = movie_.DS_CurFile();
  FileDialogRequest request;
  request.title = Tr("Load subtitles");
  request.filter = std::string(Tr("Subtitles")) + "|*.srt;*.ass;*.ssa;*.vtt;*.sub;*.idx;*.sup|" +
                   Tr("All files") + "|*.*";
  if (IsNativePath(medium)) request.folder = FolderOfPath(medium);
  const std::string file = dialogs_.ShowFileDialog(request).file_name;
  // They were meant for what was open when they were asked for.
  if (file.empty() || session_.Unloading || movie_.DS_CurFile() != medium) return;
  const bool shown = movie_.DS_AddSubtitles(file);
  if (shown || session_.Unloading || movie_.DS_CurFile() != medium) return;
  const std::string name = ShownText(FileNameOfPath(file), kLongestTitle);
  dialogs_.ShowMessageBox({Fill(Tr("\"%1\" holds no subtitles that can be shown."), name),
                           BoxIcon::kExclamation, BoxButtons::kOk, ""});
}

}  // namespace kv
