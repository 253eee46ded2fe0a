#include "view/information_display.h"

#include "system/ascii_text.h"
#include "system/files.h"
#include "system/name_tests.h"
#include "system/paths.h"
#include "system/text_format.h"
#include "system/utf8.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

namespace kv {
namespace {

struct SchemeText {
  std::string_view scheme;
  std::string_view text;
};

constexpr std::array kConnections = {
    SchemeText{"https://", "Internet (SSL) Connection"},
    SchemeText{"http://", "Internet Connection"},
    SchemeText{"ftp://", "Internet (FTP) Connection"},
    SchemeText{"\\\\", "LAN Connection"},
};

std::size_t CharacterCount(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < text.size(); at += DecodeUtf8(text, at).size) ++count;
  return count;
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
                                       std::function<int()> playlist_count)
    : view_(view),
      settings_(settings),
      session_(session),
      text_(text),
      playlist_count_(std::move(playlist_count)) {}

void InformationDisplay::UpdateFileDisp(const std::string& text) {
  if (!text.empty()) {
    view_.SetDisp(kDispTitle, text);
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

  std::string long_title = session_.AsxInfo.entry;
  if (long_title.empty() && IsOn(settings_.IncludePathInFileTitle)) {
    long_title = CompactPathForWidth(
        settings_.CurrentFile, [this](std::string_view part) { return view_.PanelTextWidth(part); },
        view_.DisplayPathWidth());
  } else if (long_title.empty()) {
    long_title = FileNameOfPath(settings_.CurrentFile);
  }
  view_.SetDisp(kDispTitle, Shortened(long_title));
  view_.SetTrayTip("Kestrelview: " + long_title + " - " + counter);
}

// The beginning of a long name is given up, and the dots stand at its end. After the first cut the
// rest of the undecoded name is what shows.
std::string InformationDisplay::Shortened(const std::string& long_title) const {
  std::string shown = DecodeUrlText(long_title);
  const double room = view_.PanelScaleWidth() - 1.2 * view_.TitleLeft();
  const std::size_t length = CharacterCount(long_title);
  std::size_t cut = 0;
  while (CharacterCount(shown) > 3 && view_.PanelTextWidth(shown) > room && cut < length) {
    ++cut;
    shown = std::string(LastCharacters(long_title, length - cut)) + "...";
  }
  return shown;
}

void InformationDisplay::UpdateFileDataDisplay() {
  if (settings_.CurrentFile.empty()) return;
  if (FileExists(settings_.CurrentFile)) {
    ShowLocalFile();
  } else if (IsUrl(settings_.CurrentFile)) {
    ShowUrl();
  } else {
    view_.SetDispUnderline(kDispDataLine1, false);
    view_.SetDisp(kDispDataLine1, "Size not available!");
    view_.SetDisp(kDispDataLine2, "Copyright info not available!");
  }
}

void InformationDisplay::ShowLocalFile() {
  const std::string extension = GetFileExtension(settings_.CurrentFile, true);
  const std::string lower = LowerAscii(extension);
  view_.SetDispUnderline(kDispDataLine1, false);
  if (lower == ".asf" || lower == ".asx") {
    view_.SetDisp(kDispDataLine1, session_.AsxInfo.moreInfo);
    view_.SetDisp(kDispDataLine2, "Copyright: " + session_.AsxInfo.copyright);
    return;
  }
  std::string line = FormatByteSize(FileSizeBytes(settings_.CurrentFile), text_.DecimalSeparator());
  if (session_.MovieWidth >= 1 && session_.MovieHeight >= 1) {
    line +=
        ", " + std::to_string(session_.MovieWidth) + " x " + std::to_string(session_.MovieHeight);
  }
  view_.SetDisp(kDispDataLine1, line + ", " + UpperAscii(extension) + " file");
  view_.SetDisp(kDispDataLine2, "");
}

void InformationDisplay::ShowUrl() {
  const std::string decoded = DecodeUrlText(settings_.CurrentFile);
  const std::string scheme = UrlSchemeOf(decoded);
  view_.SetDispUnderline(kDispDataLine1, true);
  view_.SetDisp(kDispDataLine1, scheme + GetDomain(decoded) + "/");
  for (const SchemeText& connection : kConnections) {
    if (scheme == connection.scheme) view_.SetDisp(kDispDataLine2, std::string(connection.text));
  }
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
