#include "engine/mpv_tracks.h"

#include "system/paths.h"

#include <QLocale>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <thread>
#include <utility>

namespace kv {
namespace {

constexpr int kMostTracks = 99;  // of a kind; a menu has to show them

const char* PropertyOf(TrackKind kind) {
  return kind == TrackKind::kSound ? "aid" : "sid";
}

std::string TextOf(const mpv_node& node) {
  return node.format == MPV_FORMAT_STRING ? node.u.string : "";
}

bool FlagOf(const mpv_node& node) {
  return node.format == MPV_FORMAT_FLAG && node.u.flag != 0;
}

// Nothing for a picture.
std::optional<MediaTrack> TrackOf(const mpv_node& node) {
  if (node.format != MPV_FORMAT_NODE_MAP) return std::nullopt;
  MediaTrack track;
  std::string type;
  for (int i = 0; i < node.u.list->num; ++i) {
    const std::string_view name = node.u.list->keys[i];
    const mpv_node& value = node.u.list->values[i];
    if (name == "id" && value.format == MPV_FORMAT_INT64)
      track.id = static_cast<int>(value.u.int64);
    if (name == "type") type = TextOf(value);
    if (name == "lang") track.language = TextOf(value);
    if (name == "title") track.title = TextOf(value);
    if (name == "codec") track.codec = TextOf(value);
    if (name == "default") track.is_default = FlagOf(value);
    if (name == "forced") track.forced = FlagOf(value);
    if (name == "external") track.external = FlagOf(value);
    if (name == "selected") track.selected = FlagOf(value);
  }
  if (type != "audio" && type != "sub") return std::nullopt;
  track.kind = type == "audio" ? TrackKind::kSound : TrackKind::kSubtitle;
  return track.id > 0 && track.id <= kMostTracks ? std::optional(track) : std::nullopt;
}

// A language goes into the core's options, where a comma would begin another one.
std::string Option(const char* name, const std::string& language) {
  const bool plain = std::all_of(language.begin(), language.end(), [](unsigned char c) {
    return std::isalnum(c) != 0 || c == '-' || c == '_';
  });
  return plain && !language.empty() ? std::string(",") + name + "=" + language : std::string();
}

}  // namespace

struct MpvTracks::Search {
  std::atomic<bool> done{false};
  std::vector<SubtitleFile> files;  // complete once done
};

std::string MpvTracks::Begin(const std::string& medium, bool remote, const TrackWishes& wishes) {
  *this = MpvTracks();
  wishes_ = wishes;
  if (!remote) {
    const auto search = std::make_shared<Search>();
    search_ = search;
    const std::string user = QLocale::system().name().section(QLatin1Char('_'), 0, 0).toStdString();
    const std::string language = wishes.subtitles.empty() ? user : wishes.subtitles;
    std::thread([search, medium, language] {
      search->files = FindSubtitles(medium, language);
      search->done = true;
    }).detach();
  }
  return std::string("aid=auto,sid=") + (wishes.no_subtitles ? "no" : "auto") +
         Option("alang", wishes.sound) + Option("slang", wishes.subtitles);
}

void MpvTracks::Ask(MpvCore& core) {
  list_request_ = core.Ask(kProperty, MPV_FORMAT_NODE);
}

bool MpvTracks::Searching() const {
  return search_ && !search_->done;
}

bool MpvTracks::OnReply(const mpv_event& event, MpvCore& core) {
  if (event.reply_userdata != list_request_) return false;
  list_request_ = 0;
  known_ = true;
  if (event.error >= 0) OnList(*static_cast<mpv_event_property*>(event.data));
  ShowForced(core);
  return true;
}

void MpvTracks::OnList(const mpv_event_property& property) {
  if (property.format != MPV_FORMAT_NODE) return;
  const mpv_node& list = *static_cast<const mpv_node*>(property.data);
  if (list.format != MPV_FORMAT_NODE_ARRAY) return;
  tracks_.clear();
  for (int i = 0; i < list.u.list->num; ++i) {
    if (auto track = TrackOf(list.u.list->values[i])) tracks_.push_back(std::move(*track));
  }
  std::stable_sort(tracks_.begin(), tracks_.end(),
                   [](const MediaTrack& a, const MediaTrack& b) { return a.kind < b.kind; });
}

// What is foreign in a film is meant to be read also by those who want no subtitles. The core does
// not show such a track by itself unless it is the default one as well.
void MpvTracks::ShowForced(MpvCore& core) {
  if (wishes_.no_subtitles || Selected(TrackKind::kSubtitle) != nullptr) return;
  const MediaTrack* const sound = Selected(TrackKind::kSound);
  for (const MediaTrack& track : tracks_) {
    const bool fits = sound == nullptr || sound->language.empty() || track.language.empty() ||
                      sound->language == track.language;
    if (track.kind != TrackKind::kSubtitle || !track.forced || !fits) continue;
    Select(core, TrackKind::kSubtitle, track.id);
    return;
  }
}

// A file that somebody has put beside the medium is meant to be shown, unless another language has
// been asked for.
void MpvTracks::TakeFound() {
  found_.assign(search_->files.begin(), search_->files.end());
  search_.reset();
  show_found_ = !wishes_.no_subtitles;
  if (wishes_.subtitles.empty()) return;
  const auto wished = std::find_if(found_.begin(), found_.end(), [this](const SubtitleFile& file) {
    return file.language == wishes_.subtitles;
  });
  if (wished != found_.end()) {
    std::rotate(found_.begin(), wished, wished + 1);
  } else {
    const MediaTrack* const shown = Selected(TrackKind::kSubtitle);
    if (shown != nullptr && shown->language == wishes_.subtitles) show_found_ = false;
  }
}

void MpvTracks::AddFound(MpvCore& core) {
  if (search_ && known_ && search_->done) TakeFound();
  if (found_.empty() || found_request_ != 0) return;
  const SubtitleFile file = found_.front();
  found_.pop_front();
  const std::string title = FileNameOfPath(file.path);
  found_request_ = core.AddFile(file.path.c_str(), show_found_ ? "select" : "auto", title.c_str(),
                                file.language.c_str());
}

bool MpvTracks::OnCommandReply(const mpv_event& event) {
  if (event.reply_userdata == add_request_) {
    add_request_ = 0;
    added_ = event.error >= 0;
    return true;
  }
  if (event.reply_userdata != found_request_) return false;
  found_request_ = 0;
  // One that is damaged is passed over.
  if (event.error >= 0) show_found_ = false;
  return true;
}

const MediaTrack* MpvTracks::Selected(TrackKind kind) const {
  const auto track = std::find_if(tracks_.begin(), tracks_.end(), [kind](const MediaTrack& one) {
    return one.kind == kind && one.selected;
  });
  return track == tracks_.end() ? nullptr : &*track;
}

bool MpvTracks::Select(MpvCore& core, TrackKind kind, int id) {
  const bool there = std::any_of(tracks_.begin(), tracks_.end(), [&](const MediaTrack& track) {
    return track.kind == kind && track.id == id;
  });
  const bool none = id == 0 && kind == TrackKind::kSubtitle;
  if (!there && !none) return false;
  for (MediaTrack& track : tracks_) {
    if (track.kind == kind) track.selected = track.id == id;
  }
  core.SetText(PropertyOf(kind), none ? "no" : std::to_string(id));
  return true;
}

void MpvTracks::Add(MpvCore& core, const std::string& path) {
  added_.reset();
  show_found_ = false;
  const std::string title = FileNameOfPath(path);
  add_request_ = core.AddFile(path.c_str(), "select", title.c_str());
}

}  // namespace kv
