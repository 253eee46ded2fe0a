// Playlists on the disk: loaded, saved under another name, loaded again.
#include "playlist/playlist_files.h"
#include "quiet_dialogs.h"
#include "support.h"
#include "support/fake_pump.h"
#include "support/fake_text_platform.h"

#include <vector>

namespace kv::fuzz {
namespace {

struct Player : PlaylistFilesHost, ListAddingHost, Download {
  explicit Player(const Folder& folder) : registry(folder.Path() + "registry.ini") {
    session.SupportedExtensions = "*.mp3;*.avi;*.m3u";
  }
  ListWindow* LoadedListWindow() override { return nullptr; }
  ScanWindow* OpenScanWindow() override { return nullptr; }
  void OpenFile(const std::string& /*path*/) override {}
  void OpenFile(const std::string& /*path*/, bool /*from_playlist*/, bool /*play*/) override {}
  bool EngineRunning() const override { return false; }
  void PressPlay() override {}
  void UpdateFileDisp(const std::string& /*text*/) override {}
  void SetBusyPointer(bool /*busy*/) override {}
  bool Get_File(const std::string& /*url*/, const std::string& /*name*/) override { return false; }

  std::vector<std::string> Items() const {
    std::vector<std::string> items;
    for (int i = 1; i <= list.Count(); ++i) items.push_back(list.Item(i));
    return items;
  }

  FakeTextPlatform text;
  OSTList list{text};
  Settings settings;
  Session session;
  QuietDialogs dialogs;
  FakePump pump;
  Registry registry;
  ListAdding adding{*this, list, session, dialogs, pump};
  PlaylistFiles files{*this,
                      {list, adding, settings, session, dialogs, pump, *this, registry, text, "/"}};
};

}  // namespace

void Try(std::string_view input) {
  static const Folder folder;
  const std::string name = folder.Write("music/list.m3u", input);
  Player player(folder);
  player.files.LoadPlaylist(name);
  const std::vector<std::string> items = player.Items();
  Require(items.size() <= static_cast<std::size_t>(kPlaylistLimit), "at most 9999 entries");
  Require(!player.session.PlaylistDirty, "a list that was loaded has no changes");

  player.files.SavePlaylist(name);
  Player second(folder);
  second.files.LoadPlaylist(name);
  Require(second.Items() == items, "a list that was saved reads back as itself");
  const std::string saved = folder.Read("music/list.m3u");
  second.settings.SaveAbsolutePaths = FromBool(true);
  second.files.SavePlaylist(name);
  second.files.LoadPlaylist(name);
  Require(second.Items() == items, "so does one with absolute paths");
  if (saved == input) return;
  player.files.SavePlaylist(name);
  Require(!player.session.PlaylistDirty, "a list that was saved has no changes");
}

}  // namespace kv::fuzz
