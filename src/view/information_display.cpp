#include "view/information_display.h"

#include "system/ascii_text.h"
#include "system/files.h"
#include "system/name_tests.h"
#include "system/paths.h"
#include "system/shown_text.h"
#include "system/text_case.h"
#include "system/text_format.h"
#include "system/translation.h"
#include "system/utf8.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <utility>

namespace kv {
namespace {

struct SchemeText {
  std::string_view scheme;
  std::string_view text;
};

constexpr std::array kConnections = {
    SchemeText{"https://", TrLater("Internet (SSL) Connection")},
    SchemeText{"http://", TrLater("Internet Connection")},
    SchemeText{"ftp://", TrLater("Internet (FTP) Connection")},
    SchemeText{"\\\\", TrLater("LAN Connection")},
};

constexpr std::array kMpegExtensions = {".mp3", ".mp2", ".mp1", ".mp4"};

constexpr const char* kNoHeader = TrLater("Missing MEPG Header Data");

// Characters; more fits no window.
constexpr std::size_t kLongestTitle = 1000;
constexpr std::size_t kLongestField = 250;
constexpr std::size_t kLongestPath = 4096;

constexpr int kRightButton = 2;
constexpr int kMenuButton = 7;

std::size_t CharacterCount(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < text.size(); at += DecodeUtf8(text, at).size) ++count;
  return count;
}

std::string Shown(std::string_view text) {
  return ShownText(WithoutUserInfo(text), kLongestTitle);
}

std::string UpperAscii(std::string text) {
  for (char& c : text) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return text;
}

}  // namespace

InformationDisplay::InformationDisplay(InformationView& view, const Settings& settings,
                                       const Session& session, const TextPlatform& text,
                                       std::function<int()> playlist_count,
                                       const MediaReaders& readers)
    : view_(view),
      settings_(settings),
      session_(session),
      text_(text),
      playlist_count_(std::move(playlist_count)),
      readers_(readers) {}

void InformationDisplay::UpdateFileDisp(const std::string& text) {
  if (!text.empty()) {
    view_.SetDisp(kDispTitle, Shown(text));
    return;
  }
  std::string counter = "0000 / 0000";
  if (settings_.PlaylistIndex >= 1 && IsOn(settings_.PlayingFromPlaylist)) {
    std::array<char, 40> digits{};
    std::snprintf(digits.data(), digits.size(), "%04d / %04d", settings_.PlaylistIndex,
                  playlist_count_());
    counter = digits.data();
  }
  view_.SetDisp(kDispCounter, counter);

  const std::string long_title = LongTitle();
  view_.SetDisp(kDispTitle, Shortened(long_title));
  view_.SetTrayTip("Kestrelview: " + ShownText(long_title, kLongestField) + " - " + counter);
}

// At most `kLongestTitle` characters, the last ones, since a long title loses its beginning.
std::string InformationDisplay::LongTitle() const {
  std::string title = WithoutUserInfo(session_.AsxInfo.entry);
  if (title.empty()) {
    const std::string file = IsUrl(settings_.CurrentFile) ? WithoutUserInfo(settings_.CurrentFile)
                                                          : settings_.CurrentFile;
    title = IsOn(settings_.IncludePathInFileTitle)
                ? CompactPathForWidth(
                      LastCharacters(file, kLongestPath),
                      [this](std::string_view part) { return view_.PanelTextWidth(part); },
                      view_.DisplayPathWidth())
                : FileNameOfPath(file);
  }
  return ShownText(LastCharacters(title, kLongestTitle), kLongestTitle);
}

// The beginning of a long name is given up, and the dots stand at its end. After the first cut the
// rest of the undecoded name is what shows.
std::string InformationDisplay::Shortened(const std::string& long_title) const {
  const double room = view_.PanelScaleWidth() - 1.2 * view_.TitleLeft();
  const auto fits = [&](const std::string& shown) {
    return CharacterCount(shown) <= 3 || view_.PanelTextWidth(shown) <= room;
  };
  const auto with_last = [&](std::size_t count) {
    return std::string(LastCharacters(long_title, count)) + "...";
  };
  std::string decoded = ShownText(DecodeUrlText(long_title), kLongestTitle);
  const std::size_t length = CharacterCount(long_title);
  if (length == 0 || fits(decoded)) return decoded;
  // The most characters that fit, by halving: measuring is what costs.
  std::size_t good = 0;
  std::size_t bad = length;
  while (bad - good > 1) {
    const std::size_t middle = good + (bad - good) / 2;
    (fits(with_last(middle)) ? good : bad) = middle;
  }
  return with_last(good);
}

void InformationDisplay::UpdateFileDataDisplay() {
  if (settings_.CurrentFile.empty()) return;
  if (FileExists(settings_.CurrentFile)) {
    const std::string extension = GetFileExtension(settings_.CurrentFile, true);
    const std::string lower = LowerAscii(extension);
    if (lower == ".asf" || lower == ".asx") {
      ShowData(Shown(session_.AsxInfo.moreInfo),
               Fill(Tr("Copyright: %1"), Shown(session_.AsxInfo.copyright)));
    } else if (std::find(kMpegExtensions.begin(), kMpegExtensions.end(), lower) !=
               kMpegExtensions.end()) {
      ShowTags();
    } else {
      ShowSize(extension);
    }
  } else if (IsUrl(settings_.CurrentFile)) {
    ShowUrl();
  } else {
    ShowData(Tr("Size not available!"), Tr("Copyright info not available!"));
  }
}

void InformationDisplay::ShowData(const std::string& line1, const std::string& line2) {
  ShowDataLine1(line1, false);
  view_.SetDisp(kDispDataLine2, line2);
}

void InformationDisplay::ShowDataLine1(const std::string& text, bool underline) {
  data_line1_ = text;
  view_.SetDispUnderline(kDispDataLine1, underline);
  view_.SetDisp(kDispDataLine1, text);
}

void InformationDisplay::ShowTags() {
  const std::string& file = settings_.CurrentFile;
  const std::unique_ptr<MpegHeaderInfo> header = readers_.MakeMpegHeaderInfo();
  const std::unique_ptr<TagReader> v1 = readers_.MakeTagReaderPrimary();
  const std::unique_ptr<TagReader> v2 = readers_.MakeTagReaderSecondary();
  const bool has_header = header->IsValid(file);
  if (has_header) v1->Load(file);
  if (has_header && !v1->HasTag()) v2->Load(file);
  const std::string technical = has_header ? TechnicalLine(*header) : Tr(kNoHeader);
  if (!v1->HasTag() && !v2->HasTag()) {
    ShowData(Tr("ID3Tag info not available."), technical);
    return;
  }
  TagReader& tag = v2->HasTag() ? *v2 : *v1;
  const auto field = [](const std::string& text) { return ShownText(text, kLongestField); };
  if (field(tag.Title()).empty()) {
    const std::string name = FileNameOfPath(file);
    const std::size_t extension = GetFileExtension(file, true).size();
    tag.SetTitle(ProperCase(name.substr(0, name.size() - extension), text_));
  }
  const std::string artist = field(tag.Artist());
  const std::string album = field(tag.Album());
  const std::string title = field(tag.Title());
  const std::string genre = field(tag.GenreName(tag.Genre()));
  std::string line = artist;
  if (!album.empty()) line += " : [" + album + "]";
  if (!title.empty()) line += " \"" + title + "\"";
  ShowData(line, genre.empty() ? technical : genre + ", " + technical);
}

std::string InformationDisplay::TechnicalLine(const MpegHeaderInfo& header) const {
  const std::string mode = header.Mode();
  return Fill(Tr("%1 Bit,%2 Hz, %3, %4. (%5 ~ %6)"), std::to_string(header.Bitrate()),
              std::to_string(header.Frequency()), std::to_string(header.HeaderValue()),
              Tr(mode.c_str()), FileSizeText(), FormatTimeCode(header.Duration() + 1, false, 2));
}

std::string InformationDisplay::FileSizeText() const {
  return FormatByteSize(FileSizeBytes(settings_.CurrentFile), text_.DecimalSeparator());
}

void InformationDisplay::ShowSize(const std::string& extension) {
  std::string line = FileSizeText();
  if (session_.MovieWidth >= 1 && session_.MovieHeight >= 1) {
    line +=
        ", " + std::to_string(session_.MovieWidth) + " x " + std::to_string(session_.MovieHeight);
  }
  ShowData(Fill(Tr("%1, %2 file"), line, UpperAscii(Shown(extension))), "");
}

void InformationDisplay::ShowUrl() {
  const std::string decoded = DecodeUrlText(WithoutUserInfo(settings_.CurrentFile));
  const std::string scheme = UrlSchemeOf(decoded);
  ShowDataLine1(scheme + Shown(GetDomain(decoded)) + "/", true);
  for (const SchemeText& connection : kConnections) {
    if (scheme == connection.scheme)
      view_.SetDisp(kDispDataLine2, std::string(Tr(connection.text)));
  }
}

DispEvents::DispEvents(const InformationDisplay& information, DispHost& host, ShellServices& shell)
    : information_(information), host_(host), shell_(shell) {}

void DispEvents::Disp_Click(int Index) {
  if (Index != kDispDataLine1 || !IsUrl(information_.DataLine1())) return;
  shell_.ShellOpenDocument(information_.DataLine1(), "", "", "");
}

void DispEvents::Disp_MouseMove(int Index) {
  if (Index != kDispDataLine1) return;
  const bool link = IsUrl(information_.DataLine1());
  if (link == hand_) return;
  hand_ = link;
  host_.SetDispPointer(kDispDataLine1, link);
}

void DispEvents::Disp_MouseDown(int MouseButton) {
  if (MouseButton == kRightButton) host_.BUtton_Click(kMenuButton);
}

std::string GetDomain(const std::string& url) {
  const std::size_t slashes = url.find("//");
  if (slashes == std::string::npos) return {};
  const std::size_t begin = slashes + 2;
  const std::size_t end = url.find('/', begin + 1);
  if (end != std::string::npos) return url.substr(begin, end - begin);
  std::string whole = url;
  std::replace(whole.begin(), whole.end(), '/', '_');
  std::replace(whole.begin(), whole.end(), ':', '-');
  return whole;
}

}  // namespace kv
