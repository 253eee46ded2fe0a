#include "shell/url_entry.h"

#include "playlist/dropped_media.h"
#include "playlist/playlist_files.h"
#include "system/ascii_text.h"
#include "system/name_tests.h"
#include "system/paths.h"
#include "system/shown_text.h"
#include "system/text_format.h"
#include "system/translation.h"

#include <cstddef>
#include <string_view>

namespace kv {
namespace {

constexpr std::string_view kKey = PlaylistFiles::kGeneralKey;
constexpr std::string_view kLastUrl = "LastURL";
// One value, so that to remember an address costs one save; one address a line.
constexpr std::string_view kEarlierUrls = "EarlierURLs";
constexpr std::size_t kMostBytes = 2000;  // the store gives back little more

// "%", "+" and blanks at the ends mean themselves in the name of a file.
std::string AddressOf(const std::string& text) {
  if (IsNativePath(text) && FileExists(text)) return text;
  const std::string trimmed(TrimBlanks(text));
  const DroppedMedia media = ReadUriList(trimmed);
  if (!media.files.empty()) return media.files.front();
  return IsNativePath(trimmed) && FileExists(trimmed) ? trimmed : DecodeUrlText(trimmed);
}

}  // namespace

UrlEntry::UrlEntry(Registry& registry, const Session& session, Dialogs& dialogs)
    : registry_(registry), session_(session), dialogs_(dialogs) {}

std::string UrlEntry::LastUrl() const {
  return registry_.RegReadValue(RegistryRoot::kCurrentUser, kKey, kLastUrl);
}

std::vector<std::string> UrlEntry::Earlier() const {
  return ReadDroppedText(registry_.RegReadValue(RegistryRoot::kCurrentUser, kKey, kEarlierUrls))
      .addresses;
}

std::string UrlEntry::Accept(const std::string& text) {
  const std::string_view trimmed = TrimBlanks(text);
  if (trimmed.empty()) return {};
  if (!IsPlayableName(trimmed, session_.SupportedExtensions)) {
    dialogs_.ShowMessageBox({Tr("Unsupported format! You must type a path to a SUPPORTED file!"),
                             BoxIcon::kExclamation, BoxButtons::kOk, ""});
    return {};
  }
  std::string address = AddressOf(text);
  Remember(address);
  return address;
}

void UrlEntry::Remember(const std::string& address) {
  registry_.RegWriteValue(RegistryRoot::kCurrentUser, kKey, kLastUrl, kRegistryText, address);
  const std::string newest = WithoutUserInfo(address);
  std::vector<std::string> addresses = Earlier();
  std::erase(addresses, newest);
  addresses.insert(addresses.begin(), newest);
  std::string lines;
  int count = 0;
  for (const std::string& line : addresses) {
    if (count == kKept || lines.size() + line.size() + 1 > kMostBytes) break;
    lines += line + '\n';
    ++count;
  }
  registry_.RegWriteValue(RegistryRoot::kCurrentUser, kKey, kEarlierUrls, kRegistryText, lines);
}

}  // namespace kv
