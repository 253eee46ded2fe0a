#include "desktop/media_metadata.h"

#include "system/file_address.h"
#include "system/name_tests.h"
#include "system/paths.h"
#include "system/shown_text.h"
#include "system/text_format.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

namespace kv {
namespace {

constexpr std::size_t kLongestText = 1000;  // characters
constexpr double kMicroseconds = 1e6;

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

std::string Shown(std::string_view text) {
  return ShownText(WithoutUserInfo(text), kLongestText);
}

// The first tag of these that says anything.
template <std::size_t count>
std::string Tag(const PlayerState& state, const std::array<const char*, count>& names) {
  if (state.tags == nullptr) return {};
  for (const char* name : names) {
    const auto tag = state.tags->find(name);
    if (tag == state.tags->end()) continue;
    std::string text = Shown(tag->second);
    if (!text.empty()) return text;
  }
  return {};
}

// "3" and "3/12" are 3; 0 is none.
std::int32_t LeadingNumber(const std::string& text) {
  std::int32_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return std::max(number, 0);
}

std::string NameAsTitle(const std::string& target) {
  std::string name = FileNameOfPath(target);
  if (IsUrl(target)) {
    name = FileNameOfPath(WithoutUserInfo(target));
    name = DecodeUrlText(name.substr(0, name.find_first_of("?#")));
    // An address without a name is best told by its host.
    return Shown(name.empty() ? target : name);
  }
  const std::size_t dot = name.rfind('.');
  if (dot != std::string::npos && dot > 0) name.resize(dot);
  return Shown(name);
}

struct TextField {
  const char* name;
  std::array<const char*, 2> tags;
  bool list;
};

constexpr std::array kTexts = {
    TextField{"xesam:artist", {"artist", "performer"}, true},
    TextField{"xesam:album", {"album", "icy-name"}, false},
    TextField{"xesam:albumArtist", {"album_artist", "albumartist"}, true},
    TextField{"xesam:composer", {"composer", "composer"}, true},
    TextField{"xesam:genre", {"genre", "icy-genre"}, true},
    TextField{"xesam:comment", {"comment", "description"}, true},
};

}  // namespace

std::string ContentCreated(std::string_view date) {
  // "d" stands for a digit.
  constexpr std::string_view kDay = "dddd-dd-dd";
  std::size_t good = 0;
  while (good < kDay.size() && good < date.size() &&
         (kDay[good] == 'd' ? IsDigit(date[good]) : date[good] == '-')) {
    ++good;
  }
  if (good < 4) return {};
  const bool timed = good == kDay.size() && date.size() > good &&
                     (date[good] == 'T' || date[good] == ' ') && date.size() >= good + 6;
  if (timed) {
    std::string all(date);
    all[good] = 'T';
    return all;
  }
  const std::size_t whole = date.size() != good ? 4 : good >= 10 ? 10 : good >= 7 ? 7 : 4;
  return std::string(date.substr(0, whole));
}

MediaMetadata BuildMetadata(const PlayerState& state, const std::string& track_id,
                            const std::string& art_url) {
  MediaMetadata data;
  data["mpris:trackid"] = BusPath{track_id};
  if (state.target.empty()) return data;
  const bool remote = IsUrl(state.target);
  data["xesam:url"] = remote ? Shown(state.target) : FileAddress(state.target);
  if (state.duration > 0) {
    data["mpris:length"] = static_cast<std::int64_t>(std::llround(state.duration * kMicroseconds));
  }
  if (!art_url.empty()) data["mpris:artUrl"] = art_url;

  std::string title = Tag(state, std::array{"icy-title", "title"});
  if (title.empty()) title = Shown(state.title);
  data["xesam:title"] = title.empty() ? NameAsTitle(state.target) : title;

  for (const TextField& field : kTexts) {
    std::string text = Tag(state, field.tags);
    if (text.empty() && field.name == std::string_view("xesam:artist")) text = Shown(state.author);
    if (text.empty()) continue;
    if (field.list) {
      data[field.name] = std::vector<std::string>{std::move(text)};
    } else {
      data[field.name] = std::move(text);
    }
  }
  const std::string date = ContentCreated(Tag(state, std::array{"date", "date_released", "year"}));
  if (!date.empty()) data["xesam:contentCreated"] = date;
  const std::int32_t track = LeadingNumber(Tag(state, std::array{"track", "tracknumber"}));
  if (track > 0) data["xesam:trackNumber"] = track;
  const std::int32_t disc = LeadingNumber(Tag(state, std::array{"disc", "discnumber"}));
  if (disc > 0) data["xesam:discNumber"] = disc;
  return data;
}

}  // namespace kv
